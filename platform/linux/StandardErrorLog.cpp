#include "platform/linux/StandardErrorLog.h"

#include "platform/linux/BrokenPipeShield.h"

#include <cerrno>
#include <chrono>
#include <climits>
#include <poll.h>
#include <string>

namespace orvanta {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPatience(100);

/// Whether a write would find room, or an error, within that time.
bool hasRoom(int descriptor, std::chrono::milliseconds patience) {
    const auto until = Clock::now() + patience;
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now());
        pollfd question{descriptor, POLLOUT, 0};
        const int answers =
            ::poll(&question, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
        if (answers >= 0)
            return answers > 0;
        if (errno != EINTR)
            return false;
    }
}

} // namespace

std::string_view levelName(LogLevel level) {
    switch (level) {
    case LogLevel::debug:
        return "debug";
    case LogLevel::info:
        return "info";
    case LogLevel::error:
        return "error";
    }
    return "unknown";
}

std::string_view withoutTrailingLineFeed(std::string_view text) {
    if (text.ends_with('\n'))
        text.remove_suffix(1);
    return text;
}

StandardErrorLog::StandardErrorLog(LogLevel minimum, int descriptor)
    : minimum_(minimum), descriptor_(descriptor) {}

void StandardErrorLog::write(const LogRecord& record) {
    if (record.level < minimum_ || descriptor_ < 0)
        return;
    const BrokenPipeShield shield;
    const std::scoped_lock guard(mutex_);
    std::string line;
    if (isCut_)
        line += '\n';
    line.append(levelName(record.level)).append(" ").append(record.category).append(": ");
    line.append(withoutTrailingLineFeed(record.message)).append("\n");

    const std::size_t written = writeWhatFits(line);
    if (written > 0)
        isCut_ = written < line.size();
}

std::size_t StandardErrorLog::writeWhatFits(std::string_view text) {
    std::size_t done = 0;
    while (done < text.size()) {
        isStuck_ = !hasRoom(descriptor_, isStuck_ ? std::chrono::milliseconds(0) : kPatience);
        if (isStuck_)
            break;
        // A pipe that has room takes this much without waiting and in one piece.
        const std::string_view part = text.substr(done, PIPE_BUF);
        const ssize_t written = ::write(descriptor_, part.data(), part.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            break;
        done += static_cast<std::size_t>(written);
    }
    return done;
}

} // namespace orvanta
