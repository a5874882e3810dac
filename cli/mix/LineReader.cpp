#include "cli/mix/LineReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <poll.h>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace orvanta::cli {
namespace {

using Clock = std::chrono::steady_clock;

/// For `poll`, which counts in milliseconds and takes a negative number for ever.
int millisecondsUntil(const std::optional<LineReader::TimePoint>& until) {
    constexpr double kLongest = 3'600'000.0;
    if (!until)
        return -1;
    const double left = std::chrono::duration<double, std::milli>(*until - Clock::now()).count();
    return static_cast<int>(std::ceil(std::clamp(left, 0.0, kLongest)));
}

} // namespace

LineReader::Arrival LineReader::wait(StopSignals& signals, std::optional<TimePoint> until) {
    for (;;) {
        const bool isReady = !lines_.empty() || hasEnded_;
        std::array<pollfd, 2> watched{
            {{signals.descriptor(), POLLIN, 0}, {isReady ? -1 : descriptor_, POLLIN, 0}}};
        poll(watched.data(), watched.size(), isReady ? 0 : millisecondsUntil(until));
        if (watched[0].revents != 0 && signals.waitUntil(Clock::now()))
            return Arrival::signal;
        if (!lines_.empty())
            return Arrival::line;
        if (hasEnded_)
            return Arrival::end;
        if (watched[1].revents != 0)
            read();
        else if (until && Clock::now() >= *until)
            return Arrival::time;
    }
}

std::optional<std::string> LineReader::take() {
    auto line = std::move(lines_.front());
    lines_.pop_front();
    return line;
}

/// What cannot be read has ended: a terminal that was closed, for one.
void LineReader::read() {
    std::array<char, 4096> bytes{};
    const ssize_t count = ::read(descriptor_, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0) {
        hasEnded_ = true;
        if (!begun_.empty() || isTooLong_)
            endLine();
        return;
    }
    for (const char byte : std::string_view(bytes.data(), static_cast<std::size_t>(count))) {
        if (byte == '\n')
            endLine();
        else if (begun_.size() < longestLine)
            begun_ += byte;
        else
            isTooLong_ = true;
    }
}

void LineReader::endLine() {
    if (begun_.ends_with('\r'))
        begun_.pop_back();
    lines_.push_back(isTooLong_ ? std::nullopt : std::optional(begun_));
    begun_.clear();
    isTooLong_ = false;
}

} // namespace orvanta::cli
