#pragma once

#include "core/dsp/kernels/StereoKernels.h"
#include "core/dsp/kernels/Lanes.h"

namespace orvanta {
namespace {

constexpr StereoKernels kStereoLoops{};

} // namespace
} // namespace orvanta
