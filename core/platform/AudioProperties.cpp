#include "core/platform/AudioProperties.h"

#include "core/platform/StreamConfiguration.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace orvanta {
namespace {

/// A list that has grown since it told its size gives no more than it is asked for, and what it
/// then leaves out would pass for gone.
constexpr std::size_t kRoomForNewcomers = 16;

template <class Value>
std::optional<Value> readValue(AudioHardware& hardware, AudioObjectID object,
                               const AudioObjectPropertyAddress& address) {
    Value value{};
    std::uint32_t size = sizeof(Value);
    if (hardware.getPropertyData(object, address, size, &value) != noErr || size < sizeof(Value))
        return std::nullopt;
    return value;
}

} // namespace

std::optional<std::uint32_t> readUInt32(AudioHardware& hardware, AudioObjectID object,
                                        const AudioObjectPropertyAddress& address) {
    return readValue<std::uint32_t>(hardware, object, address);
}

std::optional<std::int32_t> readInt32(AudioHardware& hardware, AudioObjectID object,
                                      const AudioObjectPropertyAddress& address) {
    return readValue<std::int32_t>(hardware, object, address);
}

std::optional<float> readFloat32(AudioHardware& hardware, AudioObjectID object,
                                 const AudioObjectPropertyAddress& address) {
    return readValue<float>(hardware, object, address);
}

std::optional<double> readFloat64(AudioHardware& hardware, AudioObjectID object,
                                  const AudioObjectPropertyAddress& address) {
    return readValue<double>(hardware, object, address);
}

std::optional<std::string> readString(AudioHardware& hardware, AudioObjectID object,
                                      const AudioObjectPropertyAddress& address) {
    std::optional<std::string> text;
    if (hardware.getStringProperty(object, address, text) != noErr)
        return std::nullopt;
    return text;
}

std::vector<AudioObjectID> readObjectList(AudioHardware& hardware, AudioObjectID object,
                                          const AudioObjectPropertyAddress& address) {
    std::uint32_t size = 0;
    if (hardware.getPropertyDataSize(object, address, size) != noErr ||
        size < sizeof(AudioObjectID))
        return {};
    std::vector<AudioObjectID> objects(size / sizeof(AudioObjectID) + kRoomForNewcomers,
                                       kAudioObjectUnknown);
    size = static_cast<std::uint32_t>(objects.size() * sizeof(AudioObjectID));
    if (hardware.getPropertyData(object, address, size, objects.data()) != noErr)
        return {};
    // The list may have become another between the two calls.
    objects.resize(std::min(objects.size(), size / sizeof(AudioObjectID)));
    return objects;
}

std::optional<AudioStreamBasicDescription> readTapFormat(AudioHardware& hardware,
                                                         AudioObjectID tap) {
    return readValue<AudioStreamBasicDescription>(hardware, tap, {kAudioTapPropertyFormat});
}

std::optional<std::uint64_t> readChannelCount(AudioHardware& hardware, AudioObjectID device,
                                              AudioObjectPropertyScope scope) {
    const AudioObjectPropertyAddress address{kAudioDevicePropertyStreamConfiguration, scope};
    std::uint32_t size = 0;
    if (hardware.getPropertyDataSize(device, address, size) != noErr)
        return std::nullopt;
    std::vector<std::byte> data(size);
    if (hardware.getPropertyData(device, address, size, data.data()) != noErr)
        return std::nullopt;
    return channelCount(std::span(data).first(std::min<std::size_t>(size, data.size())));
}

std::vector<AudioObjectID> deviceList(AudioHardware& hardware) {
    return readObjectList(hardware, kAudioObjectSystemObject, {kAudioHardwarePropertyDevices});
}

std::optional<AudioObjectID> defaultOutputDevice(AudioHardware& hardware) {
    const auto device =
        readUInt32(hardware, kAudioObjectSystemObject, {kAudioHardwarePropertyDefaultOutputDevice});
    return device == kAudioObjectUnknown ? std::nullopt : device;
}

AudioObjectID findDeviceID(AudioHardware& hardware, const std::string& uid) {
    for (const AudioObjectID device : deviceList(hardware))
        if (readString(hardware, device, {kAudioDevicePropertyDeviceUID}) == uid)
            return device;
    return kAudioObjectUnknown;
}

} // namespace orvanta
