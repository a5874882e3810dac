#include "platform/qt/keys/X11KeyMonitor.h"

#include "platform/qt/keys/X11KeyDownEvent.h"

#include <optional>
#include <utility>

namespace orvanta {

std::unique_ptr<X11KeyMonitor> X11KeyMonitor::open(const std::string& display,
                                                   Elsewhere elsewhere) {
    auto connection = X11Connection::open(display);
    if (connection == nullptr)
        return nullptr;
    const auto modifiers = X11ModifierState::select(*connection);
    const auto rawKeys = X11RawKeys::select(*connection);
    auto keyboard = connection->readKeyboard();
    if (!modifiers || !rawKeys || !keyboard)
        return nullptr;
    return std::unique_ptr<X11KeyMonitor>(new X11KeyMonitor({.connection = std::move(connection),
                                                             .keyboard = std::move(*keyboard),
                                                             .rawKeys = *rawKeys,
                                                             .modifiers = *modifiers},
                                                            std::move(elsewhere)));
}

X11KeyMonitor::X11KeyMonitor(Display display, Elsewhere elsewhere)
    : display_(std::move(display)),
      elsewhere_(std::move(elsewhere)),
      events_(
          *display_.connection, [this](const xcb_generic_event_t& event) { handle(event); },
          [this] {
              if (std::exchange(hasKeyboardChanged_, false))
                  adoptKeyboard();
          }) {}

void X11KeyMonitor::addGlobalMonitor(Handler handler) {
    handlers_.push_back(std::move(handler));
}

/// The display tells of a key before it tells what the key does to the modifiers.
void X11KeyMonitor::handle(const xcb_generic_event_t& event) {
    display_.modifiers.follow(event);
    if (display_.modifiers.isKeyboardChange(event))
        hasKeyboardChanged_ = true;
    if (const auto key = display_.rawKeys.keyOf(event))
        handleKey(*key);
}

void X11KeyMonitor::handleKey(const X11RawKeys::Key& key) {
    if (!key.isPressed) {
        heldKeys_.release(key.keycode, key.time);
        return;
    }
    const std::uint16_t state = display_.modifiers.state();
    if (!heldKeys_.press(key.keycode, key.time) || elsewhere_.hasFocus() ||
        elsewhere_.isHotKey(key.keycode, state))
        return;
    const KeyDownEvent event = x11KeyDownEvent(display_.keyboard, key.keycode, state);
    for (const Handler& handler : handlers_)
        handler(event);
}

void X11KeyMonitor::adoptKeyboard() {
    if (auto keyboard = display_.connection->readKeyboard())
        display_.keyboard = std::move(*keyboard);
    events_.readSoon();
}

} // namespace orvanta
