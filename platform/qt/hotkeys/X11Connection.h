#pragma once

#include "platform/qt/hotkeys/X11Keyboard.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace orvanta {

/// A connection of our own to an X display. Nothing it is asked fails worse than by its answer when
/// the display has died.
class X11Connection {
public:
    struct Free {
        void operator()(void* reply) const { std::free(reply); }
    };

    using Event = std::unique_ptr<xcb_generic_event_t, Free>;

    /// The highest bit of an event's type tells that another program made it up.
    static constexpr std::uint8_t kEventType = 0x7F;

    /// The record that an event of this type begins with.
    template <class Record>
    [[nodiscard]] static const Record& as(const xcb_generic_event_t& event) {
        return reinterpret_cast<const Record&>(event);
    }

    /// Null when the display (":0") does not answer.
    [[nodiscard]] static std::unique_ptr<X11Connection> open(const std::string& display);

    [[nodiscard]] bool isAlive() const;
    [[nodiscard]] int descriptor() const;

    /// For requests that are one user's own.
    [[nodiscard]] xcb_connection_t* handle() const { return handle_.get(); }

    /// Of every screen.
    [[nodiscard]] const std::vector<xcb_window_t>& roots() const { return roots_; }

    /// The screen on which the display's name puts windows; a place among the roots.
    [[nodiscard]] std::size_t screen() const { return screen_; }

    /// Null when none waits. Answers to requests may have brought events in with them, which the
    /// descriptor does not tell of any more.
    [[nodiscard]] Event nextEvent();

    /// Nothing when the display has died.
    [[nodiscard]] std::optional<X11Keyboard> readKeyboard();

    /// Asks for the presses on every screen. False when another program has any of them; then we
    /// have none.
    [[nodiscard]] bool grab(const X11Grab& grab);
    void ungrab(const X11Grab& grab);

private:
    struct End {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    using Handle = std::unique_ptr<xcb_connection_t, End>;

    X11Connection(Handle handle, int screenNumber);

    Handle handle_;
    std::size_t screen_;
    std::vector<xcb_window_t> roots_;
};

} // namespace orvanta
