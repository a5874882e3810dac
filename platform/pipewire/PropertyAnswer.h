#pragma once

#include "core/platform/AudioObject.h"

#include <cstddef>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace orvanta::pipewire {

/// The value of a property, of whichever type it is.
using PropertyValue =
    std::variant<std::uint32_t, std::int32_t, float, double, AudioStreamBasicDescription,
                 std::vector<AudioObjectID>, std::vector<std::byte>, std::string>;

/// A property's value, or why there is none.
struct PropertyAnswer {
    OSStatus status = kAudioHardwareUnknownPropertyError;
    PropertyValue value;

    static PropertyAnswer of(PropertyValue value) { return {noErr, std::move(value)}; }

    static PropertyAnswer failure(OSStatus status) { return {status, {}}; }
};

/// Bytes that the value has in the port's form. A string has none, it is read in its own way.
std::uint32_t sizeOf(const PropertyValue& value);

/// Copies the value out; `ioSize` is the room and becomes what was filled. A list is cut to the
/// whole items that fit, anything else must fit whole.
OSStatus copyValue(const PropertyValue& value, std::uint32_t& ioSize, void* out);

} // namespace orvanta::pipewire
