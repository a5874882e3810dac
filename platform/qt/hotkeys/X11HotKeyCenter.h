#pragma once

#include "core/platform/HotKeyCenter.h"
#include "platform/qt/hotkeys/HeldKeys.h"
#include "platform/qt/hotkeys/HotKeyHandlers.h"
#include "platform/qt/hotkeys/KeyCombination.h"
#include "platform/qt/hotkeys/X11Connection.h"
#include "platform/qt/hotkeys/X11EventReader.h"
#include "platform/qt/hotkeys/X11Keyboard.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace orvanta {

/// Hot keys as grabs on an X display, over a connection of its own. Presses are told from the event
/// loop of the thread that makes it, which is also the one for its operations.
class X11HotKeyCenter final : public HotKeyCenter {
public:
    /// Null when the display (":0") does not answer.
    [[nodiscard]] static std::unique_ptr<X11HotKeyCenter> open(const std::string& display);

    OSStatus installHandler(Handler handler, HandlerReference& outReference) override;
    void removeHandler(HandlerReference reference) override;

    /// `eventHotKeyExistsErr` when this or another program has the combination with any state of
    /// the lock keys, `eventHotKeyInvalidErr` when the keyboard cannot write it, `eventInternalErr`
    /// when the display has died.
    OSStatus registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, const HotKeyID& id,
                            Reference& outReference) override;
    void unregisterHotKey(Reference reference) override;

    /// Whether a press is one of its hot keys. `state` as an event tells it.
    [[nodiscard]] bool holds(std::uint8_t keycode, std::uint16_t state) const;

private:
    struct HotKey {
        KeyCombination combination;
        HotKeyID id;
        /// Nothing while the keyboard, changed since, lacks the combination or another program has
        /// it there.
        std::optional<X11Grab> grab;
    };

    X11HotKeyCenter(std::unique_ptr<X11Connection> connection, X11Keyboard keyboard);

    [[nodiscard]] bool isOwn(const X11Grab& grab) const;
    void handle(const xcb_generic_event_t& event);
    void handlePress(const xcb_key_press_event_t& event);
    void adoptKeyboard();

    const std::unique_ptr<X11Connection> connection_;
    X11Keyboard keyboard_;
    HotKeyHandlers handlers_;
    std::map<Reference, HotKey> hotKeys_;
    std::uint64_t lastReference_ = 0;
    HeldKeys heldKeys_;
    bool hasKeyboardChanged_ = false;
    X11EventReader events_;
};

} // namespace orvanta
