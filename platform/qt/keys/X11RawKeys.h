#pragma once

#include "platform/qt/hotkeys/X11Connection.h"

#include <cstdint>
#include <optional>

namespace orvanta {

/// Sees the keys of a display whichever window has the keyboard, and whoever has grabbed them: raw
/// events of the input extension, without the modifiers that are on.
class X11RawKeys {
public:
    struct Key {
        bool isPressed = false;
        std::uint8_t keycode = 0;
        /// The server's, in milliseconds.
        std::uint32_t time = 0;
    };

    /// From now on the connection brings them. Nothing when the display does not show them.
    [[nodiscard]] static std::optional<X11RawKeys> select(const X11Connection& connection);

    /// Nothing for an event of another kind.
    [[nodiscard]] std::optional<Key> keyOf(const xcb_generic_event_t& event) const;

private:
    explicit X11RawKeys(std::uint8_t extension) : extension_(extension) {}

    /// The number by which the display calls the extension.
    std::uint8_t extension_;
};

} // namespace orvanta
