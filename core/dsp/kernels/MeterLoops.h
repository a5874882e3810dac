#pragma once

#include "core/dsp/kernels/Finite.h"
#include "core/dsp/kernels/Lanes.h"
#include "core/dsp/kernels/LevelKernels.h"

namespace orvanta {
namespace {

/// A running sum of squares and a running maximum in sixteen lanes, whatever the width of a
/// register, so that the sum's roundings are everywhere the same.
struct SixteenMeters {
    static constexpr int kCount = 16;
    static constexpr int kVectors = kCount / kLanes;

    FloatLanes sums[kVectors] = {};
    FloatLanes peaks[kVectors] = {};

    ORVANTA_INLINE void add(const float* samples) noexcept {
        for (int v = 0; v < kVectors; ++v, samples += kLanes) {
            const auto sizes = magnitudes(finiteOnly(load<FloatLanes>(samples)));
            sums[v] += sizes * sizes;
            peaks[v] = sizes > peaks[v] ? sizes : peaks[v];
        }
    }

    [[nodiscard]] LevelSums total() const noexcept {
        float sum[kCount];
        float peak[kCount];
        std::memcpy(sum, sums, sizeof sum);
        std::memcpy(peak, peaks, sizeof peak);
        LevelSums total{};
        for (int lane = 0; lane < 4; ++lane)
            total.squares += (sum[lane] + sum[lane + 4]) + (sum[lane + 8] + sum[lane + 12]);
        for (const float size : peak)
            total.peak = size > total.peak ? size : total.peak;
        return total;
    }
};

LevelSums measure(const float* samples, std::size_t count) noexcept {
    constexpr std::size_t kStep = SixteenMeters::kCount;
    SixteenMeters meters;
    std::size_t k = 0;
    for (; k + kStep <= count; k += kStep)
        meters.add(samples + k);
    LevelSums levels = meters.total();
    for (; k < count; ++k) {
        const float size = __builtin_fabsf(finiteOnly(samples[k]));
        levels.squares += size * size;
        levels.peak = size > levels.peak ? size : levels.peak;
    }
    return levels;
}

void copyFinite(const float* from, float* to, std::size_t count) noexcept {
    std::size_t k = 0;
    for (; k + kLanes <= count; k += kLanes)
        store(to + k, finiteOnly(load<FloatLanes>(from + k)));
    for (; k < count; ++k)
        to[k] = finiteOnly(from[k]);
}

void scale(const float* from, float factor, float* to, std::size_t count) noexcept {
    std::size_t k = 0;
    for (; k + kLanes <= count; k += kLanes)
        store(to + k, load<FloatLanes>(from + k) * factor);
    for (; k < count; ++k)
        to[k] = from[k] * factor;
}

} // namespace
} // namespace orvanta
