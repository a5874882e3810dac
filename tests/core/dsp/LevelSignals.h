#pragma once

#include "core/dsp/kernels/Kernels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

/// Signals and comparisons for the tests of what measures and holds levels.
namespace orvanta::test {

/// All that this machine can run.
inline std::vector<const Kernels*> everyKernels() {
    std::vector<const Kernels*> all;
    for (const InstructionSet set : {InstructionSet::baseline, InstructionSet::avx2})
        if (const Kernels* const kernels = kernelsFor(set))
            all.push_back(kernels);
    return all;
}

inline std::vector<float> whiteNoise(std::size_t count, float amplitude, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> value(-amplitude, amplitude);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = value(random);
    return samples;
}

inline std::vector<float> sine(std::size_t count, double hertz, double peak, double rate) {
    std::vector<float> samples(count);
    for (std::size_t k = 0; k < count; ++k)
        samples[k] = static_cast<float>(
            peak * std::sin(2.0 * std::numbers::pi * hertz * static_cast<double>(k) / rate));
    return samples;
}

/// Noise in which every few samples something is not as it should be.
inline std::vector<float> roughNoise(std::size_t count, float amplitude, unsigned seed) {
    using Limits = std::numeric_limits<float>;
    const std::vector<float> oddities{Limits::quiet_NaN(),
                                      Limits::infinity(),
                                      -Limits::infinity(),
                                      Limits::denorm_min(),
                                      -1e-39F,
                                      -0.0F,
                                      1e30F};
    std::vector<float> samples = whiteNoise(count, amplitude, seed);
    std::mt19937 random(seed);
    for (std::size_t k = random() % 50; k < count; k += 1 + random() % 50)
        samples[k] = oddities[random() % oddities.size()];
    return samples;
}

/// Lengths of blocks at which a loop over lanes may go wrong, then arbitrary ones.
inline std::vector<std::size_t> blockLengths() {
    std::vector<std::size_t> lengths;
    for (std::size_t length = 1; length <= 70; ++length)
        lengths.push_back(length);
    lengths.insert(lengths.end(), {255, 256, 257, 1024, 4096});
    std::mt19937 random(5);
    for (int k = 0; k < 10; ++k)
        lengths.push_back(1 + random() % 2000);
    return lengths;
}

/// Cuts that make blocks of `count` samples: ends of blocks, the last one at the end of all.
inline std::vector<std::size_t> randomBlockEnds(std::size_t count, std::size_t longest,
                                                unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::size_t> ends;
    for (std::size_t end = 0; end < count;) {
        end = std::min(end + 1 + random() % longest, count);
        ends.push_back(end);
    }
    return ends;
}

/// For comparisons that tell -0 from 0 and see into NaN.
inline std::vector<std::uint32_t> bitsOf(const std::vector<float>& samples) {
    std::vector<std::uint32_t> bits(samples.size());
    if (!samples.empty())
        std::memcpy(bits.data(), samples.data(), samples.size() * sizeof(float));
    return bits;
}

inline double decibels(double ratio) {
    return 20.0 * std::log10(ratio);
}

inline double fromDecibels(double decibels) {
    return std::pow(10.0, decibels / 20.0);
}

} // namespace orvanta::test
