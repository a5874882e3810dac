#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedProcessTable.h"
#include "platform/embedded/EmbeddedWorkspace.h"

#include <gmock/gmock.h>

namespace orvanta::embedded {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::Optional;

class EmbeddedDesktop : public testing::Test {
protected:
    EmbeddedAudioServer server;
    EmbeddedProcessTable processes{server};
    EmbeddedWorkspace workspace{server};

    /// Key of an installed application's icon.
    [[nodiscard]] std::string installedIcon(const std::string& bundleIdentifier) const {
        const auto place = workspace.urlForApplication(bundleIdentifier);
        return place ? workspace.iconForFile(*place)->cacheKey() : "none";
    }
};

TEST_F(EmbeddedDesktop, ProgramsAreProcessesAndApplications) {
    server.addProgram({.pid = 100,
                       .name = "A Player With A Long Name",
                       .bundleIdentifier = "org.example.player",
                       .parent = 50,
                       .path = "/opt/player"});

    EXPECT_THAT(processes.name(100), Optional(Eq("A Player With A ")));
    EXPECT_THAT(processes.path(100), Optional(Eq("/opt/player")));
    EXPECT_THAT(processes.parent(100), Optional(50));
    const auto application = workspace.runningApplication(100);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->processIdentifier, 100);
    EXPECT_EQ(application->localizedName, "A Player With A Long Name");
    EXPECT_EQ(application->bundleIdentifier, "org.example.player");
    EXPECT_EQ(application->activationPolicy, ActivationPolicy::regular);
    EXPECT_EQ(application->icon->cacheKey(), "org.example.player");
    EXPECT_EQ(installedIcon("org.example.player"), "org.example.player");
}

TEST_F(EmbeddedDesktop, UnknownProcessesAreNothing) {
    EXPECT_FALSE(processes.name(5));
    EXPECT_FALSE(processes.path(5));
    EXPECT_FALSE(processes.parent(5));
    EXPECT_FALSE(workspace.runningApplication(5));
    EXPECT_EQ(installedIcon("org.example.nothing"), "none");
    EXPECT_EQ(workspace.iconForFile("/usr/bin/nothing"), nullptr);
}

TEST_F(EmbeddedDesktop, APolicyOfNoneMakesAProgramNoApplication) {
    server.addProgram({.pid = 100,
                       .name = "daemon",
                       .bundleIdentifier = "org.example.daemon",
                       .policy = std::nullopt});
    EXPECT_FALSE(workspace.runningApplication(100));
    EXPECT_EQ(installedIcon("org.example.daemon"), "none");
    EXPECT_THAT(processes.name(100), Optional(Eq("daemon")));
}

TEST_F(EmbeddedDesktop, AnIconThatIsSetStandsForTheApplicationEverywhere) {
    server.addProgram({.pid = 100, .name = "Player", .bundleIdentifier = "org.example.player"});
    server.addProgram({.pid = 101, .name = "Other", .bundleIdentifier = "org.example.other"});
    const auto icon = std::make_shared<EmbeddedIcon>("a painted one");
    workspace.setIcon("org.example.player", icon);
    EXPECT_EQ(workspace.runningApplication(100)->icon, icon);
    EXPECT_EQ(workspace.runningApplications().front().icon, icon);
    EXPECT_EQ(installedIcon("org.example.player"), "a painted one");
    EXPECT_EQ(installedIcon("org.example.other"), "org.example.other");
}

TEST_F(EmbeddedDesktop, AnExitTakesTheProgramOffTheDesktop) {
    const auto player = server.addProgram({.pid = 100, .name = "Player"});
    server.exitProgram(player);
    EXPECT_FALSE(workspace.runningApplication(100));
    EXPECT_FALSE(processes.name(100));
}

TEST_F(EmbeddedDesktop, AScriptMayAddProcessesAndStandInForThem) {
    server.addProgram({.pid = 100, .name = "Player"});
    processes.set(50, {.name = "shell", .path = std::nullopt, .parent = 1});
    processes.set(100, {.name = "", .path = "/opt/other", .parent = std::nullopt});
    EXPECT_THAT(processes.name(50), Optional(Eq("shell")));
    EXPECT_FALSE(processes.name(100));
    EXPECT_FALSE(processes.parent(100));
    processes.unset(100);
    EXPECT_THAT(processes.name(100), Optional(Eq("Player")));
}

TEST_F(EmbeddedDesktop, AProcessUsesWhatAScriptSaysAndElseNothingIsKnownOfIt) {
    server.addProgram({.pid = 100, .name = "Player"});
    EXPECT_FALSE(processes.taskInfo(100));
    const ProcessTaskInfo figures{
        .virtualSize = 5, .residentSize = 4, .totalUser = 3, .totalSystem = 2, .threadCount = 1};
    processes.set(100, {.name = "Player", .taskInfo = figures});
    EXPECT_THAT(processes.taskInfo(100), Optional(figures));
    processes.set(100, {.name = "Player"});
    EXPECT_FALSE(processes.taskInfo(100));
    EXPECT_FALSE(processes.taskInfo(5));
}

TEST_F(EmbeddedDesktop, TheProgramsOwnPidIsScripted) {
    EXPECT_EQ(processes.ownPID(), 1000);
    processes.setOwnPID(100);
    EXPECT_EQ(processes.ownPID(), 100);
}

TEST_F(EmbeddedDesktop, AScriptMayAddApplicationsAndInstallThem) {
    workspace.add({.processIdentifier = 7,
                   .localizedName = "Editor",
                   .bundleIdentifier = std::nullopt,
                   .activationPolicy = ActivationPolicy::accessory,
                   .icon = nullptr});
    const auto editor = workspace.runningApplication(7);
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->activationPolicy, ActivationPolicy::accessory);
    EXPECT_EQ(editor->icon->cacheKey(), "pid:7");
    workspace.remove(7);
    EXPECT_FALSE(workspace.runningApplication(7));

    workspace.install("org.example.editor");
    EXPECT_EQ(installedIcon("org.example.editor"), "org.example.editor");
    workspace.uninstall("org.example.editor");
    EXPECT_EQ(installedIcon("org.example.editor"), "none");
}

TEST_F(EmbeddedDesktop, ASnapshotHoldsEveryApplicationOnce) {
    server.addProgram({.pid = 300, .name = "Browser"});
    server.addProgram({.pid = 100, .name = "Player"});
    server.addProgram({.pid = 300, .name = "Browser, second object"});
    server.addProgram({.pid = 50, .name = "daemon", .policy = std::nullopt});
    workspace.add({.processIdentifier = 100, .localizedName = "Stand-in"});
    workspace.add({.processIdentifier = 7, .localizedName = "Editor"});
    std::vector<std::string> names;
    for (const RunningApplication& application : workspace.runningApplications())
        names.push_back(*application.localizedName);
    EXPECT_THAT(names, ElementsAre("Browser", "Editor", "Stand-in"));
}

} // namespace
} // namespace orvanta::embedded
