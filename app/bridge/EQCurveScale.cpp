#include "app/bridge/EQCurveScale.h"

#include "app/console/EQCurve.h"

#include <cmath>

namespace orvanta {
namespace {

/// From the lower end of the scale up to the middle of the labels.
constexpr double kLabelRise = 4.0;

EQCurve curveOf(double canvasHeight) {
    return EQCurve::onCanvas(0.0, canvasHeight);
}

} // namespace

double EQCurveScale::dragLimit() {
    return EQCurve::dragLimitDB;
}

double EQCurveScale::bandX(int band, double canvasWidth) {
    const auto frequency = static_cast<double>(kEQFrequencies.at(static_cast<std::size_t>(band)));
    return EQCurve::padding + EQCurve::onCanvas(canvasWidth, 0.0).x(frequency);
}

double EQCurveScale::gainY(double gain, double canvasHeight) {
    return EQCurve::padding + curveOf(canvasHeight).y(gain);
}

double EQCurveScale::labelY(double canvasHeight) {
    return EQCurve::padding + curveOf(canvasHeight).height - kLabelRise;
}

double EQCurveScale::gainAt(double y, double canvasHeight) {
    return curveOf(canvasHeight).gainAt(y - EQCurve::padding);
}

bool EQCurveScale::isFlat(double gain) {
    return !EQCurve::isActive(gain);
}

QString EQCurveScale::readOut(double gain) {
    // Adding to it takes the sign off a zero.
    return QString::number(std::nearbyint(gain) + 0.0, 'f', 0);
}

} // namespace orvanta
