// Where a tap plays.

#include "core/engine/AudioTapManager.h"

namespace orvanta {

bool AudioTapManager::routeToDevice(std::int32_t pid, const std::optional<std::string>& deviceUID) {
    {
        const std::scoped_lock guard(lock_);
        const auto state = findShared(pid);
        if (!state)
            return false;
        // The process is silent from here until the new aggregate runs: its tap stays, muted.
        stopIOProc(*state);
        state->btOutputDeviceID = kAudioObjectUnknown;
        hardware_.destroyAggregateDevice(state->mixDeviceID);
        const auto build = createAggregateDevice(state->tapUUID, pid, deviceUID);
        if (!build) {
            fallBackToDefaultOutput(state);
            return false;
        }
        if (!playOn(state, *build, deviceUID))
            return false;
    }
    logger_.info("Routed PID %d to device: %s", pid, deviceUID.value_or("default").c_str());
    return true;
}

bool AudioTapManager::playOn(const std::shared_ptr<TapState>& state, const AggregateBuild& build,
                             const std::optional<std::string>& deviceUID) {
    state->mixDeviceID = build.aggregateID;
    state->outputDeviceUID = deviceUID;
    state->btOutputDeviceID = build.btDeviceID;
    setDeviceVolumeToUnity(build.aggregateID);
    state->peakLevel.store(0.0F);
    state->rmsLevel.store(0.0F);
    state->callbackCount.store(0);
    state->lastPollCallbackCount = 0;
    state->callbackID = startIOProc(state);
    return state->callbackID.has_value();
}

void AudioTapManager::fallBackToDefaultOutput(const std::shared_ptr<TapState>& state) {
    const auto build = createAggregateDevice(state->tapUUID, state->pid, std::nullopt);
    if (!build)
        return;
    state->mixDeviceID = build->aggregateID;
    state->outputDeviceUID.reset();
    state->btOutputDeviceID = build->btDeviceID;
    state->callbackID = startIOProc(state);
}

} // namespace orvanta
