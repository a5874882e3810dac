#include "cli/mix/Values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace orvanta::cli {
namespace {

std::optional<double> numberIn(std::string_view text) {
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isNumber = result.ec == std::errc() && result.ptr == end && std::isfinite(number);
    return isNumber ? std::optional(number) : std::nullopt;
}

double withinRange(std::optional<double> number, const std::string& word, Range range) {
    if (number && *number >= range.lowest && *number <= range.highest)
        return *number;
    throw CommandError(fmt::format("{} is not a number from {} to {}.", inQuotes(word),
                                   range.lowest, range.highest));
}

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

} // namespace

double readNumber(const std::string& word, Range range) {
    return withinRange(numberIn(word), word, range);
}

float readLevel(const std::string& word, Range range) {
    const std::string_view text = word;
    auto number = text.ends_with('%') ? numberIn(text.substr(0, text.size() - 1)) : numberIn(text);
    if (number && text.ends_with('%'))
        *number /= 100.0;
    return static_cast<float>(withinRange(number, word, range));
}

bool readSwitch(const std::string& word) {
    if (isSameWord(word, "on"))
        return true;
    if (isSameWord(word, "off"))
        return false;
    throw CommandError(fmt::format("{} is neither on nor off.", inQuotes(word)));
}

bool isSameWord(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, {}, lowerCase, lowerCase);
}

} // namespace orvanta::cli
