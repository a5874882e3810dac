#pragma once

namespace orvanta {

struct StereoKernels {};

} // namespace orvanta
