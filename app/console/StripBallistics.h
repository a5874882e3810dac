#pragma once

#include "core/platform/RunLoop.h"

namespace orvanta {

/// How a strip's meter moves between the levels it is told: a body of the loudness, a bar of the
/// level and a line at its highest. Values are shares of the meter's height, whose top is 1.2: what
/// is over full scale is to be seen.
class StripBallistics {
public:
    /// Linear level that fills the meter.
    static constexpr double top = 1.2;
    /// Time constants in seconds: of the level up and down, of the loudness, of the line's fall.
    static constexpr double attack = 0.012;
    static constexpr double release = 0.18;
    static constexpr double rmsTime = 0.12;
    static constexpr double peakFall = 0.6;
    /// The line stays for so long before it falls.
    static constexpr Seconds peakHold{1.2};
    /// A line below it is none.
    static constexpr double peakFloor = 0.005;
    /// No more time passes for the meter between two ticks.
    static constexpr Seconds longestTick{0.1};
    /// A level or loudness below it is at rest.
    static constexpr double restLevel = 0.003;

    /// Moves towards the levels, linear; what is no number counts as 0. The first tick only begins
    /// the time.
    void tick(Seconds now, double peak, double rms) noexcept;

    [[nodiscard]] double level() const noexcept { return smoothLevel_; }

    [[nodiscard]] double rms() const noexcept { return smoothRms_; }

    [[nodiscard]] double peak() const noexcept { return peakLevel_; }

    /// Nothing of it can be seen.
    [[nodiscard]] bool isAtRest() const noexcept;

private:
    void movePeak(Seconds now, double dt) noexcept;

    double smoothLevel_ = 0.0;
    double smoothRms_ = 0.0;
    double peakLevel_ = 0.0;
    Seconds peakHoldTime_{0.0};
    Seconds lastFrameTime_{0.0};
    bool hasBegun_ = false;
};

} // namespace orvanta
