#include "platform/linux/desktop/KeyFile.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace orvanta::desktop {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestDisplayText = 256;

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

/// "Name[de]" is the key "Name" for the locale "de".
std::pair<std::string_view, std::string_view> keyAndLocale(std::string_view text) {
    const auto bracket = text.find('[');
    if (bracket == std::string_view::npos || !text.ends_with(']'))
        return {text, {}};
    return {text.substr(0, bracket), text.substr(bracket + 1, text.size() - bracket - 2)};
}

char resolvedEscape(char letter) {
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '\\':
        return '\\';
    default:
        return '\0';
    }
}

/// Takes one character off the text; nothing when the bytes are no UTF-8.
std::optional<std::uint32_t> takeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80U)
        return lead;
    const std::size_t following = lead >= 0xF0U ? 3 : lead >= 0xE0U ? 2 : 1;
    constexpr std::uint32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (lead < 0xC0U || lead > 0xF7U || text.size() < following)
        return std::nullopt;
    std::uint32_t character = lead & (0x3FU >> following);
    for (const char next : text.substr(0, following)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xC0U) != 0x80U)
            return std::nullopt;
        character = (character << 6U) | (byte & 0x3FU);
    }
    text.remove_prefix(following);
    const bool isSurrogate = character >= 0xD800U && character <= 0xDFFFU;
    if (character < kSmallest[following] || character > 0x10FFFFU || isSurrogate)
        return std::nullopt;
    return character;
}

bool isControl(std::uint32_t character) {
    return character < 0x20U || (character >= 0x7FU && character < 0xA0U);
}

} // namespace

KeyFileReader::KeyFileReader(std::string_view text) : rest_(text) {
    if (rest_.starts_with(kByteOrderMark))
        rest_.remove_prefix(kByteOrderMark.size());
}

std::optional<KeyFileLine> KeyFileReader::next() {
    while (!rest_.empty()) {
        const std::string_view line = trimmed(takeLine(rest_));
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            // A group whose name is broken takes its keys with it.
            group_ = line.ends_with(']') ? line.substr(1, line.size() - 2) : std::string_view();
            continue;
        }
        const auto equals = line.find('=');
        if (equals == std::string_view::npos)
            continue;
        const auto [key, locale] = keyAndLocale(trimmed(line.substr(0, equals)));
        return KeyFileLine{group_, key, locale, trimmed(line.substr(equals + 1))};
    }
    return std::nullopt;
}

std::string unescaped(std::string_view value) {
    std::string text;
    text.reserve(value.size());
    for (std::size_t at = 0; at < value.size(); ++at) {
        const bool isEscape = value[at] == '\\' && at + 1 < value.size();
        const char resolved = isEscape ? resolvedEscape(value[at + 1]) : '\0';
        text += resolved != '\0' ? resolved : value[at];
        at += resolved != '\0' ? 1 : 0;
    }
    return text;
}

std::vector<std::string_view> listItems(std::string_view value, char separator) {
    std::vector<std::string_view> items;
    while (!value.empty()) {
        const std::string_view raw = value.substr(0, value.find(separator));
        value.remove_prefix(std::min(value.size(), raw.size() + 1));
        if (const std::string_view item = trimmed(raw); !item.empty())
            items.push_back(item);
    }
    return items;
}

bool isDisplayText(std::string_view text) {
    if (text.empty() || text.size() > kLongestDisplayText)
        return false;
    while (!text.empty()) {
        const auto character = takeCharacter(text);
        if (!character || isControl(*character))
            return false;
    }
    return true;
}

std::string asciiLowerCase(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return lower;
}

} // namespace orvanta::desktop
