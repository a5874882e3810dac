#pragma once

#include "tests/e2e/support/IdleShare.h"

#include <algorithm>
#include <cstdint>
#include <iostream>

namespace orvanta::test {

inline constexpr double framesPerMillisecond = 48.0;
/// Most sound that may get past a tap when a stream opens or is moved, on a machine at rest and on
/// one whose processors are taken.
inline constexpr double idleLeakBoundMs = 20;
inline constexpr double loadedLeakBoundMs = 100;

/// The bound of an idle machine holds only on one: others may be at work on this one. Says which
/// it was.
inline double leakBoundAfter(const IdleShare& idle) {
    const double share = idle.value();
    std::cout << "the machine was idle for " << share * 100 << " % of the time\n";
    return share > 0.5 ? idleLeakBoundMs : loadedLeakBoundMs;
}

/// The same where cycles are so long that one alone may be longer.
inline double leakBoundAfter(const IdleShare& idle, std::uint32_t cycleFrames) {
    return std::max(cycleFrames / framesPerMillisecond, leakBoundAfter(idle));
}

} // namespace orvanta::test
