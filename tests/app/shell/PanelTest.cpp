#include "app/shell/PanelPlace.h"
#include "app/shell/PanelToggle.h"
#include "app/shell/openFromPanel.h"
#include "tests/app/shell/FakeWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

constexpr DesktopRect kScreen{.x = 0, .y = 24, .width = 1280, .height = 776};
constexpr int kWidth = 360;
constexpr int kHeight = 520;

DesktopPoint placeFor(const DesktopRect& icon, const DesktopRect& screen = kScreen) {
    return panelPlace(icon, screen, kWidth, kHeight);
}

TEST(PanelPlace, HangsBelowAnIconAtTheTop) {
    EXPECT_EQ(placeFor({.x = 600, .y = 0, .width = 24, .height = 24}),
              (DesktopPoint{.x = 432, .y = 30}));
}

TEST(PanelPlace, StandsAboveAnIconAtTheBottom) {
    EXPECT_EQ(placeFor({.x = 600, .y = 776, .width = 24, .height = 24}),
              (DesktopPoint{.x = 432, .y = 250}));
}

TEST(PanelPlace, StaysOnTheScreenBesideAnIconInACorner) {
    EXPECT_EQ(placeFor({.x = 1256, .y = 0, .width = 24, .height = 24}).x, 1280 - kWidth - 6);
    EXPECT_EQ(placeFor({.x = 0, .y = 0, .width = 24, .height = 24}).x, 6);
}

TEST(PanelPlace, TakesAPointerForAnIconWithoutASize) {
    EXPECT_EQ(placeFor({.x = 700, .y = 30}), (DesktopPoint{.x = 520, .y = 36}));
}

TEST(PanelPlace, IsOnTheIconsOwnScreen) {
    const DesktopRect second{.x = 1280, .y = 0, .width = 1920, .height = 1080};
    EXPECT_EQ(placeFor({.x = 3170, .y = 0, .width = 24, .height = 24}, second),
              (DesktopPoint{.x = 1280 + 1920 - kWidth - 6, .y = 30}));
}

TEST(PanelPlace, BeginsAtTheStartOfAScreenThatIsTooSmall) {
    EXPECT_EQ(placeFor({.x = 100, .y = 0, .width = 24, .height = 24},
                       {.x = 0, .y = 0, .width = 320, .height = 240}),
              (DesktopPoint{.x = 6, .y = 6}));
}

TEST(PanelToggle, OpensWhatIsClosedAndClosesWhatIsOpen) {
    const PanelToggle toggle;
    EXPECT_TRUE(toggle.isToShow(false, Seconds{0.0}));
    EXPECT_FALSE(toggle.isToShow(true, Seconds{0.0}));
}

TEST(PanelToggle, TakesTheClickThatHasHiddenThePanelForTheOneThatCloses) {
    PanelToggle toggle;
    toggle.hidden(Seconds{10.0});
    EXPECT_FALSE(toggle.isToShow(false, Seconds{10.0}));
    EXPECT_FALSE(toggle.isToShow(false, Seconds{10.25}));
    EXPECT_TRUE(toggle.isToShow(false, Seconds{10.26}));
}

TEST(OpeningFromThePanel, LetsThePanelGiveWayFirst) {
    FakeWindows windows;
    openFromPanel(windows, "about");
    EXPECT_THAT(windows.calls, ElementsAre("close key window", "open about", "activate"));
}

} // namespace
} // namespace orvanta::test
