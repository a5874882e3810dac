#pragma once

#include "core/dsp/CompressorProcessor.h"

#include <rapidcheck.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

/// Ways to run a compressor, and what its tests compare.
namespace orvanta::test {

inline constexpr double rate = 48000.0;
inline constexpr float infinity = std::numeric_limits<float>::infinity();
using Reductions = std::array<float, 3>;

inline std::vector<float> processed(CompressorProcessor& compressor, std::vector<float> samples,
                                    std::size_t channel = 0) {
    compressor.process(samples.data(), samples.size(), channel);
    return samples;
}

/// In blocks of any length up to `longest`; inside a property only.
inline std::vector<float> processedInAnyBlocks(CompressorProcessor& compressor,
                                               std::vector<float> samples, std::size_t longest) {
    for (std::size_t at = 0; at < samples.size();) {
        const auto count =
            std::min(*rc::gen::inRange<std::size_t>(1, longest + 1), samples.size() - at);
        compressor.process(&samples[at], count, 0);
        at += count;
    }
    return samples;
}

inline CompressorPreset withRatios(float low, float middle, float high) {
    CompressorPreset preset = CompressorPreset::vocal;
    preset.bands[0].ratio = low;
    preset.bands[1].ratio = middle;
    preset.bands[2].ratio = high;
    return preset;
}

inline bool allFinite(const std::vector<float>& samples) {
    return std::all_of(samples.begin(), samples.end(), [](float s) { return std::isfinite(s); });
}

} // namespace orvanta::test
