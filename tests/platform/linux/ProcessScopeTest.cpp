#include "platform/linux/processes/ProcessScope.h"

#include "platform/linux/processes/FlatpakInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace orvanta::test {
namespace {

using desktop::parseProcessScope;
using ::testing::Contains;
using ::testing::ElementsAre;

desktop::ProcessScope inUnit(const std::string& unit) {
    return parseProcessScope("0::/user.slice/user@1000.service/app.slice/" + unit + "\n");
}

TEST(ProcessScope, NamesTheApplicationBehindTheLauncher) {
    EXPECT_THAT(inUnit("app-gnome-firefox\\x2desr-4711.scope").applicationIDs,
                ElementsAre("gnome-firefox-esr", "firefox-esr"));
    EXPECT_THAT(inUnit("app-org.kde.elisa-1a2b3c.scope").applicationIDs,
                ElementsAre("org.kde.elisa"));
    EXPECT_THAT(inUnit("app-KDE-org.kde.elisa@1a2b.service").applicationIDs,
                Contains("org.kde.elisa"));
    EXPECT_THAT(inUnit("app-org.kde.elisa.service").applicationIDs, ElementsAre("org.kde.elisa"));
    EXPECT_THAT(inUnit("gnome-launched-player.desktop-4711.scope").applicationIDs,
                ElementsAre("player"));
    EXPECT_THAT(inUnit("dbus-:1.2-org.example.Player@0.service").applicationIDs,
                ElementsAre("org.example.Player"));
}

TEST(ProcessScope, KeepsDashesThatNobodyEscaped) {
    EXPECT_THAT(inUnit("app-gnome-my-own-player-4711.scope").applicationIDs,
                ElementsAre("gnome-my-own-player", "my-own-player", "own-player", "player"));
}

TEST(ProcessScope, NamesSandboxes) {
    EXPECT_EQ(inUnit("app-flatpak-org.example.Player-4711.scope").flatpakID, "org.example.Player");
    EXPECT_EQ(inUnit("flatpak-org.example.Player-4711.scope").flatpakID, "org.example.Player");
    const auto snap = inUnit("snap.player.gui.0a1b-2c3d.scope");
    EXPECT_EQ(snap.snapName, "player");
    EXPECT_EQ(snap.snapApp, "gui");
}

TEST(ProcessScope, NamesASnapsProgramBeforeADashAndRandomID) {
    for (const char* unit : {"snap.player.my-gui-0f47e9f4-3d0b-4b1f-9a53-1d5e0c3ba9d7.scope",
                             "snap.player.my-gui.0f47e9f4-3d0b-4b1f-9a53-1d5e0c3ba9d7.scope",
                             "snap.player.my-gui.scope", "snap.player.my-gui.service"}) {
        EXPECT_EQ(inUnit(unit).snapName, "player") << unit;
        EXPECT_EQ(inUnit(unit).snapApp, "my-gui") << unit;
    }
    // Too short for one.
    EXPECT_EQ(inUnit("snap.player.gui-3d0b-4b1f-9a53.scope").snapApp, "gui-3d0b-4b1f-9a53");
}

TEST(ProcessScope, IsTheInnermostThatNamesOne) {
    EXPECT_THAT(
        parseProcessScope("0::/a/app-x-1.scope/app-y-2.scope/tab(1).scope\n").applicationIDs,
        ElementsAre("y"));
    EXPECT_THAT(parseProcessScope("1:cpu:/\n0::/app-x-1.scope\n").applicationIDs, ElementsAre("x"));
}

TEST(ProcessScope, IsNoneElsewhere) {
    for (const char* text : {"", "0::/", "0::/init.scope", "0::/session-2.scope", "app-x-1.scope",
                             "0::/user@1000.service/session.slice/pipewire.service",
                             "0::/app-x-1.slice", "0::/app-.scope", "0::/snap..scope"})
        EXPECT_EQ(parseProcessScope(text), desktop::ProcessScope{}) << text;
}

TEST(ProcessScope, IsNoneWhereANameIsLongerThanAFolderCanBe) {
    EXPECT_EQ(inUnit("app-" + std::string(60000, '-') + "x-1.scope"), desktop::ProcessScope{});
}

TEST(ProcessScope, LeavesBrokenEscapesAsTheyAre) {
    EXPECT_THAT(inUnit("app-a\\x2g\\x-1.scope").applicationIDs, Contains("a\\x2g\\x"));
}

TEST(ProcessScope, NeverFailsOnArbitraryBytes) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string letters = ":/-@.\\x2dap\n\xFF";
    for (int round = 0; round < 5000; ++round) {
        std::string text = "0::/app-";
        for (auto length = random() % 60; length > 0; --length)
            text += letters[random() % letters.size()];
        for (const std::string& id : parseProcessScope(text + "-1.scope").applicationIDs)
            EXPECT_LE(id.size(), text.size());
    }
}

TEST(FlatpakInfo, NamesTheApplication) {
    EXPECT_EQ(desktop::flatpakIDInInfo("[Application]\nname=org.example.Player\nruntime=r\n"),
              "org.example.Player");
    EXPECT_EQ(desktop::flatpakIDInInfo("[Runtime]\nname=org.example.Player\n"), "");
    EXPECT_EQ(desktop::flatpakIDInInfo("[Application]\nname=\xFF\n"), "");
    EXPECT_EQ(desktop::flatpakIDInInfo(""), "");
}

} // namespace
} // namespace orvanta::test
