#include "core/engine/AudioTapManager.h"

#include "core/engine/tapRenderCallback.h"
#include "core/platform/AudioProperties.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

namespace orvanta {

AudioTapManager::AudioTapManager(const Platform& platform)
    : platform_(platform),
      hardware_(platform.audioHardware),
      logger_(platform.systemLog, "tapManager"),
      firstCallbackLog_(logger_),
      discovery_(platform),
      random_(std::random_device{}()) {
    installDeviceListeners();
}

AudioTapManager::~AudioTapManager() {
    access_.end();
    removeDeviceListeners();
    removeAllTaps();
}

bool AudioTapManager::createTap(std::int32_t pid, std::optional<AudioObjectID> audioObjectID) {
    const std::scoped_lock guard(lock_);
    if (find(pid) != nullptr) {
        logger_.info("Tap already exists for PID %d", pid);
        return true;
    }
    const auto processObject = audioObjectID ? audioObjectID : findProcessObject(pid);
    if (!processObject) {
        logger_.error("No audio process found for PID %d", pid);
        return false;
    }
    const auto state = buildTap(pid, *processObject);
    if (!state)
        return false;

    activeTaps_[pid] = state;
    readTapFormat(*state);
    logStreamCounts(state->mixDeviceID);
    makeRecorders(*state);
    state->callbackID = startIOProc(state);
    if (!state->callbackID) {
        hardware_.destroyAggregateDevice(state->mixDeviceID);
        hardware_.destroyProcessTap(state->tapID);
        activeTaps_.erase(pid);
        return false;
    }
    logger_.info("Audio pipeline active for PID %d", pid);
    return true;
}

std::optional<AudioObjectID> AudioTapManager::findProcessObject(std::int32_t pid) const {
    for (const AudioApp& app : discovery_.discoverAllAudioProcesses())
        if (app.pid == pid)
            return app.audioObjectID;
    return std::nullopt;
}

std::shared_ptr<TapState> AudioTapManager::buildTap(std::int32_t pid, AudioObjectID processObject) {
    auto description = CATapDescription::stereoMixdownOfProcesses({processObject});
    description.setName(fmt::format("Orvanta_{}", pid));
    description.setMuteBehavior(CATapMuted);
    description.setPrivate(true);

    AudioObjectID tap = kAudioObjectUnknown;
    if (const OSStatus status = hardware_.createProcessTap(description, tap); status != noErr) {
        logger_.error("Failed to create audio capture: OSStatus %d", status);
        return nullptr;
    }
    logger_.info("Created tap %u for PID %d", tap, pid);

    const std::string& tapUUID = description.UUID();
    const auto build = createAggregateDevice(tapUUID, pid, std::nullopt);
    if (!build) {
        hardware_.destroyProcessTap(tap);
        return nullptr;
    }
    logger_.info("Created audio device %u", build->aggregateID);
    setDeviceVolumeToUnity(build->aggregateID);

    auto state = std::make_shared<TapState>(pid, processObject, tap, tapUUID, build->aggregateID,
                                            firstCallbackLog_);
    state->btOutputDeviceID = build->btDeviceID;
    return state;
}

void AudioTapManager::readTapFormat(TapState& state) {
    const auto format = orvanta::readTapFormat(hardware_, state.tapID);
    if (!format)
        return;
    state.channels = static_cast<int>(format->mChannelsPerFrame);
    // No processor can be made for a rate that is none.
    if (std::isfinite(format->mSampleRate) && format->mSampleRate > 0.0)
        state.sampleRate = format->mSampleRate;
    logger_.debug("Tap format: %fHz, %uch", format->mSampleRate, format->mChannelsPerFrame);
}

void AudioTapManager::removeTap(std::int32_t pid) {
    // Goes after the lock: a recorder's end may wait for a disk, and other taps shall not.
    std::shared_ptr<TapState> state;
    const std::scoped_lock guard(lock_);
    const auto found = activeTaps_.find(pid);
    if (found == activeTaps_.end())
        return;
    state = found->second;
    activeTaps_.erase(found);
    // The tap goes first, while the callback still runs: the process is back on its own path before
    // ours ends.
    hardware_.destroyProcessTap(state->tapID);
    const std::size_t unstopped = unstoppedCells_.size();
    stopIOProc(*state);
    // The state stays with such a cell, where nobody could end its recordings any more.
    if (unstoppedCells_.size() > unstopped)
        stopRecorders(*state);
    hardware_.destroyAggregateDevice(state->mixDeviceID);
    logger_.info("Removed tap for PID %d", pid);
}

void AudioTapManager::removeAllTaps() {
    std::vector<std::int32_t> pids;
    {
        const std::scoped_lock guard(lock_);
        for (const auto& [pid, state] : activeTaps_)
            pids.push_back(pid);
    }
    for (const std::int32_t pid : pids)
        removeTap(pid);
}

std::optional<AudioDeviceIOProcID>
AudioTapManager::startIOProc(const std::shared_ptr<TapState>& state) {
    state->callbackRef = std::make_unique<AudioCallbackRef>(AudioCallbackRef{state});
    const AudioDeviceIOClient client{tapIOProc, state->callbackRef.get(), tapIsAtRest};

    AudioDeviceIOProcID procID = nullptr;
    OSStatus status = hardware_.createIOProcID(state->mixDeviceID, client, procID);
    if (status != noErr || procID == nullptr) {
        logger_.error("Audio callback setup failed: %d", status);
        state->callbackRef.reset();
        return std::nullopt;
    }
    status = hardware_.startDevice(state->mixDeviceID, procID);
    if (status != noErr) {
        logger_.error("Audio start failed: %d", status);
        hardware_.destroyIOProcID(state->mixDeviceID, procID);
        state->callbackRef.reset();
        return std::nullopt;
    }
    logger_.info("Audio pipeline started");
    return procID;
}

void AudioTapManager::stopIOProc(TapState& state) {
    if (state.callbackID) {
        const OSStatus stopped = hardware_.stopDevice(state.mixDeviceID, *state.callbackID);
        const OSStatus destroyed = hardware_.destroyIOProcID(state.mixDeviceID, *state.callbackID);
        state.callbackID.reset();
        if (stopped != noErr && destroyed != noErr)
            unstoppedCells_.push_back(std::move(state.callbackRef));
    }
    state.callbackRef.reset();
}

void AudioTapManager::wake(const TapState& state) {
    if (state.callbackID && !state.isAtRest())
        hardware_.startDevice(state.mixDeviceID, *state.callbackID);
}

std::shared_ptr<TapState> AudioTapManager::findShared(std::int32_t pid) const {
    const auto found = activeTaps_.find(pid);
    return found == activeTaps_.end() ? nullptr : found->second;
}

TapState* AudioTapManager::find(std::int32_t pid) const {
    const auto found = activeTaps_.find(pid);
    return found == activeTaps_.end() ? nullptr : found->second.get();
}

} // namespace orvanta
