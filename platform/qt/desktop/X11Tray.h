#pragma once

#include "platform/qt/hotkeys/X11Connection.h"
#include "platform/qt/hotkeys/X11EventReader.h"

#include <functional>
#include <memory>
#include <string>

namespace orvanta {

/// Whether a tray takes windows as icons on an X display: somebody owns the selection that stands
/// for it. Over a connection of its own, from the event loop of the thread that makes it.
class X11Tray {
public:
    /// `changed` is called when one has come or gone; for one that is there already, too. Null when
    /// the display (":0") does not answer.
    [[nodiscard]] static std::unique_ptr<X11Tray> open(const std::string& display,
                                                       std::function<void()> changed);

    [[nodiscard]] bool isThere() const { return owner_ != XCB_WINDOW_NONE; }

private:
    struct Names {
        xcb_atom_t selection = XCB_ATOM_NONE;
        xcb_atom_t manager = XCB_ATOM_NONE;
    };

    X11Tray(std::unique_ptr<X11Connection> connection, const Names& names,
            std::function<void()> changed);

    void handle(const xcb_generic_event_t& event);
    void tellOfChange();
    /// Finds the owner and looks out for its end.
    [[nodiscard]] xcb_window_t findOwner();
    [[nodiscard]] bool followWindow(xcb_window_t window);

    const std::unique_ptr<X11Connection> connection_;
    const Names names_;
    const std::function<void()> changed_;
    xcb_window_t owner_ = XCB_WINDOW_NONE;
    /// What was told last.
    bool wasThere_ = false;
    X11EventReader events_;
};

} // namespace orvanta
