#pragma once

#include <cmath>

namespace orvanta {

/// A setting within its limits. The comparisons take the number where one side is none, so NaN
/// gives the upper limit.
[[nodiscard]] inline float limited(float value, float lowest, float highest) noexcept {
    return std::fmax(std::fmin(value, highest), lowest);
}

} // namespace orvanta
