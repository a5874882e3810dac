#pragma once

#include "bench/compare/Checks.h"
#include "bench/compare/Contender.h"
#include "bench/compare/Settings.h"

#include <span>
#include <string>
#include <vector>

namespace orvanta::compare {

struct OurContender {
    std::string name;
    ContenderFactory make;
};

// Each of ours once for every instruction set that this machine runs, the widest first.

/// With these of `kTenBands` raised or lowered.
[[nodiscard]] std::vector<OurContender> ourEQs(std::span<const EQBandSetting> bands);
[[nodiscard]] std::vector<OurContender> ourCompressors();
[[nodiscard]] std::vector<OurContender> ourLimiters(double ceilingDB);
[[nodiscard]] std::vector<OurContender> ourCrossfeeds();
/// Measures the left channel and applies its gain to both.
[[nodiscard]] std::vector<OurContender> ourNormalizations();
/// Everything there is, through the render callback.
[[nodiscard]] std::vector<OurContender> ourChains();
/// What each stage of `ourChains` says of itself after seconds of the music that is measured with.
[[nodiscard]] Check everyStageIsAtWork();

} // namespace orvanta::compare
