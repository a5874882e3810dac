#pragma once

#include "core/platform/AudioObject.h"
#include "platform/pipewire/PropertyMap.h"

namespace orvanta::pipewire {

/// How a device is connected, from its node's properties. What is no hardware is virtual, and
/// hardware that does not say how it is connected is unknown.
FourCharCode transportType(const PropertyMap& device);

} // namespace orvanta::pipewire
