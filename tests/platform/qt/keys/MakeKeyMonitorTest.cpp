#include "platform/qt/keys/makeKeyMonitor.h"

#include "core/platform/UnavailableHotKeyCenter.h"
#include "core/platform/UnavailableKeyMonitor.h"
#include "platform/qt/keys/X11KeyMonitor.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/support/VirtualDisplay.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

class MadeKeyMonitor : public testing::Test {
protected:
    MadeKeyMonitor() { startQt(); }

    template <class Kind>
    bool isMadeFor(const DesktopSession& session) {
        const auto monitor = makeKeyMonitor(session, hotKeys, [] { return false; });
        return dynamic_cast<Kind*>(monitor.get()) != nullptr;
    }

    const UnavailableHotKeyCenter hotKeys;
};

TEST_F(MadeKeyMonitor, IsTheXDisplayThatAnswers) {
    const VirtualDisplay display;
    EXPECT_TRUE(isMadeFor<X11KeyMonitor>({.display = display.name()}));
    EXPECT_TRUE(isMadeFor<X11KeyMonitor>({.sessionType = "x11", .display = display.name()}));
}

TEST_F(MadeKeyMonitor, SeesNothingUnderWaylandWhateverXDisplayThereIs) {
    const VirtualDisplay display;
    EXPECT_TRUE(isMadeFor<UnavailableKeyMonitor>(
        {.waylandDisplay = "wayland-0", .display = display.name()}));
    EXPECT_TRUE(
        isMadeFor<UnavailableKeyMonitor>({.sessionType = "wayland", .display = display.name()}));
}

TEST_F(MadeKeyMonitor, SeesNothingWithoutADisplay) {
    EXPECT_TRUE(isMadeFor<UnavailableKeyMonitor>({}));
    EXPECT_TRUE(isMadeFor<UnavailableKeyMonitor>({.display = ":987654"}));
}

} // namespace
} // namespace orvanta::test
