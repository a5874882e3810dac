#pragma once

#include "cli/ConsoleLog.h"
#include "cli/Options.h"
#include "core/platform/Platform.h"

namespace orvanta::cli {

/// Taps a process for a while and prints its levels; ends early, and cleanly, on SIGINT and
/// SIGTERM. The exit code.
int runTapCommand(const Platform& platform, const TapOptions& options, const ConsoleLog& log);

} // namespace orvanta::cli
