#pragma once

#include "core/platform/RunLoop.h"

#include <chrono>

namespace orvanta {

/// A point on a queue's clock, counted from that clock's start. Whole nanoseconds, so that sums
/// of equal steps meet exactly whatever their order.
using Instant = std::chrono::nanoseconds;

/// `seconds` in whole nanoseconds, rounded down: sixty sixtieths of a second never exceed the
/// second. Negative or not a number means zero; beyond a century means a century.
[[nodiscard]] Instant wholeNanoseconds(Seconds seconds);

[[nodiscard]] Seconds inSeconds(Instant instant);

} // namespace orvanta
