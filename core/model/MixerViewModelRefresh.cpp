// The pass that brings the taps in line with the applications that are there.

#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"

#include <algorithm>
#include <utility>

namespace orvanta {
namespace {

/// Which processes there are, and which of them play. A front end need not redraw for anything
/// else: names, icons and the order stay as they were until one of these changes.
std::vector<std::pair<std::int32_t, bool>> playStates(const std::vector<AudioApp>& apps) {
    std::vector<std::pair<std::int32_t, bool>> states;
    states.reserve(apps.size());
    for (const AudioApp& app : apps)
        states.emplace_back(app.pid, app.isPlaying);
    std::ranges::sort(states);
    return states;
}

} // namespace

void MixerViewModel::refreshApps() {
    discoveryQueue_->post(
        [model = weak_from_this(), discovery = discovery_, &mainRunLoop = platform_.mainRunLoop] {
            if (model.expired())
                return;
            mainRunLoop.post([model, apps = discovery->discoverAudioApps()] {
                if (const auto self = model.lock())
                    self->applyDiscoveredApps(apps);
            });
        });
}

void MixerViewModel::refreshAppsSync() {
    applyDiscoveredApps(discovery_->discoverAudioApps());
}

void MixerViewModel::scheduleRefresh(Seconds interval) {
    if (refreshTimer_)
        refreshTimer_->invalidate();
    refreshTimer_ = platform_.mainRunLoop.repeat(interval, weakly([](MixerViewModel& self) {
                                                     self.refreshApps();
                                                     self.updateRefreshInterval();
                                                 }));
}

void MixerViewModel::updateRefreshInterval() {
    const bool isAnyPlaying = std::ranges::any_of(audioApps.get(), &AudioApp::isPlaying);
    const Seconds target = isAnyPlaying ? playingRefreshInterval : idleRefreshInterval;
    if (!refreshTimer_ || refreshTimer_->interval() != target)
        scheduleRefresh(target);
}

void MixerViewModel::applyDiscoveredApps(const std::vector<AudioApp>& apps) {
    publishApps(apps);
    followVanishedProcesses(apps);
    restoreTaps(apps);
    scanDeadTaps(apps);
    if (autoTapEnabled.get())
        autoTap(apps);
    updateLevelTimer();
}

void MixerViewModel::publishApps(const std::vector<AudioApp>& apps) {
    if (playStates(audioApps.get()) != playStates(apps))
        audioApps.set(apps);
}

void MixerViewModel::followVanishedProcesses(const std::vector<AudioApp>& apps) {
    PIDSet currentPIDs;
    // Of two with one name the first may take a tap over.
    AppsByName appsByName;
    for (const AudioApp& app : apps) {
        currentPIDs.insert(app.pid);
        appsByName.emplace(app.name, &app);
    }
    const PIDSet tapped = tappedPIDs.get();
    for (const std::int32_t pid : tapped) {
        if (currentPIDs.contains(pid) || !isTapped(pid))
            continue;
        if (const AudioApp* const next = successorOf(pid, appsByName))
            migrateTap(pid, *next);
        else
            releaseVanished(pid);
    }
}

const AudioApp* MixerViewModel::successorOf(std::int32_t pid, const AppsByName& appsByName) const {
    const auto name = tappedAppNames_.find(pid);
    if (name == tappedAppNames_.end())
        return nullptr;
    const auto candidate = appsByName.find(name->second);
    if (candidate == appsByName.end() || isTapped(candidate->second->pid))
        return nullptr;
    return candidate->second;
}

/// An application that quits while it is tapped takes its settings along: it starts anew untapped.
/// What comes back after a restart of this program is what still ran when it stopped.
void MixerViewModel::releaseVanished(std::int32_t pid) {
    if (const auto key = entryOf(tappedBundleIDs_, pid))
        settingsStore_->remove(*key);
    tapManager_->removeTap(pid);
    purgeProcessState(pid);
}

/// Volume, mute and device go along. The effects do not.
void MixerViewModel::migrateTap(std::int32_t pid, const AudioApp& next) {
    const float formerVolume = volume(pid);
    const bool wasMuted = isMuted(pid);
    const auto device = outputDeviceUID(pid);
    tapManager_->removeTap(pid);
    purgeProcessState(pid);
    if (!tapManager_->createTap(next.pid, next.audioObjectID))
        return;
    enterTap(next.pid, next);
    setEntry(volumes, next.pid, formerVolume);
    tapManager_->setVolume(next.pid, formerVolume);
    if (wasMuted)
        setMuted(next.pid, true);
    if (device && tapManager_->routeToDevice(next.pid, device))
        setEntry(appOutputDevices, next.pid, *device);
    logger_.info("Migrated tap for '%s': PID %d → %d", next.name.c_str(), pid, next.pid);
}

void MixerViewModel::restoreTaps(const std::vector<AudioApp>& apps) {
    const AppSettingsByKey saved = settingsStore_->loadAll();
    for (const AudioApp& app : apps) {
        if (isTapped(app.pid))
            continue;
        const std::string& key = settingsKey(app);
        const auto record = saved.find(key);
        if (record == saved.end() || !record->second.isTapped ||
            !tapManager_->createTap(app.pid, app.audioObjectID))
            continue;
        enterTap(app.pid, app);
        restoreSettings(app.pid, record->second);
        logger_.info("Restored tap for '%s' (%s) vol=%f", app.name.c_str(), key.c_str(),
                     static_cast<double>(record->second.volume));
    }
}

void MixerViewModel::autoTap(const std::vector<AudioApp>& apps) {
    for (const AudioApp& app : apps) {
        if (!app.isPlaying || isTapped(app.pid) ||
            !tapManager_->createTap(app.pid, app.audioObjectID))
            continue;
        enterTap(app.pid, app);
        setEntry(volumes, app.pid, 1.0F);
        // What starts while everything is muted must not break through.
        if (isMasterMuted.get())
            setMuted(app.pid, true);
        persistSettings(app.pid);
    }
}

/// What is left standing does no harm: ids are not used again soon.
void MixerViewModel::purgeProcessState(std::int32_t pid) {
    removeEntry(tappedPIDs, pid);
    removeEntry(volumes, pid);
    removeEntry(mutedPIDs, pid);
    removeEntry(appOutputDevices, pid);
    tappedAppNames_.erase(pid);
    tappedBundleIDs_.erase(pid);
    removeEntry(audioLevels, pid);
    removeEntry(balances, pid);
    removeEntry(eqSettings, pid);
    removeEntry(compressorSettings, pid);
    removeEntry(compressorGainReduction, pid);
    removeEntry(limiterEnabled, pid);
    removeEntry(normalizationEnabled, pid);
    removeEntry(normalizationGain, pid);
    removeEntry(stereoWidths, pid);
    removeEntry(crossfeedAmounts, pid);
    removeEntry(noiseGateEnabled, pid);
    removeEntry(noiseGateThresholds, pid);
    removeEntry(processStats, pid);
    lastCPUTimes_.erase(pid);
    watch_.deadTapPollCounts.erase(pid);
    watch_.stallPollCounts.erase(pid);
    watch_.lastRetapTime.erase(pid);
    watch_.hasReceivedAudio.erase(pid);
    watch_.silentSinceAudioCount.erase(pid);
}

} // namespace orvanta
