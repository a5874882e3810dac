#include "platform/qt/keys/X11RawKeys.h"

#include <memory>
#include <xcb/xinput.h>

namespace orvanta {
namespace {

/// Before this version raw events stay away while somebody has grabbed the keyboard.
constexpr std::uint16_t kMajorVersion = 2;
constexpr std::uint16_t kMinorVersion = 1;

struct RawKeySelection {
    xcb_input_event_mask_t head{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
    std::uint32_t mask =
        XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
};

bool hasRawEvents(xcb_connection_t* connection) {
    const std::unique_ptr<xcb_input_xi_query_version_reply_t, X11Connection::Free> version(
        xcb_input_xi_query_version_reply(
            connection, xcb_input_xi_query_version(connection, kMajorVersion, kMinorVersion),
            nullptr));
    return version &&
           (version->major_version > kMajorVersion ||
            (version->major_version == kMajorVersion && version->minor_version >= kMinorVersion));
}

} // namespace

std::optional<X11RawKeys> X11RawKeys::select(const X11Connection& connection) {
    xcb_connection_t* const handle = connection.handle();
    const auto* const extension = xcb_get_extension_data(handle, &xcb_input_id);
    if (extension == nullptr || extension->present == 0 || !hasRawEvents(handle))
        return std::nullopt;
    const RawKeySelection selection;
    for (const xcb_window_t root : connection.roots())
        xcb_input_xi_select_events(handle, root, 1, &selection.head);
    return X11RawKeys(extension->major_opcode);
}

std::optional<X11RawKeys::Key> X11RawKeys::keyOf(const xcb_generic_event_t& event) const {
    if ((event.response_type & X11Connection::kEventType) != XCB_GE_GENERIC)
        return std::nullopt;
    const auto& raw = X11Connection::as<xcb_input_raw_key_press_event_t>(event);
    const bool isPress = raw.event_type == XCB_INPUT_RAW_KEY_PRESS;
    if (raw.extension != extension_ || (!isPress && raw.event_type != XCB_INPUT_RAW_KEY_RELEASE))
        return std::nullopt;
    return Key{
        .isPressed = isPress, .keycode = static_cast<std::uint8_t>(raw.detail), .time = raw.time};
}

} // namespace orvanta
