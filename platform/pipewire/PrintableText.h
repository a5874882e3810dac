#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvanta::pipewire {

/// What any program may have written, as text that can be shown and stored: valid UTF-8 without
/// control characters, of `longest` bytes at the most and never cut inside of a character. What is
/// no text becomes the replacement character.
std::string printable(std::string_view text, std::size_t longest);

} // namespace orvanta::pipewire
