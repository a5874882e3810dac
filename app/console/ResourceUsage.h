#pragma once

#include <string>
#include <string_view>

/// What a process uses, in words and colours.
namespace orvanta::resourceUsage {

/// "Playing" and "Idle".
[[nodiscard]] std::string_view activity(bool isPlaying) noexcept;

/// "23.4%", of one core.
[[nodiscard]] std::string cpuReadOut(double percent);
/// A colour of the theme.
[[nodiscard]] std::string_view cpuColor(double percent) noexcept;
/// Of the bar, 0 to 1.
[[nodiscard]] double cpuShare(double percent) noexcept;

/// "412 MB", beyond 1024 "1.5 GB".
[[nodiscard]] std::string memoryReadOut(double megabytes);

} // namespace orvanta::resourceUsage
