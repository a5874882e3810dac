#include "tests/e2e/support/Tones.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace orvanta::test {

namespace {

constexpr double sampleRate = 48000;
constexpr double stepsOfFullScale = 32768;

double angle(double hertz, std::size_t frame) {
    return 2 * std::numbers::pi * hertz * static_cast<double>(frame) / sampleRate;
}

} // namespace

std::vector<float> tones(std::span<const double> hertz, double amplitude, std::size_t frames) {
    std::vector<float> samples(frames);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        double sum = 0;
        for (const double frequency : hertz)
            sum += amplitude * std::sin(angle(frequency, frame));
        const double steps = std::round(sum * stepsOfFullScale);
        samples[frame] = static_cast<float>((steps == 0 ? 1 : steps) / stepsOfFullScale);
    }
    return samples;
}

double amplitudeAt(double hertz, std::span<const float> samples) {
    std::complex<double> sum;
    for (std::size_t frame = 0; frame < samples.size(); ++frame)
        sum += static_cast<double>(samples[frame]) * std::polar(1.0, -angle(hertz, frame));
    return samples.empty() ? 0 : 2 * std::abs(sum) / static_cast<double>(samples.size());
}

} // namespace orvanta::test
