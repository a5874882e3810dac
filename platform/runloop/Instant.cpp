#include "platform/runloop/Instant.h"

#include <cmath>

namespace orvanta {
namespace {

constexpr Seconds kCentury = std::chrono::hours(24) * 36525;

/// What a decimal such as 0.57 may miss its value by, in nanoseconds: not to be rounded away.
constexpr double kRepresentationError = 1e-3;

} // namespace

Instant wholeNanoseconds(Seconds seconds) {
    if (!(seconds > Seconds::zero()))
        return Instant::zero();
    if (seconds > kCentury)
        seconds = kCentury;
    return Instant(static_cast<Instant::rep>(std::floor(
        std::chrono::duration<double, std::nano>(seconds).count() + kRepresentationError)));
}

Seconds inSeconds(Instant instant) {
    return std::chrono::duration_cast<Seconds>(instant);
}

} // namespace orvanta
