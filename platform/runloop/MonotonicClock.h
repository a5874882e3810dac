#pragma once

#include "platform/runloop/TaskClock.h"

#include <chrono>

namespace orvanta {

/// The machine's monotonic clock, counted from the making of this object.
class MonotonicClock final : public TaskClock {
public:
    [[nodiscard]] Instant now() const override;

    /// `instant` on the clock that waiting functions take.
    [[nodiscard]] std::chrono::steady_clock::time_point timePoint(Instant instant) const;

private:
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace orvanta
