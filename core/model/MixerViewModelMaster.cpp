// The system's own volume, and muting everything.

#include "core/model/DeviceVolume.h"
#include "core/model/MixerViewModel.h"

#include <set>
#include <string>
#include <utility>

namespace orvanta {
namespace {

/// A volume up to here is as good as none.
constexpr float kAudible = 0.01F;

} // namespace

void MixerViewModel::toggleMuteAll() {
    const bool mutes = !isMasterMuted.get();
    if (mutes)
        preMuteVolume_ = masterVolume.get() > kAudible ? masterVolume.get() : 1.0F;
    isMasterMuted.set(mutes);
    setMasterVolume(mutes ? 0.0F : preMuteVolume_);
    const PIDSet tapped = tappedPIDs.get();
    for (const std::int32_t pid : tapped)
        setMuted(pid, mutes);
}

void MixerViewModel::setMasterVolume(float volume) {
    setMasterVolumeUI(volume);
    applyMasterVolumeToDevices(volume);
}

void MixerViewModel::setMasterVolumeUI(float volume) {
    masterVolume.set(volume);
    if (isMasterMuted.get() && volume > kAudible)
        isMasterMuted.set(false);
}

void MixerViewModel::applyMasterVolumeToDevices(float volume) const {
    masterVolumeToDevicesTask(volume)();
}

Task MixerViewModel::masterVolumeToDevicesTask(float volume) const {
    std::set<std::string> uids;
    for (const auto& [pid, uid] : appOutputDevices.get())
        uids.insert(uid);
    return [&hardware = platform_.audioHardware, uids = std::move(uids), volume] {
        writeDeviceVolumes(hardware, uids, volume);
    };
}

} // namespace orvanta
