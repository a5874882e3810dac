#include "app/drawing/EQCurveHandle.h"

#include "app/drawing/withOpacity.h"

#include <QPainter>
#include <QRadialGradient>

namespace orvanta {
namespace {

constexpr double kPointRadius = 5.0;
constexpr double kCoreRadius = 2.0;
constexpr double kRingRadius = 8.0;
constexpr double kRingWidth = 1.0;
constexpr double kGlowRadius = 11.0;

constexpr float kGlowOpacity = 0.36F;
constexpr float kFlatOpacity = 0.16F;
constexpr float kFlatRimOpacity = 0.38F;
/// Of the way from the middle, where half of the glow is gone.
constexpr double kGlowHalf = 0.75;

void disc(QPainter& painter, const QPointF& middle, double radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawEllipse(middle, radius, radius);
}

/// `radius` is that of its outer edge.
void ring(QPainter& painter, const QPointF& middle, double radius, const QColor& color) {
    painter.setPen(QPen(color, kRingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(middle, radius - kRingWidth / 2, radius - kRingWidth / 2);
}

void glowingPoint(QPainter& painter, const QPointF& middle, const QColor& color) {
    QRadialGradient glow(middle, kGlowRadius);
    glow.setColorAt(kPointRadius / kGlowRadius, withOpacity(color, kGlowOpacity));
    glow.setColorAt(kGlowHalf, withOpacity(color, kGlowOpacity / 2));
    glow.setColorAt(1, withOpacity(color, 0.0F));
    disc(painter, middle, kGlowRadius, glow);
    disc(painter, middle, kPointRadius, color);
    disc(painter, middle, kCoreRadius, Qt::white);
}

void dimPoint(QPainter& painter, const QPointF& middle, const QColor& well) {
    disc(painter, middle, kPointRadius, well);
    disc(painter, middle, kPointRadius, withOpacity(Qt::white, kFlatOpacity));
    ring(painter, middle, kPointRadius, withOpacity(Qt::white, kFlatRimOpacity));
}

} // namespace

EQCurveHandle::EQCurveHandle(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &EQCurveHandle::lookChanged, this, [this] { update(); });
}

void EQCurveHandle::paint(QPainter* painter) {
    const QPointF middle = boundingRect().center();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isFlat_)
        dimPoint(*painter, middle, well_);
    else
        glowingPoint(*painter, middle, color_);
    if (isHeld_)
        ring(*painter, middle, kRingRadius, color_);
}

} // namespace orvanta
