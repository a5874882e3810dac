#pragma once

#include "core/dsp/NormalizationProcessor.h"
#include "tests/core/dsp/LevelSignals.h"

#include <algorithm>
#include <cstddef>
#include <vector>

/// Ways to run a normaliser, and to read what it measured.
namespace orvanta::test {

inline constexpr double rate = 48000.0;
/// Samples of a window at this rate.
inline constexpr std::size_t window = 19200;

inline std::vector<float> processed(NormalizationProcessor& normalizer, std::vector<float> samples,
                                    std::size_t channel = 0) {
    normalizer.process(samples.data(), samples.size(), channel);
    return samples;
}

/// In blocks, through channel 0 only.
inline void run(NormalizationProcessor& normalizer, const std::vector<float>& signal,
                std::size_t blockLength) {
    for (std::size_t begin = 0; begin < signal.size(); begin += blockLength) {
        const std::size_t end = std::min(begin + blockLength, signal.size());
        std::vector<float> block(signal.begin() + static_cast<std::ptrdiff_t>(begin),
                                 signal.begin() + static_cast<std::ptrdiff_t>(end));
        normalizer.process(block.data(), block.size(), 0);
    }
}

/// One that tells every level by the gain it wants: minus the level, in dB.
inline void makeTelling(NormalizationProcessor& normalizer) {
    normalizer.setTargetLUFS(0.0F);
    normalizer.setMaxCorrectionDB(1000.0F);
}

inline double toldLevel(const NormalizationProcessor& normalizer) {
    return -decibels(static_cast<double>(normalizer.targetGainLinear()));
}

/// The level of the last of three windows, when the weighting has settled.
inline double levelOf(const std::vector<float>& threeWindows, double sampleRate = rate) {
    NormalizationProcessor normalizer(sampleRate);
    makeTelling(normalizer);
    run(normalizer, threeWindows, 480);
    return toldLevel(normalizer);
}

} // namespace orvanta::test
