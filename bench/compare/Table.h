#pragma once

#include "bench/compare/Measurement.h"
#include "bench/compare/Stages.h"

#include <cstddef>
#include <string>
#include <vector>

namespace orvanta::compare {

/// What was measured of one stage.
struct StageTimings {
    const Stage& stage;
    /// By block length, then by entry.
    std::vector<std::vector<Timing>> timings;
};

/// A Markdown table: a row for each contender, a column for each block length. Peers have their
/// median's ratio to each of ours behind it.
[[nodiscard]] std::string table(const StageTimings& measured,
                                const std::vector<std::size_t>& blockLengths);

} // namespace orvanta::compare
