#pragma once

namespace orvanta {

struct EQKernels {};

} // namespace orvanta
