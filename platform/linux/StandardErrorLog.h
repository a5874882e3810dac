#pragma once

#include "core/platform/SystemLog.h"

#include <mutex>
#include <unistd.h>

namespace orvanta {

/// "debug", "info" or "error".
[[nodiscard]] std::string_view levelName(LogLevel level);

/// `text` without the line feed at its end, if it has one: the log ends its lines itself.
[[nodiscard]] std::string_view withoutTrailingLineFeed(std::string_view text);

/// Writes "level category: message" lines to standard error. Lines of several threads never mix,
/// those of several programs do not up to 4 KiB.
///
/// What cannot be written is lost: because the other end is closed, or because it takes nothing for
/// 100 ms (for each 4 KiB of a line). Once it has been waited for in vain, nothing waits until it
/// takes something again. Only another program that fills a shared pipe between the look for room
/// and the write can make that write wait for longer.
class StandardErrorLog final : public SystemLog {
public:
    /// Leaves out messages below `minimum`. `descriptor` stays the caller's.
    explicit StandardErrorLog(LogLevel minimum = LogLevel::debug, int descriptor = STDERR_FILENO);

    void write(const LogRecord& record) override;

private:
    /// Bytes that went out.
    std::size_t writeWhatFits(std::string_view text);

    const LogLevel minimum_;
    const int descriptor_;
    std::mutex mutex_;
    /// The last attempt found no room.
    bool isStuck_ = false;
    /// The last line that went out lacks its end.
    bool isCut_ = false;
};

} // namespace orvanta
