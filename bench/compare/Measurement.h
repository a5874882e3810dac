#pragma once

#include "bench/compare/Contender.h"

#include <cstddef>
#include <vector>

namespace orvanta::compare {

/// Thread processor time of one contender, ns per stereo frame.
struct Timing {
    double median;
    double minimum;
};

/// Lets all of them process the same stretch of the signal, one after the other, round after round,
/// so that a machine which turns slow for a while turns slow for all. Each round begins with
/// another one.
[[nodiscard]] std::vector<Timing>
measureTurnAbout(const std::vector<std::unique_ptr<Contender>>& contenders, const Signal& signal,
                 std::size_t blockFrames, std::size_t rounds);

/// Keeps the current thread on one processor. Throws when it cannot.
void stayOnProcessor(int processor);

} // namespace orvanta::compare
