#pragma once

#include "core/platform/Platform.h"

namespace orvanta::cli {

/// Prints every audio process and output device; the exit code.
int runListCommand(const Platform& platform);

} // namespace orvanta::cli
