#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvanta::desktop {

/// What the proc file system's line "stat" says of a process. A field that is missing or broken is
/// absent, and so is all behind it that cannot be found without it.
struct ProcessStat {
    std::string_view name; ///< the kernel's short one
    std::optional<std::int32_t> parent;
    std::optional<std::int32_t> session;
    std::optional<std::uint64_t> startTime; ///< in clock ticks since boot
};

/// The line must outlive the answer.
[[nodiscard]] ProcessStat parseProcessStat(std::string_view line);

} // namespace orvanta::desktop
