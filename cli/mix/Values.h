#pragma once

#include "cli/mix/CommandError.h"
#include "cli/mix/Words.h"

#include <fmt/format.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Words of a command as what they stand for. What cannot be read throws a `CommandError`.
namespace orvanta::cli {

struct Range {
    double lowest = 0.0;
    double highest = 1.0;
};

/// A finite number within the range.
[[nodiscard]] double readNumber(const std::string& word, Range range);

/// The same, or as a percentage: "150%" is 1.5.
[[nodiscard]] float readLevel(const std::string& word, Range range);

/// "on" or "off".
[[nodiscard]] bool readSwitch(const std::string& word);

/// Letters from A to Z count as those from a to z.
[[nodiscard]] bool isSameWord(std::string_view one, std::string_view other);

/// The one of `all` that has this name; `kind` says what they are.
template <class Record, class NameOf>
[[nodiscard]] const Record& readNamed(const std::string& word, std::span<const Record> all,
                                      NameOf nameOf, std::string_view kind) {
    std::vector<std::string> names;
    for (const Record& each : all) {
        names.emplace_back(nameOf(each));
        if (isSameWord(names.back(), word))
            return each;
    }
    throw CommandError(
        fmt::format("There is no {} {}; there are {}.", kind, inQuotes(word), enumerated(names)));
}

} // namespace orvanta::cli
