#pragma once

#include "core/platform/KeyMonitor.h"
#include "platform/qt/hotkeys/X11Keyboard.h"

#include <cstdint>

namespace orvanta {

/// A press on an X display as NSEvent tells it: Super is command and Alt option, lock keys are no
/// modifiers. The characters are those that the key writes by itself in the first layout, capitals
/// with Caps Lock; none for a key that writes no character, or one that X numbers otherwise than
/// Unicode does. `state` is that of an event.
[[nodiscard]] KeyDownEvent x11KeyDownEvent(const X11Keyboard& keyboard, std::uint8_t keycode,
                                           std::uint16_t state);

} // namespace orvanta
