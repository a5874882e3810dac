#pragma once

#include "core/platform/RunLoop.h"

namespace orvanta {

/// How a level meter moves between the levels it is told: quickly up, slowly down. One for each
/// meter, driven by the clock of the screen.
class LevelBallistics {
public:
    /// Time constants in seconds.
    static constexpr double attack = 0.012;
    static constexpr double release = 0.18;
    /// Between two ticks no less and no more time passes for the meter, so that a screen that stood
    /// still does not make it jump.
    static constexpr Seconds shortestTick{0.001};
    static constexpr Seconds longestTick{0.1};
    /// Below this the meter is at rest.
    static constexpr double floor = 0.003;

    /// The meter comes into view.
    void start(Seconds now) noexcept { lastTick_ = now; }

    /// Moves towards `target`, 0 to 1; beyond it counts as its end, and what is no number as 0.
    void tick(Seconds now, double target) noexcept;

    /// 0 to 1.
    [[nodiscard]] double level() const noexcept { return level_; }

private:
    double level_ = 0.0;
    Seconds lastTick_{0.0};
};

} // namespace orvanta
