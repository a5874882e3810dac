#include "app/update/VersionOrder.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace orvanta {
namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

char lowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

/// A run of digits without leading zeros, or of letters; neither at the end of a version.
struct Piece {
    std::string number;
    std::string word;
};

/// Takes the piece that begins behind separators off the front of `version`.
Piece takePiece(std::string_view& version) {
    while (!version.empty() && !isDigit(version.front()) && !isLetter(version.front()))
        version.remove_prefix(1);
    if (version.empty())
        return {};
    const auto isSameKind = isDigit(version.front()) ? isDigit : isLetter;
    const auto length = static_cast<std::size_t>(
        std::find_if_not(version.begin(), version.end(), isSameKind) - version.begin());
    std::string text(version.substr(0, length));
    version.remove_prefix(length);
    if (isLetter(text.front())) {
        std::ranges::transform(text, text.begin(), lowerCase);
        return {.number = {}, .word = std::move(text)};
    }
    text.erase(0, text.find_first_not_of('0'));
    return {.number = std::move(text), .word = {}};
}

std::string_view withoutPrefix(std::string_view version) {
    const bool isPrefixed =
        version.size() > 1 && lowerCase(version.front()) == 'v' && isDigit(version[1]);
    return isPrefixed ? version.substr(1) : version;
}

std::weak_ordering compareNumbers(const std::string& a, const std::string& b) {
    // Any length: without leading zeros the longer number is the greater one.
    return a.size() != b.size() ? std::weak_ordering(a.size() <=> b.size())
                                : std::weak_ordering(a <=> b);
}

std::weak_ordering comparePieces(const Piece& a, const Piece& b) {
    if (!a.word.empty() && !b.word.empty())
        return a.word <=> b.word;
    // A stage before the release comes before its number, and before its end.
    if (a.word.empty() != b.word.empty())
        return a.word.empty() ? std::weak_ordering::greater : std::weak_ordering::less;
    return compareNumbers(a.number, b.number);
}

} // namespace

std::weak_ordering compareVersions(std::string_view a, std::string_view b) {
    a = withoutPrefix(a);
    b = withoutPrefix(b);
    while (!a.empty() || !b.empty()) {
        const Piece first = takePiece(a);
        const Piece second = takePiece(b);
        if (const auto order = comparePieces(first, second); order != 0)
            return order;
    }
    return std::weak_ordering::equivalent;
}

} // namespace orvanta
