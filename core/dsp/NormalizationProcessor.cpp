#include "core/dsp/NormalizationProcessor.h"

#include "core/dsp/UsableRate.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace orvanta {
namespace {

// The sections of ITU-R BS.1770 for 48 kHz: a shelf for the head, and a high-pass.
constexpr WeightingCoeffs kWeightCoeffsStage1{1.5351249F, -2.6916962F, 1.1983929F, -1.6906593F,
                                              0.73248076F};
constexpr WeightingCoeffs kWeightCoeffsStage2{1.0F, -2.0F, 1.0F, -1.9900475F, 0.99007225F};

constexpr double kWindowSeconds = 0.4;
constexpr std::size_t kMeasuredSamples = 8192;
constexpr float kMaxDBPerSecond = 2.0F;
/// Gains as near as this are the same.
constexpr float kGainTolerance = 0.001F;
constexpr float kSmallestMean = 1e-20F;
constexpr float kSmallestLevel = 1e-10F;
constexpr float kNoGainDB = -120.0F;

constexpr Weighting kWeightingAtRest{{kWeightCoeffsStage1, kWeightCoeffsStage2}, {}};

bool isFinite(const WeightingDelay& delay) noexcept {
    return std::isfinite(delay.x1) && std::isfinite(delay.x2) && std::isfinite(delay.y1) &&
           std::isfinite(delay.y2);
}

float linear(float decibels) noexcept {
    return std::pow(10.0F, decibels / 20.0F);
}

bool differ(float gain, float other) noexcept {
    return std::fabs(gain - other) > kGainTolerance;
}

} // namespace

NormalizationProcessor::NormalizationProcessor(double sampleRate, const Kernels& kernels)
    : kernels_(kernels.level),
      sampleRate_(static_cast<float>(usableRate(sampleRate))),
      windowSizeInSamples_(static_cast<std::size_t>(usableRate(sampleRate) * kWindowSeconds)),
      weighting_(kWeightingAtRest) {}

void NormalizationProcessor::setTargetLUFS(float decibels) noexcept {
    if (std::isfinite(decibels))
        targetLUFS_.store(decibels);
}

void NormalizationProcessor::setMaxCorrectionDB(float decibels) noexcept {
    if (std::isfinite(decibels))
        maxCorrectionDB_.store(decibels);
}

void NormalizationProcessor::clear() noexcept {
    weighting_ = kWeightingAtRest;
    rmsAccumulator_ = 0.0F;
    sampleCount_ = 0;
    currentGainDB_.store(0.0F);
    currentGainLinear_.store(1.0F);
    targetGainLinear_.store(1.0F);
}

void NormalizationProcessor::process(float* buffer, std::size_t count,
                                     std::size_t channel) noexcept {
    if (!enabled_.load() || count < 1)
        return;
    clear_.answer([this] { clear(); });
    if (channel == 0)
        measure(buffer, count);
    slew(count, channel);
    const float gain = currentGainLinear_.load();
    if (differ(gain, 1.0F))
        kernels_.scale(buffer, gain, buffer, count);
}

void NormalizationProcessor::processPair(float* left, float* right, std::size_t count) noexcept {
    process(left, count, 0);
    process(right, count, 1);
}

void NormalizationProcessor::measure(const float* buffer, std::size_t count) noexcept {
    const std::size_t measured = std::min(count, kMeasuredSamples);
    const float squares = kernels_.weightedSquares(buffer, measured, weighting_);
    // What is no finite number stays in a feedback path until the end of the block.
    if (!isFinite(weighting_.delay[0]) || !isFinite(weighting_.delay[1])) {
        weighting_ = kWeightingAtRest;
        return;
    }
    rmsAccumulator_ += squares;
    sampleCount_ += measured;
    if (sampleCount_ >= windowSizeInSamples_)
        closeWindow();
}

void NormalizationProcessor::closeWindow() noexcept {
    const float mean = std::max(rmsAccumulator_ / static_cast<float>(sampleCount_), kSmallestMean);
    const float rootMeanSquare = std::max(std::sqrt(mean), kSmallestLevel);
    const float level = 20.0F * std::log10(rootMeanSquare);
    const float most = maxCorrectionDB_.load();
    const float correction = std::max(-most, std::min(targetLUFS_.load() - level, most));
    // The bound is for settings beyond all sense: an infinite gain could never come back.
    targetGainLinear_.store(std::min(linear(correction), FLT_MAX));
    currentGainDB_.store(correction);
    rmsAccumulator_ = 0.0F;
    sampleCount_ = 0;
}

float NormalizationProcessor::stepFor(std::size_t count) noexcept {
    if (count != steppedCount_) {
        steppedCount_ = count;
        step_ = linear(kMaxDBPerSecond * (static_cast<float>(count) / sampleRate_));
    }
    return step_;
}

void NormalizationProcessor::slew(std::size_t count, std::size_t channel) noexcept {
    const float current = currentGainLinear_.load();
    const float target = targetGainLinear_.load();
    if (!differ(current, target))
        return;
    const float step = stepFor(count);
    const float ratio = target / std::max(current, kSmallestLevel);
    float next = target;
    if (ratio > step)
        next = current * step;
    else if (ratio < 1.0F / step)
        next = current / step;
    currentGainLinear_.store(next);
    if (channel == 0)
        currentGainDB_.store(next > kSmallestLevel ? 20.0F * std::log10(next) : kNoGainDB);
}

} // namespace orvanta
