#pragma once

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>

namespace orvanta {

/// The equaliser's response over the width, 20 Hz to 20 kHz, and the height, 12 dB up and down.
class ResponseCurve : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// dB of ten bands.
    Q_PROPERTY(QList<double> gains MEMBER gains_ NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged)

public:
    explicit ResponseCurve(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    QList<double> gains_;
    QColor color_;
};

} // namespace orvanta
