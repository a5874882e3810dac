#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta::desktop {

/// `key[locale]=value` below `[group]`, as it stands in the file: the value is not unescaped.
struct KeyFileLine {
    std::string_view group;
    std::string_view key;
    std::string_view locale; ///< empty where the key has none
    std::string_view value;  ///< without blanks around it
};

/// Walks the lines of a key file: desktop entries, themes and settings are written so. Comments,
/// empty lines and lines that are no such thing are passed over.
class KeyFileReader {
public:
    /// The text must outlive the reader and its lines.
    explicit KeyFileReader(std::string_view text);

    /// The next line with a key; nothing at the end.
    [[nodiscard]] std::optional<KeyFileLine> next();

private:
    std::string_view rest_;
    std::string_view group_;
};

/// The value with its escapes (\s \n \t \r \\) resolved; a backslash before anything else stays.
[[nodiscard]] std::string unescaped(std::string_view value);

/// The items between separators, without blanks around them; empty ones are left out. The value
/// must outlive them.
[[nodiscard]] std::vector<std::string_view> listItems(std::string_view value, char separator);

/// Fit to be shown: not empty, valid UTF-8, no control characters, 256 bytes at most.
[[nodiscard]] bool isDisplayText(std::string_view text);

/// A to Z as a to z, every other byte as it is: identifiers compare so in all languages.
[[nodiscard]] std::string asciiLowerCase(std::string_view text);

} // namespace orvanta::desktop
