#include "core/platform/UUID.h"

#include <random>

namespace orvanta {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
/// Where the hyphens stand in XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX.
constexpr std::size_t kLength = 36;

constexpr bool isHyphenAt(std::size_t place) noexcept {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

std::optional<std::uint8_t> valueOf(char digit) noexcept {
    if (digit >= 'a' && digit <= 'f')
        digit = static_cast<char>(digit - 'a' + 'A');
    const std::size_t value = kDigits.find(digit);
    if (value == std::string_view::npos)
        return std::nullopt;
    return static_cast<std::uint8_t>(value);
}

} // namespace

UUID UUID::random() {
    UUID uuid;
    std::random_device source;
    for (std::uint8_t& byte : uuid.bytes)
        byte = static_cast<std::uint8_t>(source() & 0xFFU);
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0FU) | 0x40U);
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3FU) | 0x80U);
    return uuid;
}

std::string UUID::uuidString() const {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        if (isHyphenAt(text.size()))
            text += '-';
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 15U];
    }
    return text;
}

std::optional<UUID> UUID::from(std::string_view text) noexcept {
    if (text.size() != kLength)
        return std::nullopt;
    UUID uuid;
    std::size_t digits = 0;
    for (std::size_t place = 0; place < kLength; ++place) {
        if (isHyphenAt(place)) {
            if (text[place] != '-')
                return std::nullopt;
            continue;
        }
        const auto value = valueOf(text[place]);
        if (!value)
            return std::nullopt;
        std::uint8_t& byte = uuid.bytes[digits / 2];
        byte = static_cast<std::uint8_t>(byte << 4U | *value);
        ++digits;
    }
    return uuid;
}

} // namespace orvanta
