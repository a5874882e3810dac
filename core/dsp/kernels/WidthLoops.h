#pragma once

#include "core/dsp/kernels/Lanes.h"
#include "core/dsp/kernels/StereoKernels.h"

namespace orvanta {
namespace {

void widenPlanar(float* left, float* right, std::size_t count,
                 const WidthFactors& factors) noexcept {
    const float same = factors.same;
    const float cross = factors.cross;
    std::size_t k = 0;
    for (; k + kLanes <= count; k += kLanes) {
        const auto oldLeft = load<FloatLanes>(left + k);
        const auto oldRight = load<FloatLanes>(right + k);
        store(left + k, oldRight * cross + oldLeft * same);
        store(right + k, oldLeft * cross + oldRight * same);
    }
    for (; k < count; ++k) {
        const float oldLeft = left[k];
        const float oldRight = right[k];
        left[k] = oldRight * cross + oldLeft * same;
        right[k] = oldLeft * cross + oldRight * same;
    }
}

/// Interleaved frames, each with its channels changed over.
template <class Floats>
ORVANTA_INLINE Floats swappedChannels(Floats frames) noexcept {
    if constexpr (sizeof frames == sizeof(Float4))
        return __builtin_shufflevector(frames, frames, 1, 0, 3, 2);
    else
        return __builtin_shufflevector(frames, frames, 1, 0, 3, 2, 5, 4, 7, 6);
}

void widenInterleaved(float* frames, std::size_t frameCount, const WidthFactors& factors) noexcept {
    const float same = factors.same;
    const float cross = factors.cross;
    const std::size_t sampleCount = 2 * frameCount;
    std::size_t k = 0;
    for (; k + kLanes <= sampleCount; k += kLanes) {
        const auto old = load<FloatLanes>(frames + k);
        store(frames + k, swappedChannels(old) * cross + old * same);
    }
    for (; k < sampleCount; k += 2)
        widenPlanar(frames + k, frames + k + 1, 1, factors);
}

} // namespace
} // namespace orvanta
