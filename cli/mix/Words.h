#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::cli {

using Words = std::span<const std::string>;

/// The words of a line: blanks part them, but not within double quotes, where a backslash makes a
/// quote or a backslash behind it plain. Throws a `CommandError` for quotes without an end and for
/// what is no text: bytes that are no UTF-8, or control characters.
[[nodiscard]] std::vector<std::string> wordsOf(std::string_view line);

/// A text as `wordsOf` reads it, in quotes. Control characters become question marks: a name must
/// not break a line, or move the cursor of a terminal.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// "a", "a and b", "a, b and c".
[[nodiscard]] std::string enumerated(Words parts);

} // namespace orvanta::cli
