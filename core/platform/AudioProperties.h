#pragma once

#include "core/platform/AudioHardware.h"

#include <optional>
#include <string>
#include <vector>

/// Typed reads of audio properties, so that nobody handles sizes and raw bytes twice. Each answers
/// nothing when the audio system answers any status but `noErr` or fewer bytes than the type has.
namespace orvanta {

std::optional<std::uint32_t> readUInt32(AudioHardware& hardware, AudioObjectID object,
                                        const AudioObjectPropertyAddress& address);
std::optional<std::int32_t> readInt32(AudioHardware& hardware, AudioObjectID object,
                                      const AudioObjectPropertyAddress& address);
std::optional<float> readFloat32(AudioHardware& hardware, AudioObjectID object,
                                 const AudioObjectPropertyAddress& address);
std::optional<double> readFloat64(AudioHardware& hardware, AudioObjectID object,
                                  const AudioObjectPropertyAddress& address);

/// Nothing also where the audio system has a null string.
std::optional<std::string> readString(AudioHardware& hardware, AudioObjectID object,
                                      const AudioObjectPropertyAddress& address);

/// Empty when the size or the data cannot be read. Only the ids that were really filled.
std::vector<AudioObjectID> readObjectList(AudioHardware& hardware, AudioObjectID object,
                                          const AudioObjectPropertyAddress& address);

std::optional<AudioStreamBasicDescription> readTapFormat(AudioHardware& hardware,
                                                         AudioObjectID tap);

/// Channels of all streams of a scope; nothing when size or data cannot be read.
std::optional<std::uint64_t> readChannelCount(AudioHardware& hardware, AudioObjectID device,
                                              AudioObjectPropertyScope scope);

/// Every device, in the system's order.
std::vector<AudioObjectID> deviceList(AudioHardware& hardware);

/// The device that plays what nobody sends elsewhere; nothing when there is none.
std::optional<AudioObjectID> defaultOutputDevice(AudioHardware& hardware);

/// The first device with exactly this UID, 0 when there is none. Devices whose UID cannot be read
/// are passed over.
AudioObjectID findDeviceID(AudioHardware& hardware, const std::string& uid);

} // namespace orvanta
