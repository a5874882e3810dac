#pragma once

#include "platform/embedded/objects/ObjectSpace.h"
#include "platform/embedded/objects/PropertyValue.h"

#include <optional>
#include <span>

namespace orvanta::embedded {

/// A property as it is now.
struct Property {
    PropertyValue value;
    bool settable = false;
};

/// Nothing when the object has no such property. Scope and element count: all is global and of
/// element 0 but the streams (input, output, or global for both) and their configuration (input or
/// output), the volumes (output, elements as
/// the device has them) and the active sub-devices (any scope).
std::optional<Property> readProperty(const ObjectSpace& space, AudioObjectID object,
                                     const AudioObjectPropertyAddress& address);

/// Answers kAudioHardwareBadObjectError for an unknown object, kAudioHardwareUnknownPropertyError
/// for one that the object lacks, kAudioHardwareIllegalOperationError for one that cannot be set
/// or not to this value, kAudioHardwareBadPropertySizeError for any size but the type's own.
OSStatus writeProperty(ObjectSpace& space, AudioObjectID object,
                       const AudioObjectPropertyAddress& address, std::span<const std::byte> data,
                       Changes& changes);

} // namespace orvanta::embedded
