#pragma once

#include <array>
#include <cstddef>

namespace orvanta::compare {

inline constexpr std::size_t kMaxFrames = 4096;

/// One block of planar stereo, or of interleaved stereo in `left` alone. The channels stand apart
/// by more than the samples need: at a distance of whole pages loads of one would seem to the
/// processor to depend on stores to the other.
struct alignas(64) StereoBlock {
    std::array<float, 2 * kMaxFrames + 272> left{};
    std::array<float, kMaxFrames> right{};
};

/// Where such a block is.
struct StereoView {
    float* left;
    float* right;

    explicit StereoView(StereoBlock& block) noexcept
        : left(block.left.data()), right(block.right.data()) {}
};

} // namespace orvanta::compare
