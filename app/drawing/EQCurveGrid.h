#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace orvanta {

/// What lies behind the console's EQ curve: a line for every 6 dB and for every band. Apart from
/// the curve, so that a drag paints it no more than once.
class EQCurveGrid : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged)
    /// Of the line at 0 dB.
    Q_PROPERTY(QColor zeroColor MEMBER zeroColor_ NOTIFY lookChanged)

public:
    explicit EQCurveGrid(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void lookChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    QColor color_;
    QColor zeroColor_;
};

} // namespace orvanta
