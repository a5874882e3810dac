#pragma once

#include "core/platform/KeyMonitor.h"
#include "platform/qt/hotkeys/HeldKeys.h"
#include "platform/qt/hotkeys/X11Connection.h"
#include "platform/qt/hotkeys/X11EventReader.h"
#include "platform/qt/hotkeys/X11Keyboard.h"
#include "platform/qt/keys/X11ModifierState.h"
#include "platform/qt/keys/X11RawKeys.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvanta {

/// Key presses on an X display, over a connection of its own. Told from the event loop of the
/// thread that makes it, a held key once however long it is held. A display that dies tells no
/// more.
class X11KeyMonitor final : public KeyMonitor {
public:
    /// Whose presses are told by other ways already. Asked at each press.
    struct Elsewhere {
        /// Whether a window of this program has the keyboard.
        std::function<bool()> hasFocus;
        /// Whether this program has the press as a hot key. `state` as an event tells it.
        std::function<bool(std::uint8_t keycode, std::uint16_t state)> isHotKey;
    };

    /// Null when the display (":0") does not answer, or shows nobody the keys of others.
    [[nodiscard]] static std::unique_ptr<X11KeyMonitor> open(const std::string& display,
                                                             Elsewhere elsewhere);

    void addGlobalMonitor(Handler handler) override;

private:
    /// What an open display has told already.
    struct Display {
        std::unique_ptr<X11Connection> connection;
        X11Keyboard keyboard;
        X11RawKeys rawKeys;
        X11ModifierState modifiers;
    };

    X11KeyMonitor(Display display, Elsewhere elsewhere);

    void handle(const xcb_generic_event_t& event);
    void handleKey(const X11RawKeys::Key& key);
    void adoptKeyboard();

    Display display_;
    const Elsewhere elsewhere_;
    std::vector<Handler> handlers_;
    HeldKeys heldKeys_;
    bool hasKeyboardChanged_ = false;
    X11EventReader events_;
};

} // namespace orvanta
