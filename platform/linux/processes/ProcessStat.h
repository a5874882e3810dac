#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvanta::desktop {

/// What the proc file system's line "stat" says of a process. A field that is missing or broken is
/// absent; without the name, which is what the others are counted from, all are.
struct ProcessStat {
    std::string_view name; ///< the kernel's short one
    std::optional<std::int32_t> parent;
    std::optional<std::int32_t> session;
    std::optional<std::uint64_t> userTime;   ///< of all threads, in clock ticks
    std::optional<std::uint64_t> systemTime; ///< of all threads, in clock ticks
    std::optional<std::int32_t> threadCount;
    std::optional<std::uint64_t> startTime;     ///< in clock ticks since boot
    std::optional<std::uint64_t> virtualSize;   ///< in bytes
    std::optional<std::uint64_t> residentPages; ///< what of it is in memory
};

/// The line must outlive the answer.
[[nodiscard]] ProcessStat parseProcessStat(std::string_view line);

} // namespace orvanta::desktop
