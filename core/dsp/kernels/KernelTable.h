#pragma once

// Everything that is compiled once for each instruction set. See Lanes.h for what may stand in it.

#include "core/dsp/kernels/CompressorLoops.h"
#include "core/dsp/kernels/EQLoops.h"
#include "core/dsp/kernels/Kernels.h"
#include "core/dsp/kernels/LevelLoops.h"
#include "core/dsp/kernels/StereoLoops.h"

namespace orvanta {
namespace {

constexpr Kernels kernelTable(InstructionSet set) {
    return {set, kEQLoops, kCompressorLoops, kLevelLoops, kStereoLoops};
}

} // namespace
} // namespace orvanta
