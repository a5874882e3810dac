#pragma once

#include "bench/compare/Contender.h"

#include <string>
#include <vector>

namespace orvanta::compare {

struct OurContender {
    std::string name;
    ContenderFactory make;
};

/// Ours, once for each instruction set that this machine runs, the widest first.
[[nodiscard]] std::vector<OurContender> ourLimiters(double ceilingDB);

} // namespace orvanta::compare
