#include "app/console/EQCurve.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orvanta {
namespace {

constexpr double kInactiveGainDB = 0.05;

// Standard deviations of the bells, in octaves. The outermost bands stand in for shelves, which
// reach further.
constexpr double kShelfWidth = 1.0 / 0.7;
constexpr double kPeakWidth = 2.0 / 3.0;

/// Where a frequency stands on the axis, 0 to 1.
double shareOfAxis(double frequency) noexcept {
    const double first = std::log10(EQCurve::minFreq);
    return (std::log10(frequency) - first) / (std::log10(EQCurve::maxFreq) - first);
}

double frequencyAtPoint(int index) noexcept {
    const double first = std::log10(EQCurve::minFreq);
    const double share = static_cast<double>(index) / (EQCurve::numPoints - 1);
    return std::pow(10.0, first + (std::log10(EQCurve::maxFreq) - first) * share);
}

double bellWidth(std::size_t band) noexcept {
    const bool isOutermost = band == 0 || band + 1 == kEQFrequencies.size();
    return isOutermost ? kShelfWidth : kPeakWidth;
}

/// Of a bell of height 1.
double bell(std::size_t band, double frequency) noexcept {
    const auto centre = static_cast<double>(kEQFrequencies[band]);
    const double distance = std::log2(frequency / centre) / bellWidth(band);
    return std::exp(-0.5 * distance * distance);
}

} // namespace

EQCurve EQCurve::onCanvas(double canvasWidth, double canvasHeight) noexcept {
    return {.width = std::max(canvasWidth - 2 * padding, 0.0),
            .height = std::max(canvasHeight - 2 * padding, 0.0)};
}

double EQCurve::x(double frequency) const noexcept {
    return shareOfAxis(frequency) * width;
}

double EQCurve::y(double gain) const noexcept {
    const double shown = std::isfinite(gain) ? std::clamp(gain, minDB, maxDB) : 0.0;
    return (1.0 - (shown - minDB) / (maxDB - minDB)) * height;
}

double EQCurve::gainAt(double y) const noexcept {
    if (!(height > 0.0) || std::isnan(y))
        return 0.0;
    const double gain = minDB + (1.0 - y / height) * (maxDB - minDB);
    return std::clamp(gain, -dragLimitDB, dragLimitDB);
}

std::array<EQCurve::Point, EQCurve::numPoints>
EQCurve::points(std::span<const double> gains) const noexcept {
    std::array<Point, numPoints> line;
    for (int index = 0; index < numPoints; ++index) {
        const double frequency = frequencyAtPoint(index);
        line[static_cast<std::size_t>(index)] = {.x = x(frequency),
                                                 .y = y(responseDB(gains, frequency))};
    }
    return line;
}

double EQCurve::responseDB(std::span<const double> gains, double frequency) noexcept {
    double sum = 0.0;
    for (std::size_t band = 0; band < gains.size() && band < kEQFrequencies.size(); ++band) {
        // A flat band costs no exponential, so a flat preset costs next to nothing.
        if (isActive(gains[band]))
            sum += gains[band] * bell(band, frequency);
    }
    return std::clamp(sum, minDB, maxDB);
}

bool EQCurve::isActive(double gain) noexcept {
    return std::isfinite(gain) && std::abs(gain) > kInactiveGainDB;
}

} // namespace orvanta
