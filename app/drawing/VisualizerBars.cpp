#include "app/drawing/VisualizerBars.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orvanta {
namespace {

constexpr float kSilence = 0.001F;
/// What a frame leaves of the held peak.
constexpr float kPeakDecay = 0.85F;
/// What a falling bar takes of its target in a frame; the rest it keeps of its height.
constexpr double kFallShare = 0.2;
/// What a frame without sound leaves of a bar.
constexpr double kFadeShare = 0.9;
/// No higher than this, a bar is down.
constexpr double kDownHeight = 0.01;

double fallen(double height, double target) noexcept {
    return kFallShare * target + (1.0 - kFallShare) * height;
}

} // namespace

bool VisualizerBars::isAudible(float level) noexcept {
    return std::isfinite(level) && level > kSilence;
}

void VisualizerBars::follow(float level) noexcept {
    previousLevel_ = std::max(previousLevel_ * kPeakDecay, level);
    const double reach = std::min(static_cast<double>(previousLevel_), 1.0);
    for (std::size_t bar = 0; bar < heights_.size(); ++bar) {
        const double target = weights.at(bar) * reach;
        double& height = heights_.at(bar);
        height = height < target ? target : fallen(height, target);
    }
}

void VisualizerBars::fade() noexcept {
    for (double& height : heights_)
        height *= kFadeShare;
}

bool VisualizerBars::areDown() const noexcept {
    return std::ranges::none_of(heights_, [](double height) { return height > kDownHeight; });
}

} // namespace orvanta
