#include "platform/pipewire/PrintableText.h"

#include <array>
#include <cstdint>

namespace orvanta::pipewire {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// How a character of so many bytes begins, and the least that takes so many.
struct Form {
    std::uint8_t mask;
    std::uint8_t lead;
    std::size_t length;
    std::uint32_t least;
};

constexpr std::array<Form, 4> kForms{{
    {0x80, 0x00, 1, 0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
}};

bool isShown(std::uint32_t character) {
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    return !isControl && !isSurrogate && character <= 0x10FFFF;
}

bool isWhole(std::string_view bytes, const Form& form) {
    std::uint32_t character = static_cast<std::uint8_t>(bytes[0]) & ~std::uint32_t{form.mask};
    for (const char byte : bytes.substr(1)) {
        const auto bits = static_cast<std::uint8_t>(byte);
        if ((bits & 0xC0) != 0x80)
            return false;
        character = character << 6 | (bits & 0x3FU);
    }
    return character >= form.least && isShown(character);
}

/// Bytes of the character in front, 0 if there is none that can be shown.
std::size_t lengthOfFirst(std::string_view text) {
    const auto first = static_cast<std::uint8_t>(text[0]);
    for (const Form& form : kForms)
        if ((first & form.mask) == form.lead)
            return text.size() >= form.length && isWhole(text.substr(0, form.length), form)
                       ? form.length
                       : 0;
    return 0;
}

} // namespace

std::string printable(std::string_view text, std::size_t longest) {
    std::string shown;
    while (!text.empty()) {
        const std::size_t length = lengthOfFirst(text);
        const std::string_view next = length > 0 ? text.substr(0, length) : kReplacement;
        if (shown.size() + next.size() > longest)
            break;
        shown += next;
        text.remove_prefix(length > 0 ? length : 1);
    }
    return shown;
}

} // namespace orvanta::pipewire
