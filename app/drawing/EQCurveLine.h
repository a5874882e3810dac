#pragma once

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>

namespace orvanta {

/// The console's EQ curve on a canvas of the item's size: the line, and the area between it and
/// 0 dB. Painted anew only when its gains, its colour or its size become others.
class EQCurveLine : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// dB of ten bands.
    Q_PROPERTY(QList<double> gains MEMBER gains_ NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged)

public:
    explicit EQCurveLine(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void lookChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    QList<double> gains_;
    QColor color_;
};

} // namespace orvanta
