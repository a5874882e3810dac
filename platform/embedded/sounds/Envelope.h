#pragma once

#include <cmath>

namespace orvanta::embedded {

/// What a one-pole movement with this time constant multiplies the distance with at every sample.
/// Times in seconds; the distance falls to 37 % in that time.
inline float decayPerSample(double seconds, double sampleRate) noexcept {
    return static_cast<float>(std::exp(-1.0 / (seconds * sampleRate)));
}

/// The loudness of a note that is struck and dies away. It rises within a few milliseconds, so
/// that it does not click.
class StruckEnvelope {
public:
    explicit StruckEnvelope(double decaySeconds) : decaySeconds_(decaySeconds) {}

    void setSampleRate(double sampleRate) noexcept {
        if (sampleRate == sampleRate_)
            return;
        sampleRate_ = sampleRate;
        decay_ = decayPerSample(decaySeconds_, sampleRate);
        rise_ = decayPerSample(0.002, sampleRate);
    }

    void strike(float level) noexcept { target_ = level; }

    float next() noexcept {
        target_ *= decay_;
        level_ = target_ + rise_ * (level_ - target_);
        // Far below hearing: ends here, before the numbers become denormal and slow.
        if (target_ < 1e-6F)
            target_ = level_ = 0;
        return level_;
    }

private:
    double decaySeconds_;
    double sampleRate_ = 0;
    float decay_ = 0;
    float rise_ = 0;
    float target_ = 0;
    float level_ = 0;
};

} // namespace orvanta::embedded
