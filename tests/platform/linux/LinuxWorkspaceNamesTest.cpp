// Applications of one name, and how they are told apart.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

namespace orvanta::test {
namespace {

TEST_F(LinuxWorkspaceTest, KeepsProgramsOfOneNameApart) {
    proc_.run({.pid = 100, .executable = "/usr/bin/foo"});
    proc_.run({.pid = 101, .executable = "/usr/bin/bar"});
    proc_.run({.pid = 102, .executable = "/usr/bin/bar"});
    desktop_.clients.play({.pid = 101, .name = "Playback"});
    desktop_.clients.play({.pid = 102, .name = "Playback"});
    EXPECT_EQ(nameOf(101), "Playback");
    desktop_.clients.play({.pid = 100, .name = "Playback"});
    EXPECT_EQ(nameOf(100), "Playback (foo)");
    EXPECT_EQ(nameOf(101), "Playback (bar)");
    EXPECT_EQ(nameOf(102), "Playback (bar)");
    desktop_.clients.stop(100);
    EXPECT_EQ(nameOf(101), "Playback");
}

TEST_F(LinuxWorkspaceTest, TellsProgramsOfOneFileNameByTheirPaths) {
    proc_.run({.pid = 100, .executable = "/usr/bin/foo"});
    proc_.run({.pid = 101, .executable = "/opt/foo"});
    proc_.run({.pid = 102, .executable = "/usr/bin/bar"});
    for (const std::int32_t pid : {100, 101, 102})
        desktop_.clients.play({.pid = pid, .name = "Playback"});
    EXPECT_EQ(nameOf(100), "Playback (/usr/bin/foo)");
    EXPECT_EQ(nameOf(101), "Playback (/opt/foo)");
    EXPECT_EQ(nameOf(102), "Playback (bar)");
}

TEST_F(LinuxWorkspaceTest, TellsScriptsOfOneInterpreterApart) {
    std::int32_t pid = 100;
    for (const char* script : {"/home/a/one.py", "/home/a/two.py"}) {
        proc_.run({.pid = pid, .executable = "/usr/bin/python3.11", .arguments = {script}});
        desktop_.clients.play({.pid = pid, .name = "python3.11"});
        ++pid;
    }
    EXPECT_EQ(nameOf(100), "python3.11 (one.py)");
    EXPECT_EQ(nameOf(101), "python3.11 (two.py)");
}

TEST_F(LinuxWorkspaceTest, KeepsEntriesOfOneNameApart) {
    desktop_.install("org.a.Music", "Music", "/usr/bin/a-music");
    desktop_.install("org.b.Music", "Music", "/usr/bin/b-music");
    proc_.run({.pid = 100, .executable = "/usr/bin/a-music"});
    EXPECT_EQ(nameOf(100), "Music");
    proc_.run({.pid = 101, .executable = "/usr/bin/b-music"});
    EXPECT_EQ(nameOf(100), "Music (a-music)");
    EXPECT_EQ(nameOf(101), "Music (b-music)");
}

TEST_F(LinuxWorkspaceTest, LetsAHiddenPartShareItsApplicationsName) {
    desktop_.install("player", "Player", "/usr/bin/player");
    desktop_.install("player-agent", "Player", "/usr/libexec/agent", "NoDisplay=true");
    proc_.run({.pid = 100, .executable = "/usr/bin/player"});
    proc_.run({.pid = 101, .executable = "/usr/libexec/agent"});
    EXPECT_EQ(nameOf(100), "Player");
    EXPECT_EQ(nameOf(101), "Player");
}

} // namespace
} // namespace orvanta::test
