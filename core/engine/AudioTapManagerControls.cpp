// The plain settings of a running tap, and what its callback publishes.

#include "core/engine/AudioTapManager.h"
#include "core/engine/Limited.h"

#include <cmath>

namespace orvanta {
namespace {

float linearFromDecibels(float decibels) {
    return std::pow(10.0F, decibels / 20.0F);
}

} // namespace

bool AudioTapManager::hasTap(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    return find(pid) != nullptr;
}

void AudioTapManager::setVolume(std::int32_t pid, float volume) {
    const std::scoped_lock guard(lock_);
    if (TapState* const state = find(pid)) {
        state->volume.store(limited(volume, 0.0F, 2.0F));
        state->isMuted.store(false);
    }
}

std::optional<float> AudioTapManager::getVolume(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state ? std::optional(state->volume.load()) : std::nullopt;
}

void AudioTapManager::setMuted(std::int32_t pid, bool muted) {
    const std::scoped_lock guard(lock_);
    if (TapState* const state = find(pid))
        state->isMuted.store(muted);
}

bool AudioTapManager::isMuted(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state != nullptr && state->isMuted.load();
}

void AudioTapManager::setBalance(std::int32_t pid, float balance) {
    const std::scoped_lock guard(lock_);
    if (TapState* const state = find(pid))
        state->balance.store(limited(balance, -1.0F, 1.0F));
}

std::optional<float> AudioTapManager::getBalance(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state ? std::optional(state->balance.load()) : std::nullopt;
}

void AudioTapManager::setNoiseGate(std::int32_t pid, bool enabled, float threshold) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return;
    state->noiseGateEnabled.store(enabled);
    state->noiseGateThreshold = threshold;
    state->noiseGateThresholdLinear.store(linearFromDecibels(threshold));
    if (!enabled) {
        state->gateOpen.store(true);
        state->gateSilentCount.store(0);
        state->gateFadeGain.store(1.0F);
    }
    // A silent tap may have come to rest, or may do so any moment, with the gate as it was.
    if (state->silentCallbackCount.load() > 0)
        wake(*state);
}

void AudioTapManager::setStereoWidth(std::int32_t pid, float width) {
    const std::scoped_lock guard(lock_);
    if (TapState* const state = find(pid))
        state->stereoWidth.store(limited(width, 0.0F, 2.5F));
}

std::optional<float> AudioTapManager::getStereoWidth(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state ? std::optional(state->stereoWidth.load()) : std::nullopt;
}

std::optional<bool> AudioTapManager::isNoiseGateOpen(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr)
        return std::nullopt;
    return !state->noiseGateEnabled.load() || state->gateOpen.load();
}

std::optional<std::string> AudioTapManager::getOutputDeviceUID(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state ? state->outputDeviceUID : std::nullopt;
}

std::optional<AudioLevel> AudioTapManager::getAudioLevel(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr)
        return std::nullopt;
    return AudioLevel{state->rmsLevel.load(), state->peakLevel.load()};
}

std::uint64_t AudioTapManager::getCallbackCount(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state ? state->callbackCount.load() : 0;
}

std::optional<TapDiagnostics> AudioTapManager::getDiagnostics(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    if (state == nullptr)
        return std::nullopt;
    return TapDiagnostics{state->diagInBufCount.load(), state->diagInBufBytes.load(),
                          state->diagInPeak.load(), state->diagCopyCount.load(),
                          state->diagOutPeak.load()};
}

} // namespace orvanta
