// The commands for one process. The order is always the same: map, tap, store.

#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"

namespace orvanta {

void MixerViewModel::setVolume(std::int32_t pid, float volume) {
    setEntry(volumes, pid, volume);
    tapManager_->setVolume(pid, volume);
    persistSettings(pid);
}

void MixerViewModel::toggleMute(std::int32_t pid) {
    setMuted(pid, !isMuted(pid));
    persistSettings(pid);
}

void MixerViewModel::toggleSolo(std::int32_t pid) {
    if (soloedPIDs.get().contains(pid)) {
        removeEntry(soloedPIDs, pid);
    } else {
        if (soloedPIDs.get().empty())
            preSoloMutedPIDs_ = mutedPIDs.get();
        insertEntry(soloedPIDs, pid);
    }
    applySoloState();
}

/// A process that is tapped during a solo stays audible until the next change of it.
void MixerViewModel::applySoloState() {
    const bool isAnySoloed = !soloedPIDs.get().empty();
    const PIDSet tapped = tappedPIDs.get();
    for (const std::int32_t pid : tapped) {
        const bool mutes =
            isAnySoloed ? !soloedPIDs.get().contains(pid) : preSoloMutedPIDs_.contains(pid);
        if (mutes != isMuted(pid))
            setMuted(pid, mutes);
    }
    if (!isAnySoloed)
        preSoloMutedPIDs_.clear();
}

void MixerViewModel::routeApp(std::int32_t pid, std::optional<std::string> deviceUID) {
    if (!isTapped(pid)) {
        logger_.error("routeApp: PID %d is not tapped, ignoring", pid);
        return;
    }
    logger_.info("routeApp: PID %d → %s", pid, deviceUID.value_or("default").c_str());
    const bool isRouted = tapManager_->routeToDevice(pid, deviceUID);
    logger_.info("routeApp: PID %d result=%s", pid, isRouted ? "success" : "failed");
    if (!isRouted)
        return;
    if (deviceUID)
        setEntry(appOutputDevices, pid, *deviceUID);
    else
        removeEntry(appOutputDevices, pid);
    persistSettings(pid);
}

void MixerViewModel::setEQ(std::int32_t pid, int band, float gain) {
    if (!isTapped(pid) || band < 0 || band >= static_cast<int>(kEQBandCount))
        return;
    EQPreset preset = eqPreset(pid);
    preset.gains[static_cast<std::size_t>(band)] = gain;
    setEntry(eqSettings, pid, preset);
    tapManager_->setEQ(pid, band, gain);
    persistSettings(pid);
}

void MixerViewModel::resetEQ(std::int32_t pid) {
    setEntry(eqSettings, pid, EQPreset());
    pushEQ(pid, EQPreset());
    persistSettings(pid);
}

void MixerViewModel::setCompressor(std::int32_t pid, CompressorPreset preset) {
    setEntry(compressorSettings, pid, preset);
    tapManager_->setCompressor(pid, preset);
    persistSettings(pid);
}

void MixerViewModel::setLimiterEnabled(std::int32_t pid, bool enabled) {
    setEntry(limiterEnabled, pid, enabled);
    tapManager_->setLimiterEnabled(pid, enabled);
    persistSettings(pid);
}

void MixerViewModel::setNormalizationEnabled(std::int32_t pid, bool enabled) {
    setEntry(normalizationEnabled, pid, enabled);
    tapManager_->setNormalizationEnabled(pid, enabled);
    persistSettings(pid);
}

void MixerViewModel::setStereoWidth(std::int32_t pid, float width) {
    setEntry(stereoWidths, pid, width);
    tapManager_->setStereoWidth(pid, width);
    persistSettings(pid);
}

void MixerViewModel::setCrossfeed(std::int32_t pid, float amount) {
    setEntry(crossfeedAmounts, pid, amount);
    tapManager_->setCrossfeed(pid, amount);
    persistSettings(pid);
}

void MixerViewModel::setBalance(std::int32_t pid, float balance) {
    if (!isTapped(pid))
        return;
    setEntry(balances, pid, balance);
    tapManager_->setBalance(pid, balance);
    persistSettings(pid);
}

void MixerViewModel::setNoiseGate(std::int32_t pid, bool enabled, float threshold) {
    if (!isTapped(pid))
        return;
    setEntry(noiseGateEnabled, pid, enabled);
    setEntry(noiseGateThresholds, pid, threshold);
    tapManager_->setNoiseGate(pid, enabled, threshold);
}

} // namespace orvanta
