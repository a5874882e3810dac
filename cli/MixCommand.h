#pragma once

#include "cli/ConsoleLog.h"
#include "cli/Options.h"
#include "cli/mix/Session.h"
#include "core/platform/Platform.h"

namespace orvanta::cli {

/// Standard input, output and error.
[[nodiscard]] Console standardConsole();

/// A session of the whole mixer, on the settings in the platform's defaults. The exit code: of what
/// a person types, mistakes do not count.
int runMixCommand(const Platform& platform, const Options& options, const Console& console,
                  ConsoleLog& log);

} // namespace orvanta::cli
