#pragma once

#include "platform/qt/desktop/BusTray.h"
#include "platform/qt/desktop/X11Tray.h"
#include "platform/qt/hotkeys/makeHotKeyCenter.h"

#include <QDBusConnection>
#include <functional>
#include <memory>
#include <optional>

namespace orvanta {

/// Whether this session has a tray to put an icon into, and when one comes or goes. The toolkit
/// looks once and finds no tray that appears later, so its icon is to be made when there is one.
/// Waits for announcements and never polls. Belongs to the thread that makes it, in which an event
/// loop must run.
class TrayWatch {
public:
    /// `changed` is called from the event loop once it is known whether there is one, and then
    /// whenever that has become another; it must not end the watch.
    TrayWatch(const DesktopSession& session, QDBusConnection sessionBus,
              std::function<void(bool isThere)> changed);
    TrayWatch(const TrayWatch&) = delete;
    TrayWatch& operator=(const TrayWatch&) = delete;
    ~TrayWatch() = default;

    /// Nothing for as long as it is not known.
    [[nodiscard]] std::optional<bool> isThere() const { return isThere_; }

private:
    void look();

    const std::function<void(bool)> changed_;
    std::optional<bool> isThere_;
    /// Null where windows cannot be icons: under Wayland, and without a display.
    const std::unique_ptr<X11Tray> display_;
    const BusTray bus_;
};

} // namespace orvanta
