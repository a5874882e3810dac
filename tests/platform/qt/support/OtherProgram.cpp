#include "tests/platform/qt/support/OtherProgram.h"

#include "tests/support/Waiting.h"

#include <algorithm>
#include <stdexcept>

namespace orvanta::test {

namespace {

constexpr std::uint8_t kEventType = 0x7F;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};

template <class Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

bool isModifier(std::uint32_t keysym) {
    return (keysym >= 0xffe1 && keysym <= 0xffee) || keysym == 0xff7f || keysym == 0xff14;
}

} // namespace

OtherProgram::OtherProgram(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0)
        throw std::runtime_error("the display does not answer");
}

xcb_window_t OtherProgram::root(int screen) const {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    for (; screen > 0; --screen)
        xcb_screen_next(&screens);
    return screens.data->root;
}

bool OtherProgram::openWindow() {
    window_ = xcb_generate_id(connection_.get());
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, root(0), 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_map_window(connection_.get(), window_);
    xcb_flush(connection_.get());
    return eventually(Seconds(20), [this] {
        const ReplyPointer<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
            connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
        return focus && focus->focus == window_;
    });
}

std::vector<std::uint32_t> OtherProgram::takeKeys() {
    std::vector<std::uint8_t> keycodes;
    while (const ReplyPointer<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())})
        if ((event->response_type & kEventType) == XCB_KEY_PRESS)
            keycodes.push_back(reinterpret_cast<const xcb_key_press_event_t&>(*event).detail);
    std::vector<std::uint32_t> keysyms;
    for (const std::uint8_t keycode : keycodes)
        if (const std::uint32_t keysym = keysymsOf(keycode).at(0); !isModifier(keysym))
            keysyms.push_back(keysym);
    return keysyms;
}

std::uint8_t OtherProgram::keycodeOf(std::uint32_t keysym) const {
    const xcb_setup_t* const setup = xcb_get_setup(connection_.get());
    for (unsigned keycode = setup->min_keycode; keycode <= setup->max_keycode; ++keycode)
        if (keysymsOf(static_cast<std::uint8_t>(keycode)).at(0) == keysym)
            return static_cast<std::uint8_t>(keycode);
    return 0;
}

std::vector<std::uint32_t> OtherProgram::keysymsOf(std::uint8_t keycode) const {
    const ReplyPointer<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
        connection_.get(), xcb_get_keyboard_mapping(connection_.get(), keycode, 1), nullptr));
    if (!reply)
        throw std::runtime_error("the display does not tell its keyboard");
    const xcb_keysym_t* const keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
    return {keysyms, keysyms + xcb_get_keyboard_mapping_keysyms_length(reply.get())};
}

bool OtherProgram::grab(std::uint8_t keycode, std::uint16_t state, int screen) {
    const auto cookie = xcb_grab_key_checked(connection_.get(), 0, root(screen), state, keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
    return !error;
}

void OtherProgram::ungrab(std::uint8_t keycode, std::uint16_t state, int screen) {
    const auto cookie = xcb_ungrab_key_checked(connection_.get(), keycode, root(screen), state);
    const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
}

void OtherProgram::setKeysym(std::uint8_t keycode, std::uint32_t keysym) {
    setKeysyms(keycode, {keysym, keysym});
}

void OtherProgram::swapKeys(std::uint8_t one, std::uint8_t other) {
    const auto keysymsOfOne = keysymsOf(one);
    setKeysyms(one, keysymsOf(other));
    setKeysyms(other, keysymsOfOne);
}

void OtherProgram::setKeysyms(std::uint8_t keycode, const std::vector<std::uint32_t>& keysyms) {
    const auto cookie = xcb_change_keyboard_mapping_checked(
        connection_.get(), 1, keycode, static_cast<std::uint8_t>(keysyms.size()), keysyms.data());
    const ReplyPointer<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
    if (error)
        throw std::runtime_error("the display does not take the keyboard");
}

void OtherProgram::setModifier(std::size_t modifier, const std::vector<std::uint8_t>& keycodes) {
    const ReplyPointer<xcb_get_modifier_mapping_reply_t> before(xcb_get_modifier_mapping_reply(
        connection_.get(), xcb_get_modifier_mapping(connection_.get()), nullptr));
    const std::size_t oldWidth = before->keycodes_per_modifier;
    const std::size_t width = std::max(oldWidth, keycodes.size());
    const xcb_keycode_t* const old = xcb_get_modifier_mapping_keycodes(before.get());
    std::vector<xcb_keycode_t> all(8 * width, 0);
    for (std::size_t row = 0; row < 8; ++row)
        for (std::size_t column = 0; column < width; ++column)
            if (row == modifier && column < keycodes.size())
                all[row * width + column] = keycodes[column];
            else if (row != modifier && column < oldWidth)
                all[row * width + column] = old[row * oldWidth + column];
    const ReplyPointer<xcb_set_modifier_mapping_reply_t> answer(xcb_set_modifier_mapping_reply(
        connection_.get(),
        xcb_set_modifier_mapping(connection_.get(), static_cast<std::uint8_t>(width), all.data()),
        nullptr));
    if (!answer || answer->status != XCB_MAPPING_STATUS_SUCCESS)
        throw std::runtime_error("the display does not take the modifiers");
}

} // namespace orvanta::test
