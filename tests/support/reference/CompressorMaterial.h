#pragma once

#include "core/dsp/CompressorPreset.h"

#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

/// What the compressor's tests put into it.
namespace orvanta::reference {

inline std::vector<float> noise(std::size_t count, float amplitude, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> value(-amplitude, amplitude);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = value(random);
    return samples;
}

/// Noise whose loudness wanders between silence and a little over full scale, so that detectors
/// rise, fall, rest and pass through their knees.
inline std::vector<float> swells(std::size_t count, unsigned seed = 1) {
    std::vector<float> samples = noise(count, 1.0F, seed);
    std::mt19937 random(seed + 1000);
    float loudness = 0.0F;
    for (std::size_t k = 0; k < count; ++k) {
        if (k % 250 == 0) {
            const auto dice = static_cast<float>(random() % 8);
            loudness = dice == 0.0F ? 0.0F : 1.5F * std::exp2(-1.5F * (dice - 1.0F));
        }
        samples[k] *= loudness;
    }
    return samples;
}

/// Settings of every kind within and a little beyond what a user can set.
inline CompressorBandSettings randomBand(std::mt19937& random) {
    const auto between = [&](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random);
    };
    CompressorBandSettings band;
    band.threshold = between(-60.0F, 3.0F);
    band.ratio = random() % 4 == 0 ? 1.0F : between(1.0F, 20.0F);
    band.attackMs = random() % 4 == 0 ? 0.0F : between(0.0F, 80.0F);
    band.releaseMs = between(1.0F, 500.0F);
    band.makeupGain = between(-6.0F, 12.0F);
    band.lookaheadMs = random() % 3 == 0 ? 0.0F : between(-1.0F, 12.0F);
    band.detectionMode = random() % 2 == 0 ? DetectionMode::peak : DetectionMode::rms;
    band.autoMakeup = random() % 2 == 0;
    return band;
}

inline CompressorPreset randomPreset(std::mt19937& random) {
    CompressorPreset preset;
    for (int band = 0; band < 3; ++band)
        preset.bands.push_back(randomBand(random));
    return preset;
}

} // namespace orvanta::reference
