#pragma once

#include "core/platform/FourCharCode.h"

#include <cstdint>

namespace orvanta {

/// Result of every call to the audio system. Zero is success; the logs print any other value and
/// nothing in the core tells the values apart.
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus kAudioHardwareNotRunningError = statusCode("stop");
inline constexpr OSStatus kAudioHardwareUnspecifiedError = statusCode("what");
inline constexpr OSStatus kAudioHardwareUnknownPropertyError = statusCode("who?");
inline constexpr OSStatus kAudioHardwareBadPropertySizeError = statusCode("!siz");
inline constexpr OSStatus kAudioHardwareIllegalOperationError = statusCode("nope");
inline constexpr OSStatus kAudioHardwareBadObjectError = statusCode("!obj");
inline constexpr OSStatus kAudioHardwareBadDeviceError = statusCode("!dev");

// Of events and hot keys.
inline constexpr OSStatus eventInternalErr = -9868;
inline constexpr OSStatus eventNotHandledErr = -9874;
inline constexpr OSStatus eventHotKeyExistsErr = -9878;
inline constexpr OSStatus eventHotKeyInvalidErr = -9879;

} // namespace orvanta
