#include "app/popover/LevelBallistics.h"

#include <algorithm>
#include <cmath>

namespace orvanta {

void LevelBallistics::tick(Seconds now, double target) noexcept {
    const double dt = std::clamp(now - lastTick_, shortestTick, longestTick).count();
    lastTick_ = now;
    const double aim = target > 0.0 ? std::min(target, 1.0) : 0.0;
    const double timeConstant = level_ < aim ? attack : release;
    level_ += (aim - level_) * (1.0 - std::exp(-dt / timeConstant));
    if (level_ < floor)
        level_ = 0.0;
}

} // namespace orvanta
