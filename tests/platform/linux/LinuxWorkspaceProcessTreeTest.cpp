// Which processes count to an application above them in the process tree.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

#include <string>

namespace orvanta::test {
namespace {

TEST_F(LinuxWorkspaceTest, CountsHelpersToTheirApplication) {
    desktop_.install("browser", "Browser", "/usr/bin/browser", "Icon=browser");
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/browser"});
    proc_.run({.pid = 101, .parent = 100, .session = 50, .executable = "/usr/libexec/sandbox"});
    proc_.run({.pid = 102, .parent = 101, .session = 50, .executable = "/usr/libexec/WebProcess"});
    desktop_.clients.play({.pid = 102, .name = "WebKit WebProcess", .iconName = "web"});
    const auto helper = desktop_.workspace.runningApplication(102);
    ASSERT_TRUE(helper);
    EXPECT_EQ(helper->processIdentifier, 102);
    EXPECT_EQ(helper->localizedName, "Browser");
    EXPECT_EQ(helper->bundleIdentifier, "browser");
    EXPECT_EQ(helper->activationPolicy, ActivationPolicy::regular);
    EXPECT_EQ(helper->icon->cacheKey(),
              desktop_.workspace.runningApplication(100)->icon->cacheKey());
}

TEST_F(LinuxWorkspaceTest, CountsHelpersOfOtherSessionsWhenTheyShareFileOrFolder) {
    desktop_.install("browser", "Browser", "browser");
    desktop_.install("other", "Other", "other");
    const std::string folder = "/opt/browser/";
    proc_.run({.pid = 100, .session = 50, .executable = folder + "browser"});
    proc_.run({.pid = 101, .parent = 100, .session = 51, .executable = folder + "browser"});
    proc_.run({.pid = 102, .parent = 100, .session = 52, .executable = folder + "audio"});
    proc_.run({.pid = 103, .parent = 100, .session = 53, .executable = "/usr/bin/tool"});
    EXPECT_EQ(idOf(101), "browser");
    EXPECT_EQ(idOf(102), "browser");
    EXPECT_EQ(idOf(103), "(none)");
}

TEST_F(LinuxWorkspaceTest, LeavesPlayersStartedInATerminalAlone) {
    desktop_.install("org.example.Terminal", "Terminal", "/usr/bin/terminal",
                     "Categories=System;TerminalEmulator;");
    const std::string unit = "app-gnome-org.example.Terminal-1.scope";
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/terminal", .unit = unit});
    proc_.run(
        {.pid = 101, .parent = 100, .session = 101, .executable = "/usr/bin/bash", .unit = unit});
    proc_.run(
        {.pid = 102, .parent = 101, .session = 101, .executable = "/usr/bin/ffplay", .unit = unit});
    proc_.run(
        {.pid = 103, .parent = 100, .session = 50, .executable = "/usr/bin/ffplay", .unit = unit});
    desktop_.clients.play({.pid = 102, .name = "ffplay"});
    desktop_.clients.play({.pid = 103, .name = "ffplay"});
    EXPECT_EQ(idOf(100), "org.example.Terminal");
    EXPECT_EQ(idOf(101), "(none)");
    EXPECT_EQ(idOf(102), "(no id)");
    EXPECT_EQ(nameOf(102), "ffplay");
    EXPECT_EQ(nameOf(103), "ffplay");
}

TEST_F(LinuxWorkspaceTest, DoesNotCountToTheDesktopWhatItStarts) {
    desktop_.install("shell", "Shell", "/usr/bin/shell", "NoDisplay=true");
    desktop_.install("files", "Files", "/usr/bin/files", "Categories=FileManager;");
    desktop_.install("tui", "Text Files", "/usr/bin/tui", "Terminal=true");
    std::int32_t pid = 100;
    for (const char* starter : {"shell", "files", "tui"}) {
        proc_.run({.pid = pid, .session = 50, .executable = "/usr/bin/" + std::string(starter)});
        proc_.run({.pid = pid + 1, .parent = pid, .session = 50, .executable = "/opt/ffplay"});
        EXPECT_EQ(idOf(pid), starter);
        EXPECT_EQ(idOf(pid + 1), "(none)") << starter;
        pid += 10;
    }
}

TEST_F(LinuxWorkspaceTest, PassesOverTheControlGroupOfWhatMenusDoNotShow) {
    desktop_.install("shell", "Shell", "/usr/bin/shell", "NoDisplay=true");
    const std::string unit = "app-shell-1.scope";
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/shell", .unit = unit});
    proc_.run(
        {.pid = 101, .parent = 100, .session = 50, .executable = "/usr/bin/ffplay", .unit = unit});
    desktop_.clients.play({.pid = 101, .name = "ffplay"});
    EXPECT_EQ(idOf(100), "shell");
    EXPECT_EQ(nameOf(101), "ffplay");
}

TEST_F(LinuxWorkspaceTest, AsksTheNearestApplicationAboveOnly) {
    desktop_.install("launcher", "Launcher", "/usr/bin/launcher");
    desktop_.install("terminal", "Terminal", "/usr/bin/terminal", "Categories=TerminalEmulator;");
    proc_.run({.pid = 100, .session = 50, .executable = "/usr/bin/launcher"});
    proc_.run({.pid = 101, .parent = 100, .session = 50, .executable = "/usr/bin/terminal"});
    proc_.run({.pid = 102, .parent = 101, .session = 50, .executable = "/usr/bin/ffplay"});
    EXPECT_EQ(idOf(102), "(none)");
}

TEST_F(LinuxWorkspaceTest, NeverCountsToTheFirstProcess) {
    desktop_.install("init", "Init", "/sbin/init");
    proc_.run({.pid = 1, .parent = 0, .session = 1, .executable = "/sbin/init"});
    proc_.run({.pid = 100, .parent = 1, .session = 1, .executable = "/sbin/init"});
    proc_.run({.pid = 101, .parent = 1, .session = 1, .executable = "/usr/bin/ffplay"});
    EXPECT_EQ(idOf(101), "(none)");
}

TEST_F(LinuxWorkspaceTest, BearsALoopOfParents) {
    proc_.run({.pid = 100, .parent = 101, .executable = "/a"});
    proc_.run({.pid = 101, .parent = 100, .executable = "/b"});
    EXPECT_EQ(idOf(100), "(none)");
}

} // namespace
} // namespace orvanta::test
