#include "platform/embedded/objects/Properties.h"

#include "platform/embedded/objects/DeviceProperties.h"

#include <cstring>

namespace orvanta::embedded {

namespace {

bool isGlobal(const AudioObjectPropertyAddress& address) {
    return address.mScope == kAudioObjectPropertyScopeGlobal &&
           address.mElement == kAudioObjectPropertyElementMain;
}

std::vector<AudioObjectID> listDevices(const ObjectSpace& space) {
    std::vector<AudioObjectID> ids;
    for (const auto& device : space.devices())
        ids.push_back(device->id);
    for (const auto& aggregate : space.aggregates()) {
        if (space.mainDevice(*aggregate) != nullptr)
            ids.push_back(aggregate->id);
    }
    return ids;
}

std::vector<AudioObjectID> listPrograms(const ObjectSpace& space) {
    std::vector<AudioObjectID> ids;
    for (const auto& program : space.programs())
        ids.push_back(program->id);
    return ids;
}

std::optional<Property> readSystem(const ObjectSpace& space,
                                   const AudioObjectPropertyAddress& address) {
    if (!isGlobal(address))
        return std::nullopt;
    switch (address.mSelector) {
    case kAudioHardwarePropertyDevices:
        return Property{listDevices(space)};
    case kAudioHardwarePropertyDefaultOutputDevice:
        return Property{space.defaultOutput(), true};
    case kAudioHardwarePropertyProcessObjectList:
        return Property{listPrograms(space)};
    default:
        return std::nullopt;
    }
}

std::optional<Property> readProgram(const Program& program,
                                    const AudioObjectPropertyAddress& address) {
    if (!isGlobal(address))
        return std::nullopt;
    const std::uint32_t plays = program.playing ? 1 : 0;
    const std::uint32_t records = program.settings.recording ? 1 : 0;
    switch (address.mSelector) {
    case kAudioProcessPropertyPID:
        return Property{program.settings.pid};
    case kAudioProcessPropertyIsRunningOutput:
        return Property{plays};
    case kAudioProcessPropertyIsRunning:
        return Property{plays | records};
    default:
        return std::nullopt;
    }
}

AudioStreamBasicDescription tapFormat(const ObjectSpace& space, const Tap& tap) {
    const bool planar = space.settings().tapLayout == BufferLayout::planar;
    AudioStreamBasicDescription format;
    format.mSampleRate = space.tapSampleRate(tap);
    format.mFormatID = kAudioFormatLinearPCM;
    format.mFormatFlags = kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked |
                          (planar ? kAudioFormatFlagIsNonInterleaved : 0);
    format.mChannelsPerFrame = 2;
    format.mBytesPerFrame = (planar ? 1 : 2) * sizeof(float);
    format.mFramesPerPacket = 1;
    format.mBytesPerPacket = format.mBytesPerFrame;
    format.mBitsPerChannel = 32;
    return format;
}

std::optional<Property> readTap(const ObjectSpace& space, const Tap& tap,
                                const AudioObjectPropertyAddress& address) {
    if (!isGlobal(address) || address.mSelector != kAudioTapPropertyFormat)
        return std::nullopt;
    return Property{tapFormat(space, tap)};
}

template <typename Value>
Value valueOf(std::span<const std::byte> data) {
    Value value{};
    std::memcpy(&value, data.data(), sizeof value);
    return value;
}

} // namespace

std::optional<Property> readProperty(const ObjectSpace& space, AudioObjectID object,
                                     const AudioObjectPropertyAddress& address) {
    if (object == kAudioObjectSystemObject)
        return readSystem(space, address);
    if (const Device* device = space.device(object); device != nullptr)
        return readDevice(*device, address);
    if (const Aggregate* aggregate = space.aggregate(object); aggregate != nullptr)
        return readAggregate(space, *aggregate, address);
    if (const Program* program = space.program(object); program != nullptr)
        return readProgram(*program, address);
    if (const Tap* tap = space.tap(object); tap != nullptr)
        return readTap(space, *tap, address);
    return std::nullopt;
}

OSStatus writeProperty(ObjectSpace& space, AudioObjectID object,
                       const AudioObjectPropertyAddress& address, std::span<const std::byte> data,
                       Changes& changes) {
    if (!space.contains(object))
        return kAudioHardwareBadObjectError;
    const auto property = readProperty(space, object, address);
    if (!property)
        return kAudioHardwareUnknownPropertyError;
    if (!property->settable)
        return kAudioHardwareIllegalOperationError;
    if (data.size() != sizeOf(property->value))
        return kAudioHardwareBadPropertySizeError;

    switch (address.mSelector) {
    case kAudioHardwarePropertyDefaultOutputDevice: {
        const auto device = valueOf<AudioObjectID>(data);
        return space.setDefaultOutput(device, changes) ? noErr : kAudioHardwareBadDeviceError;
    }
    case kAudioDevicePropertyNominalSampleRate:
        return space.setSampleRate(object, valueOf<double>(data), changes);
    case kAudioDevicePropertyVolumeScalar:
        return space.setVolume(object, address.mElement, valueOf<float>(data), changes);
    default:
        return kAudioHardwareIllegalOperationError;
    }
}

} // namespace orvanta::embedded
