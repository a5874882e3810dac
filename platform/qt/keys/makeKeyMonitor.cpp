#include "platform/qt/keys/makeKeyMonitor.h"

#include "core/platform/UnavailableKeyMonitor.h"
#include "platform/qt/hotkeys/X11HotKeyCenter.h"
#include "platform/qt/keys/X11KeyMonitor.h"

#include <cstdint>
#include <utility>

namespace orvanta {

std::unique_ptr<KeyMonitor> makeKeyMonitor(const DesktopSession& session,
                                           const HotKeyCenter& hotKeys,
                                           std::function<bool()> hasFocus) {
    if (session.isWayland() || session.display.empty())
        return std::make_unique<UnavailableKeyMonitor>();
    // On a display whose hot keys cannot be had, none is.
    const auto* const center = dynamic_cast<const X11HotKeyCenter*>(&hotKeys);
    auto isHotKey = [center](std::uint8_t keycode, std::uint16_t state) {
        return center != nullptr && center->holds(keycode, state);
    };
    if (auto monitor = X11KeyMonitor::open(
            session.display, {.hasFocus = std::move(hasFocus), .isHotKey = std::move(isHotKey)}))
        return monitor;
    return std::make_unique<UnavailableKeyMonitor>();
}

} // namespace orvanta
