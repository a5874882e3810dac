#pragma once

#include "core/dsp/kernels/LevelKernels.h"
#include "core/dsp/kernels/LimiterLoops.h"
#include "core/dsp/kernels/MeterLoops.h"
#include "core/dsp/kernels/WeightingLoops.h"

namespace orvanta {
namespace {

constexpr LevelKernels kLevelLoops{limit, limitPair, weightedSquares, measure, copyFinite, scale};

} // namespace
} // namespace orvanta
