#pragma once

#include "core/dsp/kernels/Kernels.h"

#include <cstddef>

/// Mid and side, weighed anew: each channel becomes mid plus or minus `width` times side, where mid
/// is half the sum and side half the difference of the channels. Width 0 is mono, 1 changes
/// nothing, above 1 the sides come out stronger.
///
/// Without state or memory of its own: each frame's two samples come from its two old ones, so taps
/// on different threads have nothing to share, and a sample that is no finite number spoils its
/// frame only. A width within 0.01 of 1 and a block of more than 8192 frames leave the audio as it
/// is.
namespace orvanta::StereoWidener {

/// Two buffers of one channel each, in place; they do not overlap.
void processPlanar(float* left, float* right, std::size_t count, float width,
                   const Kernels& kernels = orvanta::kernels()) noexcept;

/// `frameCount` pairs of left and right in one buffer, in place.
void process(float* buffer, std::size_t frameCount, float width,
             const Kernels& kernels = orvanta::kernels()) noexcept;

} // namespace orvanta::StereoWidener
