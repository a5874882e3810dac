#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <sys/types.h>

namespace orvanta::pipewire {

/// When the process started, in clock ticks since boot; together with the id it names a process
/// for good, because ids are used again. Nothing when there is no such process or it is hidden.
std::optional<std::uint64_t> processStartTime(pid_t pid);

/// The start time out of the text of a process's `stat` file, whose second field is the program's
/// name in parentheses and may itself hold blanks and parentheses.
std::optional<std::uint64_t> startTimeInStat(std::string_view stat);

} // namespace orvanta::pipewire
