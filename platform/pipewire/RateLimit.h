#pragma once

#include <chrono>
#include <cstddef>
#include <deque>

namespace orvanta::pipewire {

/// Allows something at most so many times within any window of time.
class RateLimit {
public:
    using Time = std::chrono::steady_clock::time_point;

    RateLimit(std::size_t times, std::chrono::milliseconds window)
        : times_(times), window_(window) {}

    /// True if once more is allowed at `now`, and then it counts.
    bool allow(Time now) {
        while (!recent_.empty() && now - recent_.front() >= window_)
            recent_.pop_front();
        if (recent_.size() >= times_)
            return false;
        recent_.push_back(now);
        return true;
    }

private:
    std::size_t times_;
    std::chrono::milliseconds window_;
    std::deque<Time> recent_;
};

} // namespace orvanta::pipewire
