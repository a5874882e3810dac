#pragma once

#include "core/dsp/kernels/CompressorKernels.h"
#include "core/dsp/kernels/EQKernels.h"
#include "core/dsp/kernels/InstructionSet.h"
#include "core/dsp/kernels/LevelKernels.h"
#include "core/dsp/kernels/StereoKernels.h"

namespace orvanta {

/// The hot loops of all processors, compiled for one instruction set. Every set computes the same
/// bits: it decides how many numbers go through an operation at once, never which operations.
struct Kernels {
    InstructionSet instructionSet;
    EQKernels eq;
    CompressorKernels compressor;
    LevelKernels level;
    StereoKernels stereo;
};

/// The kernels of one set; null when this machine or this build has none. All sets that are there
/// can be run side by side.
[[nodiscard]] const Kernels* kernelsFor(InstructionSet set) noexcept;

/// The widest set that this machine can run, chosen once when the program starts.
[[nodiscard]] const Kernels& kernels() noexcept;

} // namespace orvanta
