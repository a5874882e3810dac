#include "platform/runloop/MonotonicClock.h"

namespace orvanta {

Instant MonotonicClock::now() const {
    return std::chrono::duration_cast<Instant>(std::chrono::steady_clock::now() - start_);
}

std::chrono::steady_clock::time_point MonotonicClock::timePoint(Instant instant) const {
    return start_ + instant;
}

} // namespace orvanta
