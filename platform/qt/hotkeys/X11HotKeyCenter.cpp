#include "platform/qt/hotkeys/X11HotKeyCenter.h"

#include <algorithm>
#include <utility>

namespace orvanta {

std::unique_ptr<X11HotKeyCenter> X11HotKeyCenter::open(const std::string& display) {
    auto connection = X11Connection::open(display);
    if (connection == nullptr)
        return nullptr;
    auto keyboard = connection->readKeyboard();
    if (!keyboard)
        return nullptr;
    return std::unique_ptr<X11HotKeyCenter>(
        new X11HotKeyCenter(std::move(connection), std::move(*keyboard)));
}

X11HotKeyCenter::X11HotKeyCenter(std::unique_ptr<X11Connection> connection, X11Keyboard keyboard)
    : connection_(std::move(connection)),
      keyboard_(std::move(keyboard)),
      events_(
          *connection_, [this](const xcb_generic_event_t& event) { handle(event); },
          [this] {
              if (std::exchange(hasKeyboardChanged_, false))
                  adoptKeyboard();
          }) {}

OSStatus X11HotKeyCenter::installHandler(Handler handler, HandlerReference& outReference) {
    outReference = handlers_.add(std::move(handler));
    return noErr;
}

void X11HotKeyCenter::removeHandler(HandlerReference reference) {
    handlers_.remove(reference);
}

OSStatus X11HotKeyCenter::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                         const HotKeyID& id, Reference& outReference) {
    if (!connection_->isAlive())
        return eventInternalErr;
    const KeyCombination combination{keyCode, modifiers};
    const auto grab = keyboard_.grabFor(combination);
    if (!grab)
        return eventHotKeyInvalidErr;
    if (isOwn(*grab))
        return eventHotKeyExistsErr;
    const bool isGranted = connection_->grab(*grab);
    events_.readSoon();
    if (!connection_->isAlive())
        return eventInternalErr;
    if (!isGranted)
        return eventHotKeyExistsErr;
    outReference = Reference{++lastReference_};
    hotKeys_.emplace(outReference, HotKey{combination, id, grab});
    return noErr;
}

void X11HotKeyCenter::unregisterHotKey(Reference reference) {
    const auto hotKey = hotKeys_.extract(reference);
    if (hotKey && hotKey.mapped().grab)
        connection_->ungrab(*hotKey.mapped().grab);
}

bool X11HotKeyCenter::holds(std::uint8_t keycode, std::uint16_t state) const {
    return std::any_of(hotKeys_.begin(), hotKeys_.end(), [&](const auto& each) {
        return each.second.grab && each.second.grab->covers(keycode, state);
    });
}

/// The display would let one program grab the same keys twice, and drop both together.
bool X11HotKeyCenter::isOwn(const X11Grab& grab) const {
    return std::any_of(hotKeys_.begin(), hotKeys_.end(), [&](const auto& each) {
        return each.second.grab && each.second.grab->overlaps(grab);
    });
}

void X11HotKeyCenter::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & X11Connection::kEventType) {
    case XCB_KEY_PRESS:
        handlePress(X11Connection::as<xcb_key_press_event_t>(event));
        break;
    case XCB_KEY_RELEASE: {
        const auto& release = X11Connection::as<xcb_key_release_event_t>(event);
        heldKeys_.release(release.detail, release.time);
        break;
    }
    case XCB_MAPPING_NOTIFY:
        if (X11Connection::as<xcb_mapping_notify_event_t>(event).request != XCB_MAPPING_POINTER)
            hasKeyboardChanged_ = true;
        break;
    default:
        break;
    }
}

void X11HotKeyCenter::handlePress(const xcb_key_press_event_t& event) {
    if (!heldKeys_.press(event.detail, event.time))
        return;
    for (const auto& [reference, hotKey] : hotKeys_)
        if (hotKey.grab && hotKey.grab->covers(event.detail, event.state)) {
            handlers_.tell(hotKey.id);
            return;
        }
}

/// Keys have changed places, or modifiers their meaning.
void X11HotKeyCenter::adoptKeyboard() {
    auto keyboard = connection_->readKeyboard();
    events_.readSoon();
    if (!keyboard)
        return;
    keyboard_ = std::move(*keyboard);
    // What one combination leaves may be what another one wants.
    for (auto& [reference, hotKey] : hotKeys_)
        if (hotKey.grab && hotKey.grab != keyboard_.grabFor(hotKey.combination)) {
            connection_->ungrab(*hotKey.grab);
            hotKey.grab.reset();
        }
    for (auto& [reference, hotKey] : hotKeys_) {
        const auto wanted = keyboard_.grabFor(hotKey.combination);
        if (!hotKey.grab && wanted && !isOwn(*wanted) && connection_->grab(*wanted))
            hotKey.grab = wanted;
    }
}

} // namespace orvanta
