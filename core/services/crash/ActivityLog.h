#pragma once

#include "core/platform/WallClock.h"

#include <filesystem>
#include <string_view>

namespace orvanta::crash {

/// A plain text file of what happened when. One that has grown beyond 1 MiB becomes "….old" with
/// the next message, in place of the one before it. No lock: only the program's start and the
/// handler of uncaught exceptions write.
class ActivityLog {
public:
    /// `clock` must outlive the log.
    ActivityLog(std::filesystem::path file, const WallClock& clock);

    /// Appends "[time] " and the message, which carries its own line end. What fails, fails
    /// silently.
    void write(std::string_view message) const noexcept;

private:
    void moveAwayWhenLarge() const;

    const std::filesystem::path file_;
    const WallClock& clock_;
};

} // namespace orvanta::crash
