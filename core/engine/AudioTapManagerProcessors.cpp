// The processors of a running tap. Each is made here, complete, before its callback can see it.

#include "core/engine/AudioTapManager.h"
#include "core/engine/Limited.h"

#include <algorithm>
#include <memory>

namespace orvanta {
namespace {

/// Limiter and compressor keep state for a stereo pair, whatever the tap's channel count is.
constexpr std::size_t kPair = 2;
/// Longer blocks pass the compressor.
constexpr std::size_t kLongestCompressedBlock = 4096;
constexpr float kCrossfeedNeedsMoreThan = 0.01F;

bool hasActiveBand(const CompressorPreset& preset) {
    return std::any_of(preset.bands.begin(), preset.bands.end(),
                       [](const auto& band) { return band.ratio >= kSmallestCompressorRatio; });
}

} // namespace

void AudioTapManager::setEQ(std::int32_t pid, int band, float gain) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return;
    if (state->eqProcessor.get() == nullptr) {
        const auto channels = static_cast<std::size_t>(std::max(state->channels, 2));
        state->eqProcessor.replace(std::make_unique<EQProcessor>(state->sampleRate, channels));
    }
    state->eqProcessor.get()->setGain(band, gain);
}

std::optional<EQPreset> AudioTapManager::getEQ(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr || state->eqProcessor.get() == nullptr)
        return std::nullopt;
    return state->eqProcessor.get()->currentPreset();
}

void AudioTapManager::setCompressor(std::int32_t pid, const CompressorPreset& preset) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return;
    if (!hasActiveBand(preset)) {
        state->compressor.replace(nullptr);
        return;
    }
    if (CompressorProcessor* const running = state->compressor.get()) {
        running->apply(preset);
        return;
    }
    auto made =
        std::make_unique<CompressorProcessor>(state->sampleRate, kPair, kLongestCompressedBlock);
    made->apply(preset);
    state->compressor.replace(std::move(made));
}

std::optional<CompressorPreset> AudioTapManager::getCompressor(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr || state->compressor.get() == nullptr)
        return std::nullopt;
    return state->compressor.get()->currentPreset();
}

std::optional<std::vector<float>>
AudioTapManager::getCompressorGainReduction(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr || state->compressor.get() == nullptr)
        return std::nullopt;
    const auto reduction = state->compressor.get()->gainReduction();
    return std::vector<float>(reduction.begin(), reduction.end());
}

void AudioTapManager::setLimiterEnabled(std::int32_t pid, bool enabled) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return;
    state->limiterEnabled.store(enabled);
    if (enabled && state->limiter.get() == nullptr)
        state->limiter.replace(std::make_unique<LimiterProcessor>(state->sampleRate, kPair));
}

bool AudioTapManager::isLimiterEnabled(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state != nullptr && state->limiterEnabled.load();
}

void AudioTapManager::setNormalizationEnabled(std::int32_t pid, bool enabled) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return;
    state->normalizationEnabled.store(enabled);
    NormalizationProcessor* const normalizer = state->normalizer.get();
    if (enabled && normalizer == nullptr)
        state->normalizer.replace(std::make_unique<NormalizationProcessor>(state->sampleRate));
    else if (!enabled && normalizer != nullptr)
        normalizer->reset();
}

bool AudioTapManager::isNormalizationEnabled(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state != nullptr && state->normalizationEnabled.load();
}

std::optional<float> AudioTapManager::getNormalizationGain(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr || state->normalizer.get() == nullptr)
        return std::nullopt;
    return state->normalizer.get()->currentGainDB();
}

void AudioTapManager::setCrossfeed(std::int32_t pid, float amount) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return;
    const float wanted = limited(amount, 0.0F, 1.0F);
    if (wanted > kCrossfeedNeedsMoreThan && state->crossfeed.get() == nullptr)
        state->crossfeed.replace(std::make_unique<CrossfeedProcessor>(state->sampleRate));
    if (CrossfeedProcessor* const crossfeed = state->crossfeed.get())
        crossfeed->setAmount(wanted);
}

std::optional<float> AudioTapManager::getCrossfeed(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr || state->crossfeed.get() == nullptr)
        return 0.0F;
    return state->crossfeed.get()->amount();
}

} // namespace orvanta
