#include "platform/embedded/sounds/FormantFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvanta::embedded {

namespace {

constexpr std::array<double, 3> kBandwidthHz{90, 110, 170};

} // namespace

void FormantFilter::set(const Formants& centres, double sampleRate) noexcept {
    for (std::size_t index = 0; index < resonators_.size(); ++index) {
        // A device of a very low rate must not push a resonance over half of it.
        const double centre = std::min(centres[index], 0.45 * sampleRate);
        const double radius = std::exp(-std::numbers::pi * kBandwidthHz[index] / sampleRate);
        const double first = 2 * radius * std::cos(2 * std::numbers::pi * centre / sampleRate);
        const double second = -radius * radius;
        Resonator& resonator = resonators_[index];
        resonator.first = static_cast<float>(first);
        resonator.second = static_cast<float>(second);
        resonator.gain = static_cast<float>(1 - first - second);
    }
}

float FormantFilter::process(float input) noexcept {
    float value = input;
    for (Resonator& resonator : resonators_) {
        value = resonator.gain * value + resonator.first * resonator.last +
                resonator.second * resonator.lastButOne;
        // Far below hearing: a pause must not end in denormal numbers, which are slow.
        if (std::abs(value) < 1e-15F)
            value = 0;
        resonator.lastButOne = resonator.last;
        resonator.last = value;
    }
    return value;
}

} // namespace orvanta::embedded
