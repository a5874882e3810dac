#include "core/services/crash/ActivityLog.h"

#include "core/services/crash/ISO8601.h"
#include "core/services/crash/PrivateFile.h"

#include <fmt/format.h>

#include <cstdint>
#include <system_error>
#include <tuple>
#include <utility>

namespace orvanta::crash {
namespace {

constexpr std::uintmax_t kLargestSize = 1'048'576;

} // namespace

ActivityLog::ActivityLog(std::filesystem::path file, const WallClock& clock)
    : file_(std::move(file)), clock_(clock) {}

void ActivityLog::write(std::string_view message) const noexcept {
    try {
        moveAwayWhenLarge();
        std::ignore =
            PrivateFile(file_).append(fmt::format("[{}] {}", iso8601(clock_.now()), message));
    } catch (...) {
        // Nobody waits for this line.
    }
}

void ActivityLog::moveAwayWhenLarge() const {
    std::error_code failure;
    const std::uintmax_t size = std::filesystem::file_size(file_, failure);
    if (failure || size <= kLargestSize)
        return;
    std::filesystem::path old = file_;
    old += ".old";
    std::filesystem::remove(old, failure);
    std::filesystem::rename(file_, old, failure);
}

} // namespace orvanta::crash
