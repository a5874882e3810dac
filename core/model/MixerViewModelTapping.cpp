// The user takes an application's sound, or gives it back.

#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"

namespace orvanta {

void MixerViewModel::toggleTap(AudioApp app) {
    if (isTapped(app.pid))
        untap(app);
    else if (!tap(app))
        return;
    updateLevelTimer();
}

bool MixerViewModel::tap(const AudioApp& app) {
    if (!tapManager_->createTap(app.pid, app.audioObjectID))
        return false;
    enterTap(app.pid, app);
    if (const auto record = settingsStore_->load(settingsKey(app))) {
        restoreSettings(app.pid, *record);
        logger_.info("Restored settings for '%s' vol=%f", app.name.c_str(),
                     static_cast<double>(record->volume));
    } else {
        setEntry(volumes, app.pid, 1.0F);
    }
    persistSettings(app.pid);
    return true;
}

/// The record stays, so that the next tap has volume and effects again.
void MixerViewModel::untap(const AudioApp& app) {
    const std::int32_t pid = app.pid;
    AppSettings record = currentSettings(pid);
    record.isTapped = false;
    record.eqPreset = entryOf(eqSettings.get(), pid);
    record.compressorPreset = entryOf(compressorSettings.get(), pid);
    settingsStore_->save(valueOr(tappedBundleIDs_, pid, settingsKey(app)), record);
    tapManager_->removeTap(pid);

    removeEntry(tappedPIDs, pid);
    tappedAppNames_.erase(pid);
    tappedBundleIDs_.erase(pid);
    removeEntry(volumes, pid);
    removeEntry(mutedPIDs, pid);
    removeEntry(appOutputDevices, pid);
    removeEntry(eqSettings, pid);
    removeEntry(audioLevels, pid);
    removeEntry(balances, pid);
    removeEntry(compressorSettings, pid);
    if (isRecording(pid)) {
        tapManager_->stopRecording(pid);
        removeEntry(recordingPIDs, pid);
        removeEntry(recordingDurations, pid);
    }
    watch_.stallPollCounts.erase(pid);
    watch_.lastRetapTime.erase(pid);
    watch_.hasReceivedAudio.erase(pid);
    watch_.silentSinceAudioCount.erase(pid);
}

} // namespace orvanta
