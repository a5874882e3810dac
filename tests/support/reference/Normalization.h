#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanta::reference {

/// One section of the weighting.
struct WeightingSection {
    float b0;
    float b1;
    float b2;
    float a1;
    float a2;
    float x1 = 0.0F;
    float x2 = 0.0F;
    float y1 = 0.0F;
    float y2 = 0.0F;

    float next(float x) {
        const float y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
        x2 = x1;
        x1 = x;
        y2 = y1;
        y1 = y;
        return y;
    }

    void reset() { x1 = x2 = y1 = y2 = 0.0F; }

    [[nodiscard]] bool isFinite() const {
        return std::isfinite(x1) && std::isfinite(x2) && std::isfinite(y1) && std::isfinite(y2);
    }
};

/// A loudness normaliser, one section after the other over a copy of the block.
class Normalization {
public:
    explicit Normalization(double rate)
        : sampleRate(static_cast<float>(rate)),
          windowSizeInSamples(static_cast<std::size_t>(rate * 0.4)) {}

    void process(float* buffer, std::size_t count, std::size_t channel) {
        if (count < 1)
            return;
        if (channel == 0)
            measure(buffer, count);
        slew(count, channel);
        if (std::fabs(currentGainLinear - 1.0F) > 0.001F)
            for (std::size_t k = 0; k < count; ++k)
                buffer[k] = buffer[k] * currentGainLinear;
    }

    const float sampleRate;
    const std::size_t windowSizeInSamples;
    float targetLUFS = -14.0F;
    float maxCorrectionDB = 12.0F;
    float currentGainDB = 0.0F;
    float currentGainLinear = 1.0F;
    float targetGainLinear = 1.0F;
    std::size_t sampleCount = 0;
    /// Of the last window.
    float level = 0.0F;
    std::size_t closedWindows = 0;

private:
    void measure(const float* buffer, std::size_t count) {
        const std::size_t n = std::min<std::size_t>(count, 8192);
        std::vector<float> scratch(buffer, buffer + n);
        for (float& sample : scratch)
            sample = stage1_.next(sample);
        for (float& sample : scratch)
            sample = stage2_.next(sample);
        if (!stage1_.isFinite() || !stage2_.isFinite()) {
            stage1_.reset();
            stage2_.reset();
            return;
        }
        rmsAccumulator_ += sumOfSquares(scratch);
        sampleCount += n;
        if (sampleCount >= windowSizeInSamples)
            closeWindow();
    }

    /// The order of summation that the kernels promise.
    static float sumOfSquares(const std::vector<float>& samples) {
        std::array<float, 4> sums{};
        for (std::size_t k = 0; k < samples.size(); ++k)
            sums[k % 4] += samples[k] * samples[k];
        return (sums[0] + sums[1]) + (sums[2] + sums[3]);
    }

    void closeWindow() {
        const float mean = std::max(rmsAccumulator_ / static_cast<float>(sampleCount), 1e-20F);
        const float rms = std::max(std::sqrt(mean), 1e-10F);
        level = 20.0F * std::log10(rms);
        float correction = targetLUFS - level;
        if (correction > maxCorrectionDB)
            correction = maxCorrectionDB;
        if (correction < -maxCorrectionDB)
            correction = -maxCorrectionDB;
        targetGainLinear = std::pow(10.0F, correction / 20.0F);
        currentGainDB = correction;
        rmsAccumulator_ = 0.0F;
        sampleCount = 0;
        ++closedWindows;
    }

    void slew(std::size_t count, std::size_t channel) {
        const float step = std::pow(10.0F, 2.0F * (static_cast<float>(count) / sampleRate) / 20.0F);
        if (!(std::fabs(currentGainLinear - targetGainLinear) > 0.001F))
            return;
        const float ratio = targetGainLinear / std::max(currentGainLinear, 1e-10F);
        float next = targetGainLinear;
        if (ratio > step)
            next = currentGainLinear * step;
        else if (ratio < 1.0F / step)
            next = currentGainLinear / step;
        currentGainLinear = next;
        if (channel == 0)
            currentGainDB = next > 1e-10F ? 20.0F * std::log10(next) : -120.0F;
    }

    WeightingSection stage1_{1.5351249F, -2.6916962F, 1.1983929F, -1.6906593F, 0.73248076F};
    WeightingSection stage2_{1.0F, -2.0F, 1.0F, -1.9900475F, 0.99007225F};
    float rmsAccumulator_ = 0.0F;
};

} // namespace orvanta::reference
