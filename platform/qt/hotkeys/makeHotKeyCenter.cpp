#include "platform/qt/hotkeys/makeHotKeyCenter.h"

#include "core/platform/UnavailableHotKeyCenter.h"
#include "platform/qt/hotkeys/PortalHotKeyCenter.h"
#include "platform/qt/hotkeys/X11HotKeyCenter.h"

#include <cstdlib>
#include <utility>

namespace orvanta {
namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace

DesktopSession DesktopSession::ofEnvironment() {
    return {.waylandDisplay = variable("WAYLAND_DISPLAY"),
            .sessionType = variable("XDG_SESSION_TYPE"),
            .display = variable("DISPLAY")};
}

std::unique_ptr<HotKeyCenter> makeHotKeyCenter(const DesktopSession& session,
                                               const QDBusConnection& bus, SystemLog& log,
                                               HotKeyDescriptions descriptions) {
    if (session.isWayland())
        return std::make_unique<PortalHotKeyCenter>(bus, log, std::move(descriptions));
    if (!session.display.empty())
        if (auto center = X11HotKeyCenter::open(session.display))
            return center;
    return std::make_unique<UnavailableHotKeyCenter>();
}

} // namespace orvanta
