#pragma once

#include "bench/compare/Contender.h"
#include "bench/compare/Settings.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>

/// Whether a contender does the work it is measured for: a plug-in that has come up bypassed, or
/// with a setting in another unit than thought, would win every comparison.
namespace orvanta::compare {

struct Finding {
    bool isGood;
    std::string text; ///< what was measured
};

/// Looks at fresh contenders, driven in blocks of so many frames.
using Check = std::function<Finding(const ContenderFactory& make, std::size_t blockFrames)>;

/// Every band raises or lowers its frequency, by half its setting or more, on both channels.
[[nodiscard]] Check equalises(std::span<const EQBandSetting> bands);
/// A loud tone in each band comes out less amplified than a quiet one.
[[nodiscard]] Check compresses();
/// Loud music comes out with peaks near the ceiling, `toleranceDB` above it at most, and without
/// having lost more loudness than that takes.
[[nodiscard]] Check limits(double ceilingDB, double toleranceDB);
/// A low tone on the left alone is heard on the right, more softly.
[[nodiscard]] Check crossfeeds();
/// Reads what BS.1770 says of a tone, to a tenth of a dB.
[[nodiscard]] Check metersLoudness();
/// All of them.
[[nodiscard]] Check all(std::vector<Check> checks);

} // namespace orvanta::compare
