#pragma once

#include "cli/Options.h"

namespace orvanta::cli {

/// Asks the Orvanta that runs in this session, over the session bus, and prints its line; the exit
/// code. Throws std::runtime_error where none answers.
int runIntentCommand(const IntentOptions& options);

} // namespace orvanta::cli
