#pragma once

#include "cli/mix/Words.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>

namespace orvanta::cli {

/// One line that a command answers with: "pid=101 name="Music" volume=0.5", fit for people and
/// programs. Texts from elsewhere are in quotes, the mixer's own words are not.
class Answer {
public:
    Answer& word(std::string_view key, std::string_view value) {
        line_ += fmt::format("{}{}={}", line_.empty() ? "" : " ", key, value);
        return *this;
    }

    Answer& text(std::string_view key, std::string_view value) {
        return word(key, inQuotes(value));
    }

    /// The shortest that reads back as the same.
    template <class Number>
    Answer& number(std::string_view key, Number value) {
        return word(key, fmt::format("{}", value));
    }

    Answer& flag(std::string_view key, bool value) { return word(key, value ? "yes" : "no"); }

    Answer& state(std::string_view key, bool isOn) { return word(key, isOn ? "on" : "off"); }

    [[nodiscard]] std::string line() const { return line_ + "\n"; }

private:
    std::string line_;
};

} // namespace orvanta::cli
