// Programs that the audio server knows as players: without an entry, hidden, or not to be seen.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

#include <gmock/gmock.h>

#include <string>

namespace orvanta::test {
namespace {

TEST_F(LinuxWorkspaceTest, ListsAPlayerWithoutAnEntryUnderTheNameItGives) {
    proc_.run({.pid = 100, .executable = "/usr/bin/ffplay", .name = "ffplay"});
    desktop_.clients.play(
        {.pid = 100, .name = "FFplay", .iconName = "audio-player", .binary = "ffplay"});
    const auto application = desktop_.workspace.runningApplication(100);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->localizedName, "FFplay");
    EXPECT_FALSE(application->bundleIdentifier);
    EXPECT_EQ(application->activationPolicy, ActivationPolicy::regular);
    EXPECT_THAT(application->icon->cacheKey(), ::testing::HasSubstr("audio-player"));
}

TEST_F(LinuxWorkspaceTest, OpensNoFileThatAClientNamesAsItsIcon) {
    const auto picture = desktop_.directory.path() / "private.png";
    ScriptedProc::write(picture, "picture");
    for (const std::string& icon :
         {picture.string(), std::string("../private"), std::string("..")}) {
        desktop_.clients.play({.pid = 100, .name = "x", .iconName = icon});
        desktop_.nextPass();
        EXPECT_FALSE(desktop_.workspace.runningApplication(100)->icon) << icon;
    }
}

TEST_F(LinuxWorkspaceTest, TakesTheFirstNameThatCanBeShown) {
    proc_.run({.pid = 100, .executable = "/usr/bin/ffplay", .name = "short"});
    desktop_.clients.play({.pid = 100, .name = "\xFF", .binary = "binary"});
    EXPECT_EQ(nameOf(100), "binary");
    desktop_.clients.play({.pid = 100, .name = "", .binary = "a\nb"});
    EXPECT_EQ(nameOf(100), "short");
    proc_.run({.pid = 100, .executable = "/usr/bin/ffplay", .name = ""});
    EXPECT_EQ(nameOf(100), "(none)");
}

TEST_F(LinuxWorkspaceTest, ListsAClientWhoseProcessCannotBeSeen) {
    desktop_.install("org.example.Player", "Player", "player");
    desktop_.clients.play({.pid = 4711, .name = "Radio"});
    desktop_.clients.play({.pid = 4712, .name = "x", .applicationID = "org.example.Player"});
    EXPECT_EQ(nameOf(4711), "Radio");
    EXPECT_EQ(nameOf(4712), "Player");
}

TEST_F(LinuxWorkspaceTest, MixesHiddenEntriesOnlyWhenTheyPlay) {
    desktop_.install("agent", "Agent", "/usr/bin/agent", "NoDisplay=true");
    proc_.run({.pid = 100, .executable = "/usr/bin/agent"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->activationPolicy,
              ActivationPolicy::accessory);
    desktop_.clients.play({.pid = 100, .name = "agent"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->activationPolicy,
              ActivationPolicy::regular);
}

} // namespace
} // namespace orvanta::test
