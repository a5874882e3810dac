#pragma once

#include <cstdint>
#include <string>

namespace orvanta {

/// Four ASCII characters as one big-endian number, the audio system's way to name things.
using FourCharCode = std::uint32_t;

consteval FourCharCode fourCharCode(const char (&text)[5]) {
    FourCharCode code = 0;
    for (int index = 0; index < 4; ++index)
        code = (code << 8U) | static_cast<unsigned char>(text[index]);
    return code;
}

/// The same as a signed status.
consteval std::int32_t statusCode(const char (&text)[5]) {
    return static_cast<std::int32_t>(fourCharCode(text));
}

/// "volm" for the code of those letters; characters that do not print show as '.'.
std::string fourCharText(FourCharCode code);

} // namespace orvanta
