#include "app/drawing/EQCurveGrid.h"

#include "app/console/EQCurve.h"
#include "app/popover/MeterLayout.h"

#include <QPainter>
#include <array>

namespace orvanta {
namespace {

constexpr std::array kGridGains{-12.0, -6.0, 6.0, 12.0};
constexpr double kGridWidth = 0.5;
constexpr double kZeroWidth = 1.0;

/// Paints lines that begin on a pixel of the screen: between two, a line is a smear.
class GridPainter {
public:
    GridPainter(QPainter& painter, const EQCurve& curve)
        : painter_(painter), curve_(curve), ratio_(painter.deviceTransform().m11()) {}

    void across(double gain, double lineWidth, const QColor& color) {
        painter_.fillRect(QRectF(0, startOf(curve_.y(gain), lineWidth), curve_.width, lineWidth),
                          color);
    }

    void down(double frequency, double lineWidth, const QColor& color) {
        painter_.fillRect(
            QRectF(startOf(curve_.x(frequency), lineWidth), 0, lineWidth, curve_.height), color);
    }

private:
    [[nodiscard]] double startOf(double middle, double lineWidth) const {
        return onScreenPixel(middle - lineWidth / 2, ratio_);
    }

    QPainter& painter_;
    const EQCurve& curve_;
    const double ratio_;
};

} // namespace

EQCurveGrid::EQCurveGrid(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &EQCurveGrid::lookChanged, this, [this] { update(); });
}

void EQCurveGrid::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

void EQCurveGrid::paint(QPainter* painter) {
    const EQCurve curve = EQCurve::onCanvas(width(), height());
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(EQCurve::padding, EQCurve::padding);
    GridPainter grid(*painter, curve);
    for (const double gain : kGridGains)
        grid.across(gain, kGridWidth, color_);
    for (const float frequency : kEQFrequencies)
        grid.down(static_cast<double>(frequency), kGridWidth, color_);
    grid.across(0.0, kZeroWidth, zeroColor_);
}

} // namespace orvanta
