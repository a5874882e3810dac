// Applications in sandboxes: what a Flatpak or a Snap is known by, and processes that have another
// id inside.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

#include <gmock/gmock.h>

namespace orvanta::test {
namespace {

using ::testing::ElementsAre;

/// The entry of the Flatpak org.example.Player.
void installFlatpak(const ScriptedDesktop& desktop) {
    desktop.install("org.example.Player", "Player", "flatpak run org.example.Player");
}

/// A process of it that has another id inside the sandbox.
void runFlatpak(const ScriptedProc& proc, std::int32_t pid, std::int32_t innermostPID) {
    proc.run({.pid = pid,
              .executable = "/app/bin/player",
              .flatpakID = "org.example.Player",
              .innermostPID = innermostPID});
}

TEST_F(LinuxWorkspaceTest, BelievesAFlatpakBeforeAllElse) {
    installFlatpak(desktop_);
    desktop_.install("other", "Other", "/app/bin/player");
    proc_.run({.pid = 100,
               .executable = "/app/bin/player",
               .unit = "app-other-1.scope",
               .flatpakID = "org.example.Player"});
    desktop_.clients.play({.pid = 100, .applicationID = "other"});
    EXPECT_EQ(idOf(100), "org.example.Player");
}

TEST_F(LinuxWorkspaceTest, FindsAFlatpaksEntryOfAnotherName) {
    desktop_.install("radio", "Radio", "flatpak run org.example.Radio",
                     "X-Flatpak=org.example.Radio");
    proc_.run({.pid = 100, .executable = "/app/bin/x", .flatpakID = "org.example.Radio"});
    EXPECT_EQ(idOf(100), "radio");
}

TEST_F(LinuxWorkspaceTest, KnowsAFlatpakByItsControlGroupWhereItsInfoCannotBeRead) {
    desktop_.install("org.example.Radio", "Radio", "flatpak run org.example.Radio");
    proc_.run(
        {.pid = 100, .executable = "/app/x", .unit = "app-flatpak-org.example.Radio-7.scope"});
    EXPECT_EQ(idOf(100), "org.example.Radio");
}

TEST_F(LinuxWorkspaceTest, FindsTheProcessThatAFlatpakKnowsUnderAnotherID) {
    installFlatpak(desktop_);
    desktop_.install("other", "Other", "/usr/bin/other");
    proc_.run({.pid = 2, .executable = "/usr/bin/other"});
    runFlatpak(proc_, 500, 2);
    EXPECT_EQ(idOf(2), "other");
    desktop_.clients.play({.pid = 2, .name = "x", .applicationID = "org.example.Player"});
    EXPECT_EQ(idOf(2), "org.example.Player");
    EXPECT_EQ(idOf(500), "org.example.Player");
    EXPECT_THAT(listedPIDs(), ElementsAre(500, 2));
}

TEST_F(LinuxWorkspaceTest, FindsAFlatpakWithoutAnEntryUnderItsInnerIDToo) {
    proc_.run({.pid = 500,
               .executable = "/app/bin/tool",
               .flatpakID = "org.example.Tool",
               .innermostPID = 3,
               .name = "tool"});
    desktop_.clients.play({.pid = 3, .applicationID = "org.example.Tool"});
    EXPECT_EQ(nameOf(3), "tool");
}

TEST_F(LinuxWorkspaceTest, BelievesAProcessThatIsOfTheClientsFlatpak) {
    installFlatpak(desktop_);
    runFlatpak(proc_, 500, 2);
    desktop_.clients.play({.pid = 500, .name = "x", .applicationID = "org.example.Player"});
    EXPECT_THAT(listedPIDs(), ElementsAre(500));
}

TEST_F(LinuxWorkspaceTest, BelievesASnapBeforeTheAudioClient) {
    desktop_.install("player_gui", "Player", "/snap/bin/player.gui");
    desktop_.install("other", "Other", "other");
    proc_.run(
        {.pid = 100, .executable = "/snap/player/1/bin/x", .unit = "snap.player.gui.a.scope"});
    desktop_.clients.play({.pid = 100, .applicationID = "other"});
    EXPECT_EQ(idOf(100), "player_gui");
}

TEST_F(LinuxWorkspaceTest, FindsASnapsEntryByTheSnapAlone) {
    desktop_.install("player_main", "Player", "/snap/bin/player", "X-SnapInstanceName=player");
    proc_.run({.pid = 100, .executable = "/snap/x", .unit = "snap.player.helper-1a2b.scope"});
    EXPECT_EQ(idOf(100), "player_main");
}

} // namespace
} // namespace orvanta::test
