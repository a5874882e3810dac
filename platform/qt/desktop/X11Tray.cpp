#include "platform/qt/desktop/X11Tray.h"

#include <cstdint>
#include <string_view>
#include <utility>

namespace orvanta {
namespace {

xcb_intern_atom_cookie_t askAtom(xcb_connection_t* connection, std::string_view name) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

/// None when the display has died.
xcb_atom_t atomOf(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
    const std::unique_ptr<xcb_intern_atom_reply_t, X11Connection::Free> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

std::unique_ptr<X11Tray> X11Tray::open(const std::string& display, std::function<void()> changed) {
    auto connection = X11Connection::open(display);
    if (connection == nullptr)
        return nullptr;
    xcb_connection_t* const handle = connection->handle();
    const auto selection =
        askAtom(handle, "_NET_SYSTEM_TRAY_S" + std::to_string(connection->screen()));
    const auto manager = askAtom(handle, "MANAGER");
    const Names names{.selection = atomOf(handle, selection), .manager = atomOf(handle, manager)};
    if (names.selection == XCB_ATOM_NONE || names.manager == XCB_ATOM_NONE)
        return nullptr;
    return std::unique_ptr<X11Tray>(new X11Tray(std::move(connection), names, std::move(changed)));
}

X11Tray::X11Tray(std::unique_ptr<X11Connection> connection, const Names& names,
                 std::function<void()> changed)
    : connection_(std::move(connection)),
      names_(names),
      changed_(std::move(changed)),
      events_(
          *connection_, [this](const xcb_generic_event_t& event) { handle(event); },
          [this] { tellOfChange(); }) {
    // Whoever becomes the tray says so to those who look at the root window. First that, then the
    // question: who comes in between is heard of.
    static_cast<void>(followWindow(connection_->roots().at(connection_->screen())));
    owner_ = findOwner();
}

void X11Tray::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type & X11Connection::kEventType;
    if (type == XCB_CLIENT_MESSAGE) {
        const auto& message = X11Connection::as<xcb_client_message_event_t>(event);
        if (message.type == names_.manager && message.data.data32[1] == names_.selection)
            owner_ = findOwner();
    } else if (type == XCB_DESTROY_NOTIFY) {
        if (X11Connection::as<xcb_destroy_notify_event_t>(event).window == owner_)
            owner_ = findOwner();
    }
}

void X11Tray::tellOfChange() {
    if (!connection_->isAlive())
        owner_ = XCB_WINDOW_NONE;
    if (std::exchange(wasThere_, isThere()) != isThere())
        changed_();
}

xcb_window_t X11Tray::findOwner() {
    xcb_connection_t* const handle = connection_->handle();
    events_.readSoon();
    while (true) {
        const std::unique_ptr<xcb_get_selection_owner_reply_t, X11Connection::Free> reply(
            xcb_get_selection_owner_reply(handle, xcb_get_selection_owner(handle, names_.selection),
                                          nullptr));
        if (!reply || reply->owner == XCB_WINDOW_NONE)
            return XCB_WINDOW_NONE;
        // One that goes before it can be followed owns nothing any more.
        if (followWindow(reply->owner))
            return reply->owner;
    }
}

bool X11Tray::followWindow(xcb_window_t window) {
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto cookie = xcb_change_window_attributes_checked(connection_->handle(), window,
                                                             XCB_CW_EVENT_MASK, &events);
    const std::unique_ptr<xcb_generic_error_t, X11Connection::Free> error(
        xcb_request_check(connection_->handle(), cookie));
    return !error;
}

} // namespace orvanta
