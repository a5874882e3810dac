#pragma once

#include "platform/qt/hotkeys/KeyCombination.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orvanta {

/// The key presses that are one combination: any of the keys in any of the modifiers' states, which
/// differ by the lock keys only.
struct X11Grab {
    std::vector<std::uint8_t> keycodes;
    std::vector<std::uint16_t> states;

    bool operator==(const X11Grab&) const = default;

    /// `state` as an event tells it, pointer buttons included.
    [[nodiscard]] bool covers(std::uint8_t keycode, std::uint16_t state) const;
    [[nodiscard]] bool overlaps(const X11Grab& other) const;
};

/// Which keys a display's keyboard has, and which of its eight modifiers do what.
class X11Keyboard {
public:
    struct Mapping {
        std::uint8_t firstKeycode = 0;
        std::uint8_t keysymsPerKeycode = 0;
        /// Of all keycodes, one after the other.
        std::vector<std::uint32_t> keysyms;
        /// The keycodes of each modifier: shift, lock, control, 1 to 5. 0 is none.
        std::array<std::vector<std::uint8_t>, 8> modifierKeys;
    };

    explicit X11Keyboard(Mapping mapping);

    /// Nothing when the keyboard lacks the key or one of the modifiers.
    [[nodiscard]] std::optional<X11Grab> grabFor(const KeyCombination& combination) const;

    /// Carbon's bits of what is on in an event's state; the lock keys are none of them.
    [[nodiscard]] std::uint32_t modifiersIn(std::uint16_t state) const;

    /// What the key says without modifiers in the first layout; 0 for nothing.
    [[nodiscard]] std::uint32_t plainKeysym(std::uint8_t keycode) const;

    /// Whether Caps Lock is on in an event's state.
    [[nodiscard]] static bool hasCapsLock(std::uint16_t state);

private:
    [[nodiscard]] std::vector<std::uint8_t> keycodesOf(std::uint32_t keysym) const;
    /// What a key says, counted from the first one. Nothing for one that is not told.
    [[nodiscard]] std::span<const std::uint32_t> keysymsOf(std::size_t key) const;
    /// 0 for a keysym that is on no modifier's key.
    [[nodiscard]] std::uint16_t modifierOf(std::uint32_t keysym) const;
    [[nodiscard]] bool hasKeysym(std::uint8_t keycode, std::uint32_t keysym) const;
    [[nodiscard]] std::optional<std::uint16_t> stateFor(std::uint32_t modifiers) const;
    [[nodiscard]] std::vector<std::uint16_t> lockStates() const;

    Mapping mapping_;
};

} // namespace orvanta
