#pragma once

#include "cli/mix/Command.h"

#include <string>
#include <vector>

namespace orvanta::cli {

/// Every command of a session, in the order of its help.
[[nodiscard]] const std::vector<Command>& commandTable();

/// All commands with their arguments and what they do, a line each.
[[nodiscard]] std::string commandHelp();

/// Does what the line asks for; an empty line asks for nothing. On the main thread. Throws a
/// `CommandError` for what is no command and for one that cannot be done.
Reply runLine(Mixer& mixer, std::string_view line);

} // namespace orvanta::cli
