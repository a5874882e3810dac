#pragma once

namespace orvanta {

struct CompressorKernels {};

} // namespace orvanta
