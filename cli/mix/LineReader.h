#pragma once

#include "cli/StopSignals.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>

namespace orvanta::cli {

/// Reads an input line by line while signals are watched for. Sleeps until something comes.
class LineReader {
public:
    using TimePoint =
        std::chrono::time_point<std::chrono::steady_clock, std::chrono::duration<double>>;

    enum class Arrival { line, end, signal, time };

    /// Bytes of the longest line that is taken.
    static constexpr std::size_t longestLine = 4096;

    explicit LineReader(int descriptor) : descriptor_(descriptor) {}

    /// What comes first: a line to take, the end of the input, one of the signals (which is taken),
    /// or the time.
    Arrival wait(StopSignals& signals, std::optional<TimePoint> until = std::nullopt);

    /// The line that has come, without its end; nothing for one that is too long.
    std::optional<std::string> take();

private:
    void read();
    void endLine();

    const int descriptor_;
    std::deque<std::optional<std::string>> lines_;
    std::string begun_;
    bool isTooLong_ = false;
    bool hasEnded_ = false;
};

} // namespace orvanta::cli
