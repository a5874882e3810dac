#include "core/model/DeviceVolume.h"

#include "core/platform/AudioProperties.h"

namespace orvanta {
namespace {

constexpr AudioObjectPropertyElement kMain = 0;
constexpr AudioObjectPropertyElement kLeft = 1;
constexpr AudioObjectPropertyElement kRight = 2;

AudioObjectPropertyAddress volumeControl(AudioObjectPropertyElement element) {
    return {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, element};
}

/// False where the device has no such control, or none that can be set. A refused write counts as
/// one: another control would not be heard either.
bool write(AudioHardware& hardware, AudioObjectID device, AudioObjectPropertyElement element,
           float volume) {
    const auto control = volumeControl(element);
    bool isSettable = false;
    if (!hardware.hasProperty(device, control) ||
        hardware.isPropertySettable(device, control, isSettable) != noErr || !isSettable)
        return false;
    hardware.setPropertyData(device, control, sizeof volume, &volume);
    return true;
}

void writeDeviceVolume(AudioHardware& hardware, AudioObjectID device, float volume) {
    if (write(hardware, device, kMain, volume))
        return;
    write(hardware, device, kLeft, volume);
    write(hardware, device, kRight, volume);
}

} // namespace

float readDeviceVolume(AudioHardware& hardware, AudioObjectID device) {
    for (const AudioObjectPropertyElement element : {kMain, kLeft})
        if (hardware.hasProperty(device, volumeControl(element)))
            return readFloat32(hardware, device, volumeControl(element)).value_or(1.0F);
    return 1.0F;
}

void writeDeviceVolumes(AudioHardware& hardware, const std::set<std::string>& uids, float volume) {
    std::set<AudioObjectID> devices;
    if (const auto device = defaultOutputDevice(hardware))
        devices.insert(*device);
    for (const std::string& uid : uids)
        if (const AudioObjectID device = findDeviceID(hardware, uid); device != kAudioObjectUnknown)
            devices.insert(device);
    for (const AudioObjectID device : devices)
        writeDeviceVolume(hardware, device, volume);
}

} // namespace orvanta
