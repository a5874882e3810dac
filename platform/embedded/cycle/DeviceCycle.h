#pragma once

#include "platform/embedded/cycle/CyclePlan.h"

namespace orvanta::embedded {

/// Which IOProcs a cycle calls.
enum class Rest {
    ignored, ///< all that are started
    heeded,  ///< not those whose input is silent and that say they are at rest
};

/// Runs one cycle of a device: programs, IOProcs, volume, capture. Inside the gate.
void runCycle(DevicePlan& plan, Rest rest) noexcept;

/// Whether a cycle would do anything: a program plays, or an IOProc is not at rest.
bool needsCycle(const DevicePlan& plan) noexcept;

} // namespace orvanta::embedded
