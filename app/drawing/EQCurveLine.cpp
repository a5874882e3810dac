#include "app/drawing/EQCurveLine.h"

#include "app/console/EQCurve.h"
#include "app/drawing/withOpacity.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <span>

namespace orvanta {
namespace {

constexpr double kStroke = 2.0;
/// Opacity of the area at the edges of the drawing, and at 0 dB, where it is all but gone, so that
/// flat looks empty.
constexpr float kAreaAtEdge = 0.42F;
constexpr float kAreaAtZero = 0.04F;

QPainterPath pathOf(const EQCurve& curve, const QList<double>& gains) {
    const auto points =
        curve.points(std::span(gains.data(), static_cast<std::size_t>(gains.size())));
    QPainterPath path(QPointF(points.front().x, points.front().y));
    for (const EQCurve::Point& point : std::span(points).subspan(1))
        path.lineTo(point.x, point.y);
    return path;
}

/// The path, closed along 0 dB.
QPainterPath areaUnder(QPainterPath path, const EQCurve& curve) {
    const double zero = curve.y(0.0);
    path.lineTo(curve.width, zero);
    path.lineTo(0, zero);
    path.closeSubpath();
    return path;
}

QLinearGradient areaFill(const EQCurve& curve, const QColor& color) {
    QLinearGradient fill(0, 0, 0, curve.height);
    fill.setColorAt(0, withOpacity(color, kAreaAtEdge));
    fill.setColorAt(0.5, withOpacity(color, kAreaAtZero));
    fill.setColorAt(1, withOpacity(color, kAreaAtEdge));
    return fill;
}

} // namespace

EQCurveLine::EQCurveLine(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &EQCurveLine::lookChanged, this, [this] { update(); });
}

void EQCurveLine::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

void EQCurveLine::paint(QPainter* painter) {
    const EQCurve curve = EQCurve::onCanvas(width(), height());
    const QPainterPath path = pathOf(curve, gains_);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(EQCurve::padding, EQCurve::padding);
    painter->fillPath(areaUnder(path, curve), areaFill(curve, color_));
    painter->strokePath(path, QPen(color_, kStroke, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
}

} // namespace orvanta
