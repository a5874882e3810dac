#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanta::reference {

/// A limiter, one sample after the other.
class Limiter {
public:
    Limiter(double sampleRate, std::size_t maxChannels)
        : lookAheadSamples(std::max<std::size_t>(static_cast<std::size_t>(sampleRate * 0.001), 1)),
          releaseCoeff(static_cast<float>(std::exp(-1.0 / std::max(sampleRate * 0.05, 1.0)))),
          ringBuffer_(maxChannels, std::vector<float>(lookAheadSamples)),
          ringPos_(maxChannels),
          envelope_(maxChannels) {}

    void setCeiling(float decibels) { ceilingLinear_ = std::pow(10.0F, decibels / 20.0F); }

    void process(float* buffer, std::size_t count, std::size_t channel) {
        if (channel >= envelope_.size() || count < 1)
            return;
        float minGain = 1.0F;
        // A copy, because a store to the buffer could change the original for all the compiler
        // knows, and the benchmarks measure against this loop.
        float envelope = envelope_[channel];
        for (std::size_t k = 0; k < count; ++k)
            buffer[k] = limited(buffer[k], channel, envelope, minGain);
        envelope_[channel] = envelope;
        publish(minGain);
    }

    const std::size_t lookAheadSamples;
    const float releaseCoeff;
    float gainReductionDB = 0.0F;

private:
    float limited(float input, std::size_t channel, float& envelope, float& minGain) {
        const float x = std::isfinite(input) ? input : 0.0F;
        const float a = std::fabs(x);
        if (envelope < a)
            envelope = a;
        else
            envelope = envelope * releaseCoeff;

        float gain = 1.0F;
        if (envelope > ceilingLinear_) {
            gain = ceilingLinear_ / envelope;
            minGain = std::min(minGain, gain);
        }

        std::size_t& position = ringPos_[channel];
        const float delayed = ringBuffer_[channel][position];
        ringBuffer_[channel][position] = x;
        if (++position == lookAheadSamples)
            position = 0;
        return gain * delayed;
    }

    void publish(float minGain) {
        if (minGain < 0.999F) {
            const float reduction = -20.0F * std::log10(std::max(minGain, 1e-10F));
            gainReductionDB = std::max(reduction, 0.9F * gainReductionDB);
        } else {
            gainReductionDB = std::max(0.0F, 0.9F * gainReductionDB);
        }
    }

    float ceilingLinear_ = 1.0F;
    std::vector<std::vector<float>> ringBuffer_;
    std::vector<std::size_t> ringPos_;
    std::vector<float> envelope_;
};

} // namespace orvanta::reference
