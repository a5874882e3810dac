// What is told of an application, whatever it is known by.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

#include <gmock/gmock.h>

namespace orvanta::test {
namespace {

using ::testing::ElementsAre;

TEST_F(LinuxWorkspaceTest, TellsNameIdentifierIconAndPolicyOfTheEntry) {
    desktop_.install("org.example.Player", "Player", "/usr/bin/player %U",
                     "Name[de]=Abspieler\nIcon=player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    const auto application = desktop_.workspace.runningApplication(100);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->processIdentifier, 100);
    EXPECT_EQ(application->localizedName, "Abspieler");
    EXPECT_EQ(application->bundleIdentifier, "org.example.Player");
    EXPECT_EQ(application->activationPolicy, ActivationPolicy::regular);
    ASSERT_TRUE(application->icon);
    EXPECT_EQ(application->icon->cacheKey(),
              desktop_.workspace.iconForFile(desktop_.entryFile("org.example.Player"))->cacheKey());
}

TEST_F(LinuxWorkspaceTest, TellsWhereAnApplicationIsInstalled) {
    desktop_.install("player", "Player", "player", "Icon=player");
    desktop_.install("plain", "Plain", "plain");
    EXPECT_EQ(desktop_.workspace.urlForApplication("player"), desktop_.entryFile("player"));
    EXPECT_FALSE(desktop_.workspace.urlForApplication("Player"));
    EXPECT_FALSE(desktop_.workspace.iconForFile("/nowhere.desktop"));
    EXPECT_FALSE(desktop_.workspace.iconForFile(desktop_.entryFile("plain")));
    const auto picture = desktop_.folders.dataFolders[0] / "icons/hicolor/48x48/apps/player.png";
    ScriptedProc::write(picture, "picture");
    EXPECT_EQ(desktop_.workspace.iconForFile(desktop_.entryFile("player"))->imageFile(48), picture);
}

TEST_F(LinuxWorkspaceTest, KnowsNothingOfProcessesThatAreNoApplication) {
    proc_.run({.pid = 100, .executable = "/usr/sbin/daemon"});
    EXPECT_EQ(idOf(100), "(none)");
    EXPECT_EQ(idOf(101), "(none)");
    EXPECT_EQ(idOf(-1), "(none)");
    EXPECT_TRUE(listedPIDs().empty());
}

TEST_F(LinuxWorkspaceTest, ListsApplicationsInTheOrderOfTheirStart) {
    desktop_.install("player", "Player", "/usr/bin/player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player", .startTime = 30});
    proc_.run({.pid = 101, .executable = "/usr/bin/player", .startTime = 10});
    proc_.run({.pid = 102, .executable = "/usr/bin/other", .startTime = 5});
    proc_.run({.pid = 103, .executable = "/usr/bin/player", .startTime = 20});
    EXPECT_THAT(listedPIDs(), ElementsAre(101, 103, 100));
}

TEST(LinuxWorkspace, WorksWithoutAnAudioServer) {
    ScriptedDesktop desktop;
    desktop.install("player", "Player", "/usr/bin/player");
    desktop.proc.run({.pid = 100, .executable = "/usr/bin/player"});
    const LinuxWorkspace workspace(desktop.folders, nullptr, desktop.proc.root());
    ASSERT_TRUE(workspace.runningApplication(100));
    EXPECT_EQ(workspace.runningApplication(100)->localizedName, "Player");
}

} // namespace
} // namespace orvanta::test
