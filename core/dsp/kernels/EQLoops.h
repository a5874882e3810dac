#pragma once

#include "core/dsp/kernels/EQKernels.h"
#include "core/dsp/kernels/Lanes.h"

namespace orvanta {
namespace {

constexpr EQKernels kEQLoops{};

} // namespace
} // namespace orvanta
