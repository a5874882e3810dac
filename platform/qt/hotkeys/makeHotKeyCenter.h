#pragma once

#include "core/platform/HotKeyCenter.h"
#include "core/platform/SystemLog.h"
#include "platform/qt/hotkeys/KeyCombination.h"

#include <QDBusConnection>
#include <memory>
#include <string>

namespace orvanta {

/// What a session tells its programs about itself in their environment; empty where it does not.
struct DesktopSession {
    std::string waylandDisplay = {}; ///< WAYLAND_DISPLAY
    std::string sessionType = {};    ///< XDG_SESSION_TYPE
    std::string display = {};        ///< DISPLAY

    /// An X display, if there is one too, shows what X programs are shown only.
    [[nodiscard]] bool isWayland() const {
        return !waylandDisplay.empty() || sessionType == "wayland";
    }

    [[nodiscard]] static DesktopSession ofEnvironment();
};

/// The way to hot keys that this session has: the portal under Wayland, where grabs would reach X
/// programs only; else the X display that answers; else one that refuses everything. To be used on
/// the calling thread, in which an event loop must run. `bus` is used under Wayland only; `log`
/// must outlive the center.
[[nodiscard]] std::unique_ptr<HotKeyCenter> makeHotKeyCenter(const DesktopSession& session,
                                                             const QDBusConnection& bus,
                                                             SystemLog& log,
                                                             HotKeyDescriptions descriptions = {});

} // namespace orvanta
