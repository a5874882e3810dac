#pragma once

namespace orvanta {

struct LevelKernels {};

} // namespace orvanta
