#include "platform/qt/hotkeys/X11Connection.h"

#include <utility>

namespace orvanta {
namespace {

template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, X11Connection::Free>;

template <class Work>
void forEachPress(const std::vector<xcb_window_t>& roots, const X11Grab& grab, Work work) {
    for (const xcb_window_t root : roots)
        for (const std::uint8_t keycode : grab.keycodes)
            for (const std::uint16_t state : grab.states)
                work(root, keycode, state);
}

} // namespace

std::unique_ptr<X11Connection> X11Connection::open(const std::string& display) {
    int screen = 0;
    Handle handle(xcb_connect(display.c_str(), &screen));
    if (xcb_connection_has_error(handle.get()) != 0)
        return nullptr;
    return std::unique_ptr<X11Connection>(new X11Connection(std::move(handle), screen));
}

X11Connection::X11Connection(Handle handle, int screenNumber)
    : handle_(std::move(handle)), screen_(static_cast<std::size_t>(screenNumber)) {
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(handle_.get()));
    for (; screen.rem > 0; xcb_screen_next(&screen))
        roots_.push_back(screen.data->root);
}

bool X11Connection::isAlive() const {
    return xcb_connection_has_error(handle_.get()) == 0;
}

int X11Connection::descriptor() const {
    return xcb_get_file_descriptor(handle_.get());
}

X11Connection::Event X11Connection::nextEvent() {
    return Event(xcb_poll_for_event(handle_.get()));
}

std::optional<X11Keyboard> X11Connection::readKeyboard() {
    xcb_connection_t* const connection = handle_.get();
    const xcb_setup_t* const setup = xcb_get_setup(connection);
    const auto keyCount = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    // Both questions first: one way to the display and back.
    const auto keysCookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, keyCount);
    const auto modifiersCookie = xcb_get_modifier_mapping(connection);
    const ReplyPointer<xcb_get_keyboard_mapping_reply_t> keys(
        xcb_get_keyboard_mapping_reply(connection, keysCookie, nullptr));
    const ReplyPointer<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifiersCookie, nullptr));
    if (!keys || !modifiers)
        return std::nullopt;

    X11Keyboard::Mapping mapping{.firstKeycode = setup->min_keycode,
                                 .keysymsPerKeycode = keys->keysyms_per_keycode,
                                 .keysyms = {},
                                 .modifierKeys = {}};
    const xcb_keysym_t* const keysyms = xcb_get_keyboard_mapping_keysyms(keys.get());
    mapping.keysyms.assign(keysyms, keysyms + xcb_get_keyboard_mapping_keysyms_length(keys.get()));
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    for (auto& keysOfOne : mapping.modifierKeys) {
        keysOfOne.assign(keycodes, keycodes + modifiers->keycodes_per_modifier);
        keycodes += modifiers->keycodes_per_modifier;
    }
    return X11Keyboard(std::move(mapping));
}

bool X11Connection::grab(const X11Grab& grab) {
    std::vector<xcb_void_cookie_t> cookies;
    forEachPress(roots_, grab, [&](xcb_window_t root, std::uint8_t keycode, std::uint16_t state) {
        cookies.push_back(xcb_grab_key_checked(handle_.get(), 0, root, state, keycode,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    });
    bool isGranted = true;
    for (const xcb_void_cookie_t cookie : cookies)
        if (const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(handle_.get(), cookie));
            error)
            isGranted = false;
    if (!isGranted)
        ungrab(grab);
    return isGranted && isAlive();
}

void X11Connection::ungrab(const X11Grab& grab) {
    forEachPress(roots_, grab, [&](xcb_window_t root, std::uint8_t keycode, std::uint16_t state) {
        xcb_ungrab_key(handle_.get(), keycode, root, state);
    });
    xcb_flush(handle_.get());
}

} // namespace orvanta
