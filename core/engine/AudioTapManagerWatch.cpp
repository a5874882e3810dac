// Devices vanish and the default output moves while taps run: who notices, and what follows when.

#include "core/engine/AudioTapManager.h"
#include "core/platform/AudioProperties.h"

#include <fmt/format.h>

#include <utility>

namespace orvanta {
namespace {

constexpr AudioObjectPropertyAddress kDeviceList{kAudioHardwarePropertyDevices};
constexpr AudioObjectPropertyAddress kDefaultOutput{kAudioHardwarePropertyDefaultOutputDevice};

/// A device that goes takes its neighbours along, and the default moves after it.
constexpr Seconds kRerouteDelay{0.5};
constexpr Seconds kRetryDelay{1.5};
/// A new default is often announced before it can play.
constexpr Seconds kRebuildDelay{0.3};

const char* mark(bool isInstalled) {
    return isInstalled ? "✅" : "❌";
}

} // namespace

void AudioTapManager::installDeviceListeners() {
    deviceListenerInstalled_ = hardware_.addPropertyListener(kAudioObjectSystemObject, kDeviceList,
                                                             deviceListListener, this) == noErr;
    defaultOutputListenerInstalled_ =
        hardware_.addPropertyListener(kAudioObjectSystemObject, kDefaultOutput,
                                      defaultOutputListener, this) == noErr;
    // As a task would: one of a change that has just been announced may be running already.
    access_.task(
        [](AudioTapManager& self) { self.lastDefaultOutputUID_ = self.defaultOutputUID(); })();
    logger_.composed(fmt::format("🎧 Listeners: devices={} default={}\n",
                                 mark(deviceListenerInstalled_),
                                 mark(defaultOutputListenerInstalled_)));
}

void AudioTapManager::removeDeviceListeners() {
    if (std::exchange(deviceListenerInstalled_, false))
        hardware_.removePropertyListener(kAudioObjectSystemObject, kDeviceList, deviceListListener,
                                         this);
    if (std::exchange(defaultOutputListenerInstalled_, false))
        hardware_.removePropertyListener(kAudioObjectSystemObject, kDefaultOutput,
                                         defaultOutputListener, this);
}

OSStatus AudioTapManager::deviceListListener(AudioObjectID /*object*/,
                                             const AudioObjectPropertyAddress& /*address*/,
                                             void* clientData) {
    if (auto* const manager = static_cast<AudioTapManager*>(clientData))
        manager->platform_.mainRunLoop.post(
            manager->access_.task([](AudioTapManager& self) { self.handleDeviceListChange(); }));
    return noErr;
}

OSStatus AudioTapManager::defaultOutputListener(AudioObjectID /*object*/,
                                                const AudioObjectPropertyAddress& /*address*/,
                                                void* clientData) {
    if (auto* const manager = static_cast<AudioTapManager*>(clientData))
        manager->platform_.mainRunLoop.post(
            manager->access_.task([](AudioTapManager& self) { self.handleDefaultOutputChange(); }));
    return noErr;
}

void AudioTapManager::handleDeviceListChange() {
    const PIDs lost = tapsWithoutDevice();
    if (!lost.empty())
        platform_.mainRunLoop.postAfter(kRerouteDelay, access_.task([lost](AudioTapManager& self) {
            self.rerouteAfterDisconnect(lost);
        }));
}

AudioTapManager::PIDs AudioTapManager::tapsWithoutDevice() {
    const std::scoped_lock guard(lock_);
    const std::set<AudioObjectID> live = liveDeviceIDs();
    PIDs lost;
    for (const auto& [pid, state] : activeTaps_)
        if (hasLostDevice(*state, live))
            lost.push_back(pid);
    return lost;
}

/// The first trace of a lost device is told; a tap that plays nowhere has none to lose.
bool AudioTapManager::hasLostDevice(TapState& state, const std::set<AudioObjectID>& live) const {
    if (const AudioObjectID bluetooth = state.btOutputDeviceID;
        bluetooth != kAudioObjectUnknown && !live.contains(bluetooth)) {
        logger_.composed(
            fmt::format("⚠️ BT device {} disconnected for PID {}\n", bluetooth, state.pid));
        state.btOutputDeviceID = kAudioObjectUnknown;
        return true;
    }
    const auto subDevices = readObjectList(
        hardware_, state.mixDeviceID,
        {kAudioAggregateDevicePropertyActiveSubDeviceList, kAudioObjectPropertyScopeOutput});
    if (!subDevices.empty() && subDevices.front() != kAudioObjectUnknown &&
        !live.contains(subDevices.front())) {
        logger_.composed(fmt::format("⚠️ Aggregate output device {} disappeared for PID {}\n",
                                     subDevices.front(), state.pid));
        state.btOutputDeviceID = kAudioObjectUnknown;
        return true;
    }
    if (!state.callbackID || live.contains(state.mixDeviceID))
        return false;
    logger_.composed(fmt::format("⚠️ Audio device {} no longer in device list for PID {}\n",
                                 state.mixDeviceID, state.pid));
    return true;
}

void AudioTapManager::rerouteAfterDisconnect(const PIDs& lost) {
    PIDs failed;
    for (const std::int32_t pid : lost) {
        logger_.composed(
            fmt::format("🔄 Re-routing PID {} to default output after device disconnect\n", pid));
        if (!routeToDevice(pid, std::nullopt))
            failed.push_back(pid);
    }
    if (!failed.empty())
        platform_.mainRunLoop.postAfter(kRetryDelay, access_.task([failed](AudioTapManager& self) {
            self.retryRerouteAfterDisconnect(failed);
        }));
}

void AudioTapManager::retryRerouteAfterDisconnect(const PIDs& failed) {
    for (const std::int32_t pid : failed) {
        logger_.composed(fmt::format("🔄 Retry re-routing PID {} after device disconnect\n", pid));
        if (!routeToDevice(pid, std::nullopt))
            logger_.composed(
                fmt::format("❌ Re-route failed for PID {} — tap may need manual re-tap\n", pid));
    }
}

void AudioTapManager::handleDefaultOutputChange() {
    const auto current = defaultOutputUID();
    if (current == lastDefaultOutputUID_)
        return;
    const auto former = std::exchange(lastDefaultOutputUID_, current);
    logger_.composed(fmt::format("🔊 Default output changed: {} → {}\n", former.value_or("nil"),
                                 current.value_or("nil")));
    const PIDs following = tapsThatFollowTheDefault();
    if (!following.empty())
        platform_.mainRunLoop.postAfter(kRebuildDelay,
                                        access_.task([following, current](AudioTapManager& self) {
                                            self.rebuildForNewDefault(following, current);
                                        }));
}

AudioTapManager::PIDs AudioTapManager::tapsThatFollowTheDefault() const {
    const std::scoped_lock guard(lock_);
    PIDs pids;
    for (const auto& [pid, state] : activeTaps_)
        if (!state->outputDeviceUID)
            pids.push_back(pid);
    return pids;
}

void AudioTapManager::rebuildForNewDefault(const PIDs& pids,
                                           const std::optional<std::string>& newDefault) {
    for (const std::int32_t pid : pids) {
        logger_.composed(fmt::format("🔄 Rebuilding PID {} for new default output {}\n", pid,
                                     newDefault.value_or("default")));
        routeToDevice(pid, std::nullopt);
    }
}

std::optional<std::string> AudioTapManager::defaultOutputUID() const {
    const auto device = defaultOutputDevice(hardware_);
    return device ? deviceStringProperty(*device, kAudioDevicePropertyDeviceUID) : std::nullopt;
}

std::set<AudioObjectID> AudioTapManager::liveDeviceIDs() const {
    const auto devices = deviceList(hardware_);
    return {devices.begin(), devices.end()};
}

} // namespace orvanta
