#include "app/popover/EQResponseLine.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace orvanta::eqResponseLine {
namespace {

constexpr double kSampleRate = 48000.0;
constexpr float kInactiveGain = 0.05F;

struct Biquad {
    double b0, b1, b2;
    double a0, a1, a2;
};

double angularFrequency(double frequency) noexcept {
    return 2.0 * std::numbers::pi * frequency / kSampleRate;
}

/// `sign` is 1 for the low shelf and -1 for the high one, which mirrors it.
Biquad shelf(double A, double w0, double sign) noexcept {
    const double cosine = sign * std::cos(w0);
    const double slope = 2.0 * std::sqrt(A) * (std::sin(w0) / 1.414);
    return {
        .b0 = A * ((A + 1.0) - (A - 1.0) * cosine + slope),
        .b1 = sign * 2.0 * A * ((A - 1.0) - (A + 1.0) * cosine),
        .b2 = A * ((A + 1.0) - (A - 1.0) * cosine - slope),
        .a0 = (A + 1.0) + (A - 1.0) * cosine + slope,
        .a1 = sign * -2.0 * ((A - 1.0) + (A + 1.0) * cosine),
        .a2 = (A + 1.0) + (A - 1.0) * cosine - slope,
    };
}

Biquad peak(double A, double w0) noexcept {
    const double alpha = std::sin(w0) / 2.8;
    const double middle = -2.0 * std::cos(w0);
    return {.b0 = 1.0 + alpha * A,
            .b1 = middle,
            .b2 = 1.0 - alpha * A,
            .a0 = 1.0 + alpha / A,
            .a1 = middle,
            .a2 = 1.0 - alpha / A};
}

Biquad filterOf(std::size_t band, double gain) noexcept {
    const double A = std::pow(10.0, gain / 40.0);
    const double w0 = angularFrequency(static_cast<double>(kEQFrequencies[band]));
    if (band == 0)
        return shelf(A, w0, 1.0);
    return band + 1 == kEQFrequencies.size() ? shelf(A, w0, -1.0) : peak(A, w0);
}

/// Squared magnitude of c0 + c1·z⁻¹ + c2·z⁻² on the unit circle.
double power(double c0, double c1, double c2, double w) noexcept {
    const double real = c0 + c1 * std::cos(w) + c2 * std::cos(2.0 * w);
    const double imaginary = c1 * std::sin(w) + c2 * std::sin(2.0 * w);
    return real * real + imaginary * imaginary;
}

double decibelsAt(const Biquad& filter, double w) noexcept {
    const double denominator = power(filter.a0, filter.a1, filter.a2, w);
    if (!(denominator > 0.0))
        return 0.0;
    return 10.0 * std::log10(power(filter.b0, filter.b1, filter.b2, w) / denominator);
}

} // namespace

double frequencyAt(double share) noexcept {
    return 20.0 * std::pow(1000.0, share);
}

double responseDB(const EQPreset& preset, double frequency) noexcept {
    const double w = angularFrequency(frequency);
    double sum = 0.0;
    for (std::size_t band = 0; band < preset.gains.size(); ++band) {
        if (const float gain = preset.gains[band]; std::abs(gain) > kInactiveGain)
            sum += decibelsAt(filterOf(band, static_cast<double>(gain)), w);
    }
    return sum;
}

std::vector<double> heights(const EQPreset& preset, int width, double height) {
    std::vector<double> line;
    for (int x = 0; x <= width; ++x) {
        const double share = width > 0 ? static_cast<double>(x) / width : 0.0;
        const double response = responseDB(preset, frequencyAt(share));
        line.push_back(height / 2.0 - response * height / (2.0 * kReachDB));
    }
    return line;
}

} // namespace orvanta::eqResponseLine
