#pragma once

#include "platform/embedded/objects/Properties.h"

namespace orvanta::embedded {

std::optional<Property> readDevice(const Device& device, const AudioObjectPropertyAddress& address);

std::optional<Property> readAggregate(const ObjectSpace& space, const Aggregate& aggregate,
                                      const AudioObjectPropertyAddress& address);

} // namespace orvanta::embedded
