#include "core/dsp/EQProcessor.h"

#include <algorithm>
#include <cmath>

namespace orvanta {
namespace {

static_assert(kEQBandCount == kMostCascadedBands);

constexpr float kShelfQ = 0.707F;
constexpr float kPeakQ = 1.4F;

EQBand flatBand(std::size_t band) {
    if (band == 0)
        return {0, kEQFrequencies[band], kShelfQ, EQBandType::lowShelf};
    if (band == kEQBandCount - 1)
        return {0, kEQFrequencies[band], kShelfQ, EQBandType::highShelf};
    return {0, kEQFrequencies[band], kPeakQ, EQBandType::peaking};
}

std::array<EQBand, kEQBandCount> flatBands() {
    std::array<EQBand, kEQBandCount> bands;
    for (std::size_t band = 0; band < bands.size(); ++band)
        bands[band] = flatBand(band);
    return bands;
}

/// fmin and fmax take the number where the other side is none.
float clampedGain(float gain) {
    return std::fmax(-EQProcessor::kLargestGain, std::fmin(gain, EQProcessor::kLargestGain));
}

} // namespace

EQProcessor::EQProcessor(double sampleRate, std::size_t maxChannels, const Kernels& kernels)
    : kernels_(kernels.eq), sampleRate_(sampleRate), bands_(flatBands()), histories_(maxChannels) {
    recalculateAllCoefficients();
}

void EQProcessor::setGain(int band, float gain) noexcept {
    if (band < 0 || band >= kEQBandCount)
        return;
    const auto index = static_cast<std::size_t>(band);
    bands_[index].gain = clampedGain(gain);
    updateBandCoefficients(index);
    publish();
}

void EQProcessor::setAllGains(std::span<const float> gains) noexcept {
    for (std::size_t band = 0; band < gains.size() && band < bands_.size(); ++band)
        bands_[band].gain = clampedGain(gains[band]);
    recalculateAllCoefficients();
}

EQPreset EQProcessor::currentPreset() const noexcept {
    EQPreset preset;
    for (std::size_t band = 0; band < bands_.size(); ++band)
        preset.gains[band] = bands_[band].gain;
    return preset;
}

void EQProcessor::reset() noexcept {
    ++clearGeneration_;
    setAllGains(EQPreset().gains);
}

void EQProcessor::updateSampleRate(double rate) noexcept {
    if (!(rate > 0.0))
        return;
    sampleRate_ = rate;
    ++clearGeneration_;
    recalculateAllCoefficients();
}

void EQProcessor::recalculateAllCoefficients() noexcept {
    for (std::size_t band = 0; band < bands_.size(); ++band)
        updateBandCoefficients(band);
    publish();
}

void EQProcessor::updateBandCoefficients(std::size_t band) noexcept {
    coefficients_[band] = eqCoefficients(bands_[band], sampleRate_);
    vdspCoeffs_[band] = rounded(coefficients_[band]);
}

void EQProcessor::publish() noexcept {
    Published next;
    next.clearGeneration = clearGeneration_;
    bool isFlat = true;
    for (std::size_t band = 0; band < bands_.size(); ++band) {
        if (!bands_[band].isActive())
            continue;
        isFlat = false;
        if (!isStable(vdspCoeffs_[band]))
            continue;
        const auto& [b0, b1, b2, a1, a2] = vdspCoeffs_[band];
        EQCascade& cascade = next.cascade;
        cascade.band[cascade.count] = band;
        cascade.row[cascade.count] = {b0, b1, b2, a1, a2, {}};
        ++cascade.count;
    }
    published_.publish(next);
    isFlat_.store(isFlat);
}

const EQCascade& EQProcessor::latestCascade() noexcept {
    const Published& published = published_.latest();
    if (published.clearGeneration != clearedGeneration_) {
        clearedGeneration_ = published.clearGeneration;
        std::fill(histories_.begin(), histories_.end(), EQChannelHistory{});
    }
    return published.cascade;
}

void EQProcessor::process(float* buffer, std::size_t count, std::size_t channel) noexcept {
    if (channel >= histories_.size() || count < 1)
        return;
    const EQCascade& cascade = latestCascade();
    if (cascade.count == 0)
        return;
    const std::size_t filtered = std::min(count, kMostSamples);
    kernels_.mono(buffer, filtered, cascade, histories_[channel]);
    recoverIfPoisoned(buffer, filtered, cascade, channel);
}

void EQProcessor::processPair(float* left, float* right, std::size_t count) noexcept {
    if (histories_.size() < 2) {
        process(left, count, 0);
        return;
    }
    if (count < 1)
        return;
    const EQCascade& cascade = latestCascade();
    if (cascade.count == 0)
        return;
    const std::size_t filtered = std::min(count, kMostSamples);
    kernels_.pair(left, right, filtered, cascade, histories_[0], histories_[1]);
    recoverIfPoisoned(left, filtered, cascade, 0);
    recoverIfPoisoned(right, filtered, cascade, 1);
}

/// A recursive filter never gets rid of what is no finite number, and neither does the next one in
/// the series: so the last sample tells of all samples before it, and of the histories too.
void EQProcessor::recoverIfPoisoned(float* buffer, std::size_t count, const EQCascade& cascade,
                                    std::size_t channel) noexcept {
    if (std::isfinite(buffer[count - 1]))
        return;
    for (std::size_t k = 0; k < count; ++k)
        buffer[k] = std::isfinite(buffer[k]) ? buffer[k] : 0.0F;
    for (std::size_t k = 0; k < cascade.count; ++k)
        histories_[channel].bands[cascade.band[k]] = EQHistory{};
}

} // namespace orvanta
