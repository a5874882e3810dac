#pragma once

#include "core/dsp/kernels/Lanes.h"
#include "core/dsp/kernels/LevelKernels.h"

namespace orvanta {
namespace {

ORVANTA_INLINE float weighted(float x, const WeightingCoeffs& c, WeightingDelay& d) noexcept {
    const float y = c.b0 * x + c.b1 * d.x1 + c.b2 * d.x2 - c.a1 * d.y1 - c.a2 * d.y2;
    d = {x, d.x1, y, d.y1};
    return y;
}

/// The two sections stand in one loop: each is a chain of operations that wait for each other, and
/// the processor works on both chains at once.
float weightedSquares(const float* samples, std::size_t count, Weighting& weighting) noexcept {
    // Copies, which the compiler can keep in registers.
    const WeightingCoeffs firstCoeffs = weighting.coeffs[0];
    const WeightingCoeffs secondCoeffs = weighting.coeffs[1];
    WeightingDelay first = weighting.delay[0];
    WeightingDelay second = weighting.delay[1];
    constexpr std::size_t kSums = 4;
    float sums[kSums] = {};

    const auto square = [&](float sample) __attribute__((always_inline)) {
        const float output = weighted(weighted(sample, firstCoeffs, first), secondCoeffs, second);
        return output * output;
    };
    std::size_t k = 0;
    for (; k + kSums <= count; k += kSums) {
        sums[0] += square(samples[k]);
        sums[1] += square(samples[k + 1]);
        sums[2] += square(samples[k + 2]);
        sums[3] += square(samples[k + 3]);
    }
    for (std::size_t sum = 0; k < count; ++k, ++sum)
        sums[sum] += square(samples[k]);

    weighting.delay[0] = first;
    weighting.delay[1] = second;
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

} // namespace
} // namespace orvanta
