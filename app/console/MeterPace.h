#pragma once

#include "core/platform/RunLoop.h"

#include <algorithm>

namespace orvanta {

/// How often a meter looks at its level: at the rate of a screen while there is anything to see,
/// and ten times a second once it has been at rest for a while.
class MeterPace {
public:
    static constexpr Seconds fast{1.0 / 60.0};
    static constexpr Seconds slow{0.1};
    /// Ticks at rest after which it slows down.
    static constexpr int idleLimit = 30;

    /// To be told of each tick. True when the interval is another one from now on.
    bool ticked(bool isAtRest) noexcept {
        const bool wasSlow = isSlow();
        idleFrames_ = isAtRest ? std::min(idleFrames_ + 1, idleLimit) : 0;
        return isSlow() != wasSlow;
    }

    [[nodiscard]] bool isSlow() const noexcept { return idleFrames_ == idleLimit; }

    [[nodiscard]] Seconds interval() const noexcept { return isSlow() ? slow : fast; }

    [[nodiscard]] int idleFrames() const noexcept { return idleFrames_; }

private:
    int idleFrames_ = 0;
};

} // namespace orvanta
