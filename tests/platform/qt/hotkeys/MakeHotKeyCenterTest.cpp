#include "platform/qt/hotkeys/makeHotKeyCenter.h"

#include "core/platform/UnavailableHotKeyCenter.h"
#include "platform/qt/hotkeys/PortalHotKeyCenter.h"
#include "platform/qt/hotkeys/X11HotKeyCenter.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/VirtualDisplay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

/// A display that nobody has.
constexpr auto kNoDisplay = ":987654";

class MadeHotKeyCenter : public testing::Test {
protected:
    template <class Kind>
    bool isMadeFor(const DesktopSession& session) {
        const auto center = makeHotKeyCenter(session, *bus, log);
        return dynamic_cast<Kind*>(center.get()) != nullptr;
    }

    PrivateBus privateBus;
    BusConnection bus{privateBus};
    RecordingLog log;
};

TEST_F(MadeHotKeyCenter, IsThePortalUnderWaylandWhateverXDisplayThereIs) {
    const VirtualDisplay display;
    EXPECT_TRUE(isMadeFor<PortalHotKeyCenter>({.waylandDisplay = "wayland-0"}));
    EXPECT_TRUE(isMadeFor<PortalHotKeyCenter>({.sessionType = "wayland"}));
    EXPECT_TRUE(isMadeFor<PortalHotKeyCenter>(
        {.waylandDisplay = "wayland-0", .sessionType = "x11", .display = display.name()}));
}

TEST_F(MadeHotKeyCenter, IsTheXDisplayThatAnswers) {
    const VirtualDisplay display;
    EXPECT_TRUE(isMadeFor<X11HotKeyCenter>({.display = display.name()}));
    EXPECT_TRUE(isMadeFor<X11HotKeyCenter>({.sessionType = "x11", .display = display.name()}));
}

TEST_F(MadeHotKeyCenter, RefusesEverythingWhereThereIsNeither) {
    EXPECT_TRUE(isMadeFor<UnavailableHotKeyCenter>({}));
    EXPECT_TRUE(isMadeFor<UnavailableHotKeyCenter>({.display = kNoDisplay}));
    const auto center = makeHotKeyCenter({}, *bus, log);
    auto handler = HotKeyCenter::HandlerReference::none;
    EXPECT_NE(center->installHandler([](const HotKeyEvent*) { return noErr; }, handler), noErr);
    EXPECT_EQ(handler, HotKeyCenter::HandlerReference::none);
    auto reference = HotKeyCenter::Reference::none;
    EXPECT_NE(center->registerHotKey(126, 768, {.signature = 1, .id = 1}, reference), noErr);
    EXPECT_EQ(reference, HotKeyCenter::Reference::none);
    center->unregisterHotKey(reference);
    center->removeHandler(handler);
}

TEST(DesktopSessions, AreToldByTheEnvironment) {
    {
        const ScopedEnvironment environment(
            {{"WAYLAND_DISPLAY", "wayland-7"}, {"XDG_SESSION_TYPE", "wayland"}, {"DISPLAY", ":7"}});
        const auto session = DesktopSession::ofEnvironment();
        EXPECT_EQ(session.waylandDisplay, "wayland-7");
        EXPECT_EQ(session.sessionType, "wayland");
        EXPECT_EQ(session.display, ":7");
    }
    const ScopedEnvironment environment({{"WAYLAND_DISPLAY", std::nullopt},
                                         {"XDG_SESSION_TYPE", std::nullopt},
                                         {"DISPLAY", std::nullopt}});
    const auto session = DesktopSession::ofEnvironment();
    EXPECT_EQ(session.waylandDisplay + session.sessionType + session.display, "");
}

} // namespace
} // namespace orvanta::test
