#include "platform/qt/keys/X11ModifierState.h"

#include "platform/qt/keys/XCBXKB.h"

#include <memory>

namespace orvanta {
namespace {

constexpr xcb_xkb_device_spec_t kKeyboard = XCB_XKB_ID_USE_CORE_KBD;

template <class Reply>
using XKBReply = std::unique_ptr<Reply, X11Connection::Free>;

void selectKeyboardEvents(xcb_connection_t* connection) {
    constexpr std::uint16_t kEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                      XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                      XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t kMapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details{};
    // Of the state the modifiers alone: the pointer's buttons would wake us at every click.
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_MODIFIER_STATE;
    xcb_xkb_select_events_aux(connection, kKeyboard, kEvents, 0,
                              XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY, kMapParts, kMapParts,
                              &details);
}

} // namespace

std::optional<X11ModifierState> X11ModifierState::select(const X11Connection& connection) {
    xcb_connection_t* const handle = connection.handle();
    const auto* const extension = xcb_get_extension_data(handle, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0)
        return std::nullopt;
    const auto versionCookie =
        xcb_xkb_use_extension(handle, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const XKBReply<xcb_xkb_use_extension_reply_t> version(
        xcb_xkb_use_extension_reply(handle, versionCookie, nullptr));
    if (!version || version->supported == 0)
        return std::nullopt;
    // First the changes, then the state: what changes in between is told of.
    selectKeyboardEvents(handle);
    const XKBReply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(handle, xcb_xkb_get_state(handle, kKeyboard), nullptr));
    if (!state)
        return std::nullopt;
    return X11ModifierState(extension->first_event, state->mods);
}

void X11ModifierState::follow(const xcb_generic_event_t& event) {
    const auto& change = X11Connection::as<xcb_xkb_state_notify_event_t>(event);
    if ((event.response_type & X11Connection::kEventType) == eventType_ &&
        change.xkbType == XCB_XKB_STATE_NOTIFY)
        state_ = change.mods;
}

bool X11ModifierState::isKeyboardChange(const xcb_generic_event_t& event) const {
    // All of the extension's events begin alike.
    const auto& change = X11Connection::as<xcb_xkb_state_notify_event_t>(event);
    return (event.response_type & X11Connection::kEventType) == eventType_ &&
           (change.xkbType == XCB_XKB_MAP_NOTIFY || change.xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY);
}

} // namespace orvanta
