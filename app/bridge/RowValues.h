#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace orvanta {

/// What a row's controls offer, and words for a value that is under a hand still.
class RowValues final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Each with `name`, `emoji` and the `heading` above it, empty but for the first of a group.
    Q_PROPERTY(QVariantList equalizerPresets READ equalizerPresets CONSTANT)
    /// The three knobs: `text`, and the `band` that each moves.
    Q_PROPERTY(QVariantList simpleBands READ simpleBands CONSTANT)
    /// Ten: `label`, and where on the canvas its frequency is, `share`.
    Q_PROPERTY(QVariantList bands READ bands CONSTANT)
    Q_PROPERTY(QStringList compressorPresets READ compressorPresets CONSTANT)
    /// Each with `label`, `accessibleLabel`, `minimum`, `maximum` and `step`.
    Q_PROPERTY(QVariantList compressorFields READ compressorFields CONSTANT)
    /// dB, at which a band's bar is full.
    Q_PROPERTY(double fullReduction READ fullReduction CONSTANT)

public:
    [[nodiscard]] static QVariantList equalizerPresets();
    [[nodiscard]] static QVariantList simpleBands();
    [[nodiscard]] static QVariantList bands();
    [[nodiscard]] static QStringList compressorPresets();
    [[nodiscard]] static QVariantList compressorFields();
    [[nodiscard]] static double fullReduction();

    Q_INVOKABLE [[nodiscard]] static QString expansionHint(bool isExpanded);
    Q_INVOKABLE [[nodiscard]] static QString gainReadOut(double gain);
    Q_INVOKABLE [[nodiscard]] static QString gainValue(double gain);
    Q_INVOKABLE [[nodiscard]] static bool isGainLit(double gain);
    /// `value`, `readOut`, `isLeftLit` and `isRightLit`.
    Q_INVOKABLE [[nodiscard]] static QVariantMap balanceWords(double balance);
    Q_INVOKABLE [[nodiscard]] static QString thresholdReadOut(double threshold);
    Q_INVOKABLE [[nodiscard]] static QString thresholdValue(double threshold);
    /// `field` counts `compressorFields`.
    Q_INVOKABLE [[nodiscard]] static QString compressorReadOut(int field, double value);
    Q_INVOKABLE [[nodiscard]] static QString compressorValue(int field, double value);
};

} // namespace orvanta
