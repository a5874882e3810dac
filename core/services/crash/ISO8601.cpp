#include "core/services/crash/ISO8601.h"

#include <fmt/chrono.h>

namespace orvanta::crash {

std::string iso8601(WallTime time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}",
                       fmt::gmtime(std::chrono::system_clock::to_time_t(seconds)));
}

} // namespace orvanta::crash
