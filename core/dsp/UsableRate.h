#pragma once

#include <algorithm>

namespace orvanta {

/// The sample rate that a processor computes its times from: what is no rate (0 or below, NaN)
/// counts as 0 and so leaves the shortest times; rates beyond 1 GHz count as 1 GHz.
inline double usableRate(double sampleRate) noexcept {
    constexpr double kHighestRate = 1e9;
    return sampleRate > 0.0 ? std::min(sampleRate, kHighestRate) : 0.0;
}

} // namespace orvanta
