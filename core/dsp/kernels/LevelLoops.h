#pragma once

#include "core/dsp/kernels/LevelKernels.h"
#include "core/dsp/kernels/Lanes.h"

namespace orvanta {
namespace {

constexpr LevelKernels kLevelLoops{};

} // namespace
} // namespace orvanta
