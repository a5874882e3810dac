#pragma once

#include <cmath>
#include <numbers>

namespace orvanta::embedded {

/// A phase that runs from 0 to 1. Steps are frequency / sample rate, in turns per sample.
class Oscillator {
public:
    /// Sine at any phase in turns.
    static float sine(double turns) noexcept {
        return static_cast<float>(std::sin(2.0 * std::numbers::pi * (turns - std::floor(turns))));
    }

    /// The sine at the present phase; then moves on.
    float next(double step) noexcept {
        const float value = sine(phase_);
        move(step);
        return value;
    }

    /// Moves on by one sample. True when a new turn has begun.
    bool move(double step) noexcept {
        phase_ += step;
        const double whole = std::floor(phase_);
        phase_ -= whole;
        return whole != 0.0;
    }

    [[nodiscard]] double phase() const noexcept { return phase_; }

    void restart(double phase = 0) noexcept { phase_ = phase; }

private:
    double phase_ = 0;
};

} // namespace orvanta::embedded
