#pragma once

#include "core/platform/AudioHardware.h"

namespace orvanta::test {

inline AudioObjectPropertyAddress global(AudioObjectPropertySelector selector) {
    return {selector, kAudioObjectPropertyScopeGlobal, kAudioObjectPropertyElementMain};
}

inline AudioObjectPropertyAddress outputVolume(AudioObjectPropertyElement element) {
    return {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, element};
}

inline AudioObjectPropertyAddress streams(AudioObjectPropertyScope scope) {
    return {kAudioDevicePropertyStreams, scope, kAudioObjectPropertyElementMain};
}

/// Bytes of a property, or the status that hindered the answer.
struct SizeAnswer {
    OSStatus status = noErr;
    std::uint32_t size = 0;
};

inline SizeAnswer sizeOf(AudioHardware& hardware, AudioObjectID object,
                         const AudioObjectPropertyAddress& address) {
    SizeAnswer answer;
    answer.status = hardware.getPropertyDataSize(object, address, answer.size);
    return answer;
}

/// Status of a read with so much room.
inline OSStatus readStatus(AudioHardware& hardware, AudioObjectID object,
                           const AudioObjectPropertyAddress& address, std::uint32_t room = 64) {
    char data[64] = {};
    return hardware.getPropertyData(object, address, room, data);
}

template <typename Value>
OSStatus write(AudioHardware& hardware, AudioObjectID object,
               const AudioObjectPropertyAddress& address, Value value) {
    return hardware.setPropertyData(object, address, sizeof value, &value);
}

} // namespace orvanta::test
