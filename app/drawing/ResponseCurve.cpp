#include "app/drawing/ResponseCurve.h"

#include "app/drawing/withOpacity.h"
#include "app/popover/EQResponseLine.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <vector>

namespace orvanta {
namespace {

constexpr double kLineWidth = 1.5;
/// Opacity of the fill at the edges; at 0 dB it is all but gone, so flat looks empty.
constexpr float kEdgeOpacity = 0.42F;
constexpr float kMiddleOpacity = 0.04F;

EQPreset presetOf(const QList<double>& gains) {
    std::vector<float> values(gains.begin(), gains.end());
    return EQPreset(std::span<const float>(values));
}

} // namespace

ResponseCurve::ResponseCurve(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &ResponseCurve::lookChanged, this, [this] { update(); });
}

void ResponseCurve::paint(QPainter* painter) {
    const auto heights =
        eqResponseLine::heights(presetOf(gains_), static_cast<int>(width()), height());
    QPainterPath line;
    for (std::size_t x = 0; x < heights.size(); ++x) {
        const QPointF point(static_cast<double>(x), heights[x]);
        x == 0 ? line.moveTo(point) : line.lineTo(point);
    }
    const double middle = height() / 2;
    QPainterPath area = line;
    area.lineTo(width(), middle);
    area.lineTo(0, middle);
    area.closeSubpath();

    QLinearGradient fill(0, 0, 0, height());
    fill.setColorAt(0, withOpacity(color_, kEdgeOpacity));
    fill.setColorAt(0.5, withOpacity(color_, kMiddleOpacity));
    fill.setColorAt(1, withOpacity(color_, kEdgeOpacity));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(area, fill);
    painter->strokePath(line, QPen(color_, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

} // namespace orvanta
