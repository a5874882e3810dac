#pragma once

#include "bench/compare/Checks.h"
#include "bench/compare/Contender.h"
#include "bench/compare/Peers.h"

#include <string>
#include <vector>

namespace orvanta::compare {

struct Entry {
    std::string name;
    bool isOurs;
    ContenderFactory make;
    Check check;
};

/// One kind of work, and everybody who does it. Ours come first, the widest first of all.
struct Stage {
    std::string title;
    std::vector<Entry> entries;
};

/// `world` must outlive them.
[[nodiscard]] Stage tenBandEQStage(Lv2World& world);
[[nodiscard]] Stage sixBandEQStage(Lv2World& world);
[[nodiscard]] Stage compressorStage(Lv2World& world);
[[nodiscard]] Stage limiterStage(Lv2World& world);
[[nodiscard]] Stage crossfeedStage();
[[nodiscard]] Stage loudnessStage();
/// The whole chain against chains of the named peers, one with each multiband compressor.
[[nodiscard]] Stage chainStage(Lv2World& world, const std::string& eq, const std::string& limiter);

} // namespace orvanta::compare
