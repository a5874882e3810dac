#pragma once

#include "core/dsp/kernels/CrossfeedLoops.h"
#include "core/dsp/kernels/StereoKernels.h"
#include "core/dsp/kernels/WidthLoops.h"

namespace orvanta {
namespace {

constexpr StereoKernels kStereoLoops{widenPlanar, widenInterleaved, crossfeedPlanar,
                                     crossfeedInterleaved};

} // namespace
} // namespace orvanta
