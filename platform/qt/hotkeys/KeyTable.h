#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace orvanta {

/// One key of a US keyboard.
struct TableKey {
    /// Virtual key code.
    std::uint32_t keyCode = 0;
    /// What the key says without modifiers, in X's numbers; on the keypad with Num Lock.
    std::uint32_t keysym = 0;
    /// The keysym's name.
    std::string_view name;
};

/// Every key that can be part of a combination.
[[nodiscard]] std::span<const TableKey> allTableKeys() noexcept;

/// Nothing for a number that no key has.
[[nodiscard]] std::optional<TableKey> findTableKey(std::uint32_t keyCode) noexcept;

} // namespace orvanta
