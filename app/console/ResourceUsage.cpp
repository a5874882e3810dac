#include "app/console/ResourceUsage.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvanta::resourceUsage {
namespace {

constexpr double kMuch = 50.0;
constexpr double kSome = 20.0;
constexpr double kFullBar = 100.0;
constexpr double kGigabyte = 1024.0;

} // namespace

std::string_view activity(bool isPlaying) noexcept {
    return isPlaying ? "Playing" : "Idle";
}

std::string cpuReadOut(double percent) {
    return fmt::format("{:.1f}%", percent);
}

std::string_view cpuColor(double percent) noexcept {
    if (percent > kMuch)
        return "red";
    return percent > kSome ? "warmOrange" : "green";
}

double cpuShare(double percent) noexcept {
    return percent > 0.0 ? std::min(percent, kFullBar) / kFullBar : 0.0;
}

std::string memoryReadOut(double megabytes) {
    if (megabytes > kGigabyte)
        return fmt::format("{:.1f} GB", megabytes / kGigabyte);
    return fmt::format("{:.0f} MB", megabytes);
}

} // namespace orvanta::resourceUsage
