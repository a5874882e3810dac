// Which sign of a process's application counts where the audio client, the control group and the
// file it runs tell different things.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

namespace orvanta::test {
namespace {

TEST_F(LinuxWorkspaceTest, BelievesTheAudioClientBeforeTheControlGroup) {
    desktop_.install("org.example.Player", "Player", "player");
    desktop_.install("other", "Other", "/usr/bin/x");
    proc_.run({.pid = 100, .executable = "/usr/bin/x", .unit = "app-other-1.scope"});
    EXPECT_EQ(idOf(100), "other");
    for (const char* id :
         {"org.example.Player", "org.example.player", "org.example.Player.desktop"}) {
        desktop_.clients.play({.pid = 100, .applicationID = id});
        EXPECT_EQ(idOf(100), "org.example.Player") << id;
    }
    desktop_.clients.play({.pid = 100, .applicationID = "org.unknown.App"});
    EXPECT_EQ(idOf(100), "other");
}

TEST_F(LinuxWorkspaceTest, KnowsAnEntryByTheLastPartOfTheClientsID) {
    desktop_.install("player", "Player", "unrelated");
    proc_.run({.pid = 100, .executable = "/usr/bin/x"});
    desktop_.clients.play({.pid = 100, .applicationID = "org.example.Player"});
    EXPECT_EQ(idOf(100), "player");
}

TEST_F(LinuxWorkspaceTest, CountsAllProcessesOfAControlGroup) {
    desktop_.install("player", "Player", "player");
    proc_.run(
        {.pid = 100, .executable = "/usr/libexec/helper", .unit = "app-gnome-player-1.scope"});
    EXPECT_EQ(idOf(100), "player");
    EXPECT_EQ(nameOf(100), "Player");
}

TEST_F(LinuxWorkspaceTest, BelievesAnotherApplicationsFileBeforeTheControlGroup) {
    desktop_.install("editor", "Editor", "/usr/bin/editor");
    desktop_.install("player", "Player", "/usr/bin/player");
    proc_.run({.pid = 100, .executable = "/usr/bin/player", .unit = "app-editor-1.scope"});
    EXPECT_EQ(idOf(100), "player");
}

TEST_F(LinuxWorkspaceTest, BelievesTheControlGroupAmongEntriesOfOneFile) {
    desktop_.install("browser", "Browser", "/usr/bin/browser");
    desktop_.install("browser-music", "Music", "/usr/bin/browser --app=music");
    proc_.run(
        {.pid = 100, .executable = "/usr/bin/browser", .unit = "app-browser\\x2dmusic-1.scope"});
    proc_.run({.pid = 101, .executable = "/usr/bin/browser"});
    EXPECT_EQ(idOf(100), "browser-music");
    EXPECT_EQ(idOf(101), "browser");
}

TEST_F(LinuxWorkspaceTest, BelievesTheControlGroupOfAHiddenEntryWhoseFileTheProcessRuns) {
    desktop_.install("agent", "Agent", "/usr/bin/agent", "NoDisplay=true");
    desktop_.install("agent-mail", "Mail Agent", "/usr/bin/agent --mail", "NoDisplay=true");
    proc_.run({.pid = 100, .executable = "/usr/bin/agent", .unit = "app-agent\\x2dmail-1.scope"});
    EXPECT_EQ(idOf(100), "agent-mail");
}

} // namespace
} // namespace orvanta::test
