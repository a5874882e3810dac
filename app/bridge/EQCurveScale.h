#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orvanta {

/// Where things of the console's EQ curve stand on its canvas, for the views. Gains are in dB.
class EQCurveScale final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(double dragLimit READ dragLimit CONSTANT)

public:
    [[nodiscard]] static double dragLimit();

    /// Of a band by its number, on a canvas of this width.
    Q_INVOKABLE [[nodiscard]] static double bandX(int band, double canvasWidth);
    Q_INVOKABLE [[nodiscard]] static double gainY(double gain, double canvasHeight);
    /// Of the middle of the bands' labels.
    Q_INVOKABLE [[nodiscard]] static double labelY(double canvasHeight);
    /// What a drag to `y` of the canvas sets.
    Q_INVOKABLE [[nodiscard]] static double gainAt(double y, double canvasHeight);
    /// Whether the band has no part in the response.
    Q_INVOKABLE [[nodiscard]] static bool isFlat(double gain);
    /// A gain in whole decibels, the nearest.
    Q_INVOKABLE [[nodiscard]] static QString readOut(double gain);
};

} // namespace orvanta
