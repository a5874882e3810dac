#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <string>

namespace orvanta {

// Carbon's modifier bits, and what they are on a PC's keyboard.
inline constexpr std::uint32_t kCommandModifier = 256; ///< Super
inline constexpr std::uint32_t kShiftModifier = 512;
inline constexpr std::uint32_t kOptionModifier = 2048; ///< Alt
inline constexpr std::uint32_t kControlModifier = 4096;

/// A virtual key code of a US keyboard and Carbon's modifier bits.
struct KeyCombination {
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;

    auto operator<=>(const KeyCombination&) const = default;
};

/// What combinations do, in words for the user: "Turn the volume up".
using HotKeyDescriptions = std::map<KeyCombination, std::string>;

/// Its key is in the table and its modifiers are among those above.
[[nodiscard]] bool isKnown(const KeyCombination& combination);

// Of known combinations:

/// As users call it: "Super+Shift+Up".
[[nodiscard]] std::string nameOf(const KeyCombination& combination);

/// As desktops on Linux agree to write shortcuts: "LOGO+SHIFT+Up".
[[nodiscard]] std::string triggerOf(const KeyCombination& combination);

} // namespace orvanta
