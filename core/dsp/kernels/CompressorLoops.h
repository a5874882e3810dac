#pragma once

#include "core/dsp/kernels/CompressorKernels.h"
#include "core/dsp/kernels/Lanes.h"

namespace orvanta {
namespace {

constexpr CompressorKernels kCompressorLoops{};

} // namespace
} // namespace orvanta
