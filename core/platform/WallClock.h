#pragma once

#include <chrono>

namespace orvanta {

using WallTime = std::chrono::system_clock::time_point;

/// The date and time of day, as the user's calendar tells them. It may be set back; durations are
/// measured by a queue's clock instead.
class WallClock {
public:
    WallClock() = default;
    WallClock(const WallClock&) = delete;
    WallClock& operator=(const WallClock&) = delete;
    virtual ~WallClock() = default;

    [[nodiscard]] virtual WallTime now() const = 0;
};

} // namespace orvanta
