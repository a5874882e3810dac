#pragma once

#include "platform/qt/hotkeys/X11Connection.h"

#include <cstdint>
#include <optional>

namespace orvanta {

/// Which modifiers of a display's keyboard are on, lock keys and sticky ones included, at the
/// moment of the event that was followed last. To ask the display at a key's press would tell of a
/// moment when the user may have let go of them already.
class X11ModifierState {
public:
    /// From now on the connection brings their changes, and those of the keyboard. Nothing when the
    /// display does not tell them.
    [[nodiscard]] static std::optional<X11ModifierState> select(const X11Connection& connection);

    /// Takes note of a change; events of other kinds change nothing.
    void follow(const xcb_generic_event_t& event);

    /// As an event of a key tells it.
    [[nodiscard]] std::uint16_t state() const { return state_; }

    /// Whether keys have changed places, or modifiers their meaning.
    [[nodiscard]] bool isKeyboardChange(const xcb_generic_event_t& event) const;

private:
    X11ModifierState(std::uint8_t eventType, std::uint16_t state)
        : eventType_(eventType), state_(state) {}

    /// The type of all events of the keyboard extension, which tell by a second one what they are.
    std::uint8_t eventType_;
    std::uint16_t state_;
};

} // namespace orvanta
