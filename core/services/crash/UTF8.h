#pragma once

#include <string>
#include <string_view>

namespace orvanta::crash {

[[nodiscard]] bool isUTF8(std::string_view bytes);

/// The text with U+FFFD for each sequence of bytes that is no character.
[[nodiscard]] std::string madeUTF8(std::string_view bytes);

} // namespace orvanta::crash
