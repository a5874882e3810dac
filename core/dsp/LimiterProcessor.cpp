#include "core/dsp/LimiterProcessor.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace orvanta {
namespace {

constexpr double kLookAheadSeconds = 0.001;
constexpr double kReleaseSeconds = 0.05;
constexpr double kHighestRate = 1e9;

/// What is no rate, NaN included, leaves the shortest times.
double usableRate(double sampleRate) {
    return sampleRate > 0.0 ? std::min(sampleRate, kHighestRate) : 0.0;
}

std::size_t lookAheadAt(double sampleRate) {
    return std::max<std::size_t>(
        static_cast<std::size_t>(usableRate(sampleRate) * kLookAheadSeconds), 1);
}

float releaseAt(double sampleRate) {
    return static_cast<float>(
        std::exp(-1.0 / std::max(usableRate(sampleRate) * kReleaseSeconds, 1.0)));
}

} // namespace

LimiterProcessor::LimiterProcessor(double sampleRate, std::size_t maxChannels)
    : lookAheadSamples_(lookAheadAt(sampleRate)),
      releaseCoeff_(releaseAt(sampleRate)),
      maxChannels_(maxChannels),
      ringBuffer_(lookAheadSamples_ * maxChannels),
      ringPos_(maxChannels),
      envelope_(maxChannels) {}

void LimiterProcessor::setCeiling(float decibels) noexcept {
    ceiling_.store(decibels);
    ceilingLinear_.store(std::pow(10.0F, decibels / 20.0F));
}

void LimiterProcessor::reset() noexcept {
    gainReductionDB_.store(0.0F);
    resetAsked_.store(true, std::memory_order_release);
}

void LimiterProcessor::clearIfAsked() noexcept {
    if (!resetAsked_.load(std::memory_order_relaxed))
        return;
    resetAsked_.store(false, std::memory_order_relaxed);
    std::fill(ringBuffer_.begin(), ringBuffer_.end(), 0.0F);
    std::fill(ringPos_.begin(), ringPos_.end(), std::size_t{0});
    std::fill(envelope_.begin(), envelope_.end(), 0.0F);
    gainReductionDB_.store(0.0F);
}

void LimiterProcessor::process(float* buffer, std::size_t count, std::size_t channel) noexcept {
    if (!enabled_.load() || channel >= maxChannels_ || count < 1)
        return;
    clearIfAsked();

    // Locals, because a store to the buffer could change any member for all the compiler knows.
    const float ceiling = ceilingLinear_.load();
    const float release = releaseCoeff_;
    float* const ring = ringBuffer_.data() + channel * lookAheadSamples_;
    const std::size_t length = lookAheadSamples_;
    std::size_t position = ringPos_[channel];
    float envelope = envelope_[channel];
    float minGain = 1.0F;

    for (std::size_t k = 0; k < count; ++k) {
        const float magnitude = std::fabs(buffer[k]);
        const bool isFinite = magnitude <= FLT_MAX;
        const float level = isFinite ? magnitude : 0.0F;
        envelope = envelope < level ? level : envelope * release;

        float gain = 1.0F;
        if (envelope > ceiling) {
            gain = ceiling / envelope;
            minGain = std::min(minGain, gain);
        }
        const float delayed = ring[position];
        ring[position] = isFinite ? buffer[k] : 0.0F;
        if (++position == length)
            position = 0;
        buffer[k] = gain * delayed;
    }

    ringPos_[channel] = position;
    envelope_[channel] = envelope;
    publishReduction(minGain);
}

void LimiterProcessor::publishReduction(float minGain) noexcept {
    const float fallen = 0.9F * gainReductionDB_.load();
    if (minGain < 0.999F) {
        const float reduction = -20.0F * std::log10(std::max(minGain, 1e-10F));
        gainReductionDB_.store(std::max(reduction, fallen));
    } else {
        gainReductionDB_.store(std::max(0.0F, fallen));
    }
}

} // namespace orvanta
