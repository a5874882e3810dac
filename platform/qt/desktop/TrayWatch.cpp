#include "platform/qt/desktop/TrayWatch.h"

#include <utility>

namespace orvanta {

TrayWatch::TrayWatch(const DesktopSession& session, QDBusConnection sessionBus,
                     std::function<void(bool)> changed)
    : changed_(std::move(changed)),
      display_(session.isWayland() || session.display.empty()
                   ? nullptr
                   : X11Tray::open(session.display, [this] { look(); })),
      bus_(std::move(sessionBus), [this] { look(); }) {}

void TrayWatch::look() {
    const bool isOnDisplay = display_ != nullptr && display_->isThere();
    // The display has answered already; the bus may still be asked.
    if (!isOnDisplay && !bus_.isThere())
        return;
    const bool isThere = isOnDisplay || *bus_.isThere();
    if (std::exchange(isThere_, isThere) != isThere)
        changed_(isThere);
}

} // namespace orvanta
