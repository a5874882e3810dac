#pragma once

#include <cstddef>
#include <string_view>

namespace orvanta::crash {

inline constexpr std::string_view kMarkerLineStart = "CRASH:SIG:";

/// The start, a sign, the digits of 32 bits and a line feed.
inline constexpr std::size_t kLongestMarkerLine = kMarkerLineStart.size() + 1 + 10 + 1;

/// Writes the line that stands for a fatal signal and returns its length. Made by hand, for in a
/// signal handler no formatter may be called.
constexpr std::size_t putMarkerLine(char* line, int signal) noexcept {
    std::size_t length = 0;
    for (const char letter : kMarkerLineStart)
        line[length++] = letter;
    if (signal < 0)
        line[length++] = '-';
    const auto bits = static_cast<unsigned>(signal);
    unsigned rest = signal < 0 ? 0U - bits : bits;

    char digits[10] = {};
    std::size_t count = 0;
    do {
        digits[count++] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    while (count > 0)
        line[length++] = digits[--count];
    line[length++] = '\n';
    return length;
}

} // namespace orvanta::crash
