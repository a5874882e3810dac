#include "core/dsp/StereoWidener.h"

#include <cmath>

namespace orvanta::StereoWidener {
namespace {

constexpr float kUnchanged = 0.01F;
constexpr std::size_t kLongestBlock = 8192;

bool widens(std::size_t count, float width) noexcept {
    return std::fabs(width - 1.0F) > kUnchanged && count <= kLongestBlock;
}

WidthFactors factorsAt(float width) noexcept {
    return {.same = 0.5F + width * 0.5F, .cross = 0.5F - width * 0.5F};
}

} // namespace

void processPlanar(float* left, float* right, std::size_t count, float width,
                   const Kernels& kernels) noexcept {
    if (widens(count, width))
        kernels.stereo.widenPlanar(left, right, count, factorsAt(width));
}

void process(float* buffer, std::size_t frameCount, float width, const Kernels& kernels) noexcept {
    if (widens(frameCount, width))
        kernels.stereo.widenInterleaved(buffer, frameCount, factorsAt(width));
}

} // namespace orvanta::StereoWidener
