#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanta::reference {

/// The width of planar stereo, in whole passes over a copy of the left channel.
inline void widen(std::vector<float>& left, std::vector<float>& right, float width) {
    if (!(std::fabs(width - 1.0F) > 0.01F) || left.size() > 8192)
        return;
    const float same = 0.5F + width * 0.5F;
    const float cross = 0.5F - width * 0.5F;
    const std::vector<float> scratch = left;
    for (std::size_t k = 0; k < left.size(); ++k)
        left[k] = scratch[k] * same;
    for (std::size_t k = 0; k < left.size(); ++k)
        left[k] = right[k] * cross + left[k];
    for (std::size_t k = 0; k < left.size(); ++k)
        right[k] = right[k] * same;
    for (std::size_t k = 0; k < left.size(); ++k)
        right[k] = scratch[k] * cross + right[k];
}

/// A crossfeed, one frame after the other.
class Crossfeed {
public:
    explicit Crossfeed(double sampleRate)
        : delaySamples(std::max<std::size_t>(static_cast<std::size_t>(sampleRate * 0.0003), 1)),
          lpCoeff(static_cast<float>(std::exp(-4398.22971502571 / sampleRate))),
          delayBufferL_(delaySamples),
          delayBufferR_(delaySamples) {}

    void process(std::vector<float>& left, std::vector<float>& right) {
        if (amount < 0.01F || left.empty())
            return;
        for (std::size_t k = 0; k < left.size(); ++k)
            next(left[k], right[k]);
    }

    const std::size_t delaySamples;
    const float lpCoeff;
    float amount = 0.0F;

private:
    void next(float& left, float& right) {
        const float norm = 1.0F / (amount * 0.5F + 1.0F);
        const float l = std::isfinite(left) ? left : 0.0F;
        const float r = std::isfinite(right) ? right : 0.0F;
        const float dL = delayBufferL_[delayPos_];
        const float dR = delayBufferR_[delayPos_];
        delayBufferL_[delayPos_] = l;
        delayBufferR_[delayPos_] = r;
        if (++delayPos_ == delaySamples)
            delayPos_ = 0;
        lpStateL_ = dR * (1.0F - lpCoeff) + lpStateL_ * lpCoeff;
        lpStateR_ = dL * (1.0F - lpCoeff) + lpStateR_ * lpCoeff;
        left = norm * (l + amount * lpStateL_);
        right = norm * (r + amount * lpStateR_);
    }

    std::vector<float> delayBufferL_;
    std::vector<float> delayBufferR_;
    std::size_t delayPos_ = 0;
    float lpStateL_ = 0.0F;
    float lpStateR_ = 0.0F;
};

} // namespace orvanta::reference
