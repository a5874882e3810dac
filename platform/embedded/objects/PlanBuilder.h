#pragma once

#include "platform/embedded/cycle/CyclePlan.h"
#include "platform/embedded/objects/ObjectSpace.h"

namespace orvanta::embedded {

/// Works out which device drives which program, who hears it, and lays out the memory.
///
/// A program is driven by one device at a time: its home device, or, when a muting tap cuts its
/// path, the device on which the first running aggregate with such a tap plays. A tap delivers its
/// programs to aggregates on the device that drives them; to an aggregate on another device, whose
/// cycles fall at other times, it delivers silence.
std::shared_ptr<CyclePlan> buildPlan(const ObjectSpace& space, std::uint64_t sequence);

} // namespace orvanta::embedded
