#pragma once

#include "core/platform/FourCharCode.h"
#include "core/platform/OSStatus.h"

#include <cstdint>

/// Ids, property addresses and the selectors the core reads: Core Audio's own vocabulary.
namespace orvanta {

/// Names one thing of the audio system: the system itself, a process, a device or a tap.
using AudioObjectID = std::uint32_t;

inline constexpr AudioObjectID kAudioObjectUnknown = 0;
inline constexpr AudioObjectID kAudioObjectSystemObject = 1;

using AudioObjectPropertySelector = FourCharCode;
using AudioObjectPropertyScope = FourCharCode;
using AudioObjectPropertyElement = std::uint32_t;

inline constexpr AudioObjectPropertyScope kAudioObjectPropertyScopeGlobal = fourCharCode("glob");
inline constexpr AudioObjectPropertyScope kAudioObjectPropertyScopeInput = fourCharCode("inpt");
inline constexpr AudioObjectPropertyScope kAudioObjectPropertyScopeOutput = fourCharCode("outp");
inline constexpr AudioObjectPropertyElement kAudioObjectPropertyElementMain = 0;

/// Which property of an object is meant.
struct AudioObjectPropertyAddress {
    AudioObjectPropertySelector mSelector = 0;
    AudioObjectPropertyScope mScope = kAudioObjectPropertyScopeGlobal;
    AudioObjectPropertyElement mElement = kAudioObjectPropertyElementMain;

    friend bool operator==(const AudioObjectPropertyAddress&,
                           const AudioObjectPropertyAddress&) = default;
    friend auto operator<=>(const AudioObjectPropertyAddress&,
                            const AudioObjectPropertyAddress&) = default;
};

// Of the system object.
/// Array of AudioObjectID: every device, in the system's order.
inline constexpr auto kAudioHardwarePropertyDevices = fourCharCode("dev#");
/// AudioObjectID, 0 when there is none.
inline constexpr auto kAudioHardwarePropertyDefaultOutputDevice = fourCharCode("dOut");
/// Array of AudioObjectID: every process that has opened audio.
inline constexpr auto kAudioHardwarePropertyProcessObjectList = fourCharCode("prs#");

// Of a process object.
/// Int32.
inline constexpr auto kAudioProcessPropertyPID = fourCharCode("ppid");
/// UInt32, not zero while the process plays.
inline constexpr auto kAudioProcessPropertyIsRunningOutput = fourCharCode("piro");
/// UInt32, not zero while the process plays or records.
inline constexpr auto kAudioProcessPropertyIsRunning = fourCharCode("pir?");

// Of a device.
/// String, lasting over replugging and restarts.
inline constexpr auto kAudioDevicePropertyDeviceUID = fourCharCode("uid ");
/// String for people to read.
inline constexpr auto kAudioObjectPropertyName = fourCharCode("lnam");
/// String for people to read, often empty.
inline constexpr auto kAudioObjectPropertyManufacturer = fourCharCode("lmak");
/// UInt32, one of kAudioDeviceTransportType….
inline constexpr auto kAudioDevicePropertyTransportType = fourCharCode("tran");
/// Float64, Hz.
inline constexpr auto kAudioDevicePropertyNominalSampleRate = fourCharCode("nsrt");
/// Array of AudioObjectID by scope; the core reads its size only.
inline constexpr auto kAudioDevicePropertyStreams = fourCharCode("stm#");
/// One buffer without samples for each stream of a scope, see StreamConfiguration.h.
inline constexpr auto kAudioDevicePropertyStreamConfiguration = fourCharCode("slay");
/// Float32 from 0 to 1, output scope; element 0 is the device, 1 and 2 its first two channels.
inline constexpr auto kAudioDevicePropertyVolumeScalar = fourCharCode("volm");
/// Array of AudioObjectID: the sub-devices of an aggregate that are alive.
inline constexpr auto kAudioAggregateDevicePropertyActiveSubDeviceList = fourCharCode("agrp");

// Of a tap.
/// AudioStreamBasicDescription.
inline constexpr auto kAudioTapPropertyFormat = fourCharCode("tfmt");

inline constexpr FourCharCode kAudioDeviceTransportTypeUnknown = 0;
inline constexpr FourCharCode kAudioDeviceTransportTypeBuiltIn = fourCharCode("bltn");
inline constexpr FourCharCode kAudioDeviceTransportTypeAggregate = fourCharCode("grup");
inline constexpr FourCharCode kAudioDeviceTransportTypeVirtual = fourCharCode("virt");
inline constexpr FourCharCode kAudioDeviceTransportTypePCI = fourCharCode("pci ");
inline constexpr FourCharCode kAudioDeviceTransportTypeUSB = fourCharCode("usb ");
inline constexpr FourCharCode kAudioDeviceTransportTypeBluetooth = fourCharCode("blue");
inline constexpr FourCharCode kAudioDeviceTransportTypeBluetoothLE = fourCharCode("blea");
inline constexpr FourCharCode kAudioDeviceTransportTypeHDMI = fourCharCode("hdmi");

/// Format of a stream of samples, 40 bytes.
struct AudioStreamBasicDescription {
    double mSampleRate = 0;
    std::uint32_t mFormatID = 0;
    std::uint32_t mFormatFlags = 0;
    std::uint32_t mBytesPerPacket = 0;
    std::uint32_t mFramesPerPacket = 0;
    std::uint32_t mBytesPerFrame = 0;
    std::uint32_t mChannelsPerFrame = 0;
    std::uint32_t mBitsPerChannel = 0;
    std::uint32_t mReserved = 0;
};

static_assert(sizeof(AudioStreamBasicDescription) == 40);

inline constexpr FourCharCode kAudioFormatLinearPCM = fourCharCode("lpcm");
inline constexpr std::uint32_t kAudioFormatFlagIsFloat = 1U;
inline constexpr std::uint32_t kAudioFormatFlagIsPacked = 8U;
inline constexpr std::uint32_t kAudioFormatFlagIsNonInterleaved = 32U;

} // namespace orvanta
