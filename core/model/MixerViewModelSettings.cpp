// What a process is set to, as a record: taken from the maps, stored, and put back.

#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvanta {
namespace {

/// Balance, width from 1 and crossfeed up to here are not worth a processor.
constexpr float kNeutral = 0.01F;

bool isAmong(const std::string& uid, const std::vector<OutputDevice>& devices) {
    return std::ranges::find(devices, uid, &OutputDevice::uid) != devices.end();
}

} // namespace

const std::string& MixerViewModel::settingsKey(const AudioApp& app) {
    return app.bundleIdentifier ? *app.bundleIdentifier : app.name;
}

const AudioApp* MixerViewModel::findApp(const std::vector<AudioApp>& apps, std::int32_t pid) {
    const auto found = std::ranges::find(apps, pid, &AudioApp::pid);
    return found == apps.end() ? nullptr : &*found;
}

AppSettings MixerViewModel::currentSettings(std::int32_t pid) const {
    auto eq = entryOf(eqSettings.get(), pid);
    if (eq && eq->isFlat())
        eq.reset();
    auto compressor = entryOf(compressorSettings.get(), pid);
    if (compressor && compressor->isOff())
        compressor.reset();
    return {.volume = volume(pid),
            .isMuted = isMuted(pid),
            .outputDeviceUID = outputDeviceUID(pid),
            .isTapped = isTapped(pid),
            .eqPreset = eq,
            .balance = balance(pid),
            .compressorPreset = std::move(compressor),
            .limiterEnabled = valueOr(limiterEnabled.get(), pid, false),
            .normalizationEnabled = valueOr(normalizationEnabled.get(), pid, false),
            .stereoWidth = valueOr(stereoWidths.get(), pid, 1.0F),
            .crossfeedAmount = valueOr(crossfeedAmounts.get(), pid, 0.0F)};
}

void MixerViewModel::persistSettings(std::int32_t pid) {
    if (const auto key = tappedBundleIDs_.find(pid); key != tappedBundleIDs_.end())
        settingsStore_->save(key->second, currentSettings(pid));
}

void MixerViewModel::enterTap(std::int32_t pid, const AudioApp& app) {
    insertEntry(tappedPIDs, pid);
    tappedAppNames_[pid] = app.name;
    tappedBundleIDs_[pid] = settingsKey(app);
}

void MixerViewModel::restoreSettings(std::int32_t pid, const AppSettings& record) {
    setEntry(volumes, pid, record.volume);
    tapManager_->setVolume(pid, record.volume);
    if (record.isMuted)
        setMuted(pid, true);
    if (record.outputDeviceUID &&
        isAmong(*record.outputDeviceUID, outputDeviceManager_->availableDevices()) &&
        tapManager_->routeToDevice(pid, record.outputDeviceUID))
        setEntry(appOutputDevices, pid, *record.outputDeviceUID);
    if (record.eqPreset && !record.eqPreset->isFlat()) {
        setEntry(eqSettings, pid, *record.eqPreset);
        pushEQ(pid, *record.eqPreset);
    }
    if (std::abs(record.balance) > kNeutral) {
        setEntry(balances, pid, record.balance);
        tapManager_->setBalance(pid, record.balance);
    }
    if (record.compressorPreset && !record.compressorPreset->isOff()) {
        setEntry(compressorSettings, pid, *record.compressorPreset);
        tapManager_->setCompressor(pid, *record.compressorPreset);
    }
    if (record.limiterEnabled) {
        setEntry(limiterEnabled, pid, true);
        tapManager_->setLimiterEnabled(pid, true);
    }
    if (record.normalizationEnabled) {
        setEntry(normalizationEnabled, pid, true);
        tapManager_->setNormalizationEnabled(pid, true);
    }
    if (std::abs(record.stereoWidth - 1.0F) > kNeutral) {
        setEntry(stereoWidths, pid, record.stereoWidth);
        tapManager_->setStereoWidth(pid, record.stereoWidth);
    }
    if (record.crossfeedAmount > kNeutral) {
        setEntry(crossfeedAmounts, pid, record.crossfeedAmount);
        tapManager_->setCrossfeed(pid, record.crossfeedAmount);
    }
}

void MixerViewModel::pushEQ(std::int32_t pid, const EQPreset& preset) {
    for (int band = 0; band < static_cast<int>(preset.gains.size()); ++band)
        tapManager_->setEQ(pid, band, preset.gains[static_cast<std::size_t>(band)]);
}

void MixerViewModel::setMuted(std::int32_t pid, bool muted) {
    if (muted)
        insertEntry(mutedPIDs, pid);
    else
        removeEntry(mutedPIDs, pid);
    tapManager_->setMuted(pid, muted);
}

} // namespace orvanta
