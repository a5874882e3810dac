// Which applications the user may mix.

#include "tests/core/discovery/DiscoveryTest.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {
namespace {

using embedded::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

class AudioApps : public DiscoveryTest {
protected:
    std::vector<AudioApp> discover() override { return discovery.discoverAudioApps(); }

    AudioObjectID playApp(std::int32_t pid, const std::string& name, bool playing = true) {
        runApp(pid, name);
        return play(pid, playing);
    }

    /// A process without an application of its own, below another in the process tree.
    AudioObjectID playHelper(std::int32_t pid, const std::string& name, std::int32_t parent,
                             bool playing = true) {
        processes.names[pid] = name;
        processes.parents[pid] = parent;
        return play(pid, playing);
    }
};

TEST_F(AudioApps, AreNoneWhereNothingPlaysOrTheListCannotBeRead) {
    EXPECT_THAT(discover(), IsEmpty());
    playApp(10, "Music");
    server.faults().add({.operation = Operation::getPropertyData,
                         .selector = kAudioHardwarePropertyProcessObjectList});
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(AudioApps, TellAllThatTheirApplicationIs) {
    runApp(10, "Music", "org.example.music");
    workspace.install("org.example.music", "note");
    const auto object = play(10);
    const auto apps = discover();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(apps[0].audioObjectID, object);
    EXPECT_EQ(apps[0].pid, 10);
    EXPECT_EQ(apps[0].name, "Music");
    EXPECT_EQ(apps[0].bundleIdentifier, "org.example.music");
    EXPECT_TRUE(apps[0].isPlaying);
    EXPECT_EQ(apps[0].icon->cacheKey(), "note");
}

// ---- what is left out

TEST_F(AudioApps, LeaveTheProgramItselfOut) {
    playApp(ScriptedProcessTable::self, "Music Helper");
    for (const char* name : {"Orvanta", "OrvantaDesk", "AudioMixerCLI"})
        playApp(10 + static_cast<std::int32_t>(std::string(name).size()), name);
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(AudioApps, LeaveOutWhatTheSystemRunsForItself) {
    playApp(10, "Finder");
    playApp(11, "com.apple.something");
    runApp(12, "Music", "com.apple.Music");
    play(12);
    playApp(13, "finder");
    EXPECT_THAT(names(), ElementsAre("finder", "Music"));
}

TEST_F(AudioApps, LeaveOutDaemonsAccessoriesAndTheNameless) {
    processes.names[10] = "daemon";
    play(10);
    runApp(11, "Menu Thing").activationPolicy = ActivationPolicy::accessory;
    play(11);
    runApp(12, "Agent").activationPolicy = ActivationPolicy::prohibited;
    play(12);
    play(13);
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(AudioApps, KeepARegularApplicationThatHasNoName) {
    runApp(10, std::nullopt);
    play(10);
    EXPECT_THAT(names(), ElementsAre("Unknown (PID: 10)"));
}

TEST_F(AudioApps, CountTheFirstObjectOfAProcessOnly) {
    runApp(10, "Music");
    const auto first = play(10, false);
    play(10, true);
    const auto apps = discover();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(apps[0].audioObjectID, first);
    EXPECT_FALSE(apps[0].isPlaying);
}

// ---- helpers

TEST_F(AudioApps, CountAHelperToTheApplicationAboveItInTheProcessTree) {
    runApp(5, "Browser", "org.example.browser");
    workspace.install("org.example.browser", "globe");
    const auto object = playHelper(20, "Something Helper", 5);
    const auto apps = discover();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(apps[0].name, "Browser");
    EXPECT_EQ(apps[0].bundleIdentifier, "org.example.browser");
    EXPECT_EQ(apps[0].audioObjectID, object);
    EXPECT_EQ(apps[0].pid, 20);
    EXPECT_EQ(apps[0].icon->cacheKey(), "globe");
}

TEST_F(AudioApps, PassOverHelpersAndUnknownProcessesOnTheWayUp) {
    runApp(5, "Browser");
    runApp(6, "Browser Helper (Renderer)");
    processes.parents[7] = 6;
    processes.parents[6] = 5;
    playHelper(20, "Plugin", 7);
    EXPECT_THAT(names(), ElementsAre("Browser"));
}

TEST_F(AudioApps, CountAHelperToAnAncestorOfAnyKind) {
    runApp(5, "Finder").activationPolicy = ActivationPolicy::prohibited;
    playHelper(20, "Quick Helper", 5);
    EXPECT_THAT(names(), ElementsAre("Finder")) << "neither name nor policy are asked";
    workspace.applications[5].localizedName.reset();
    EXPECT_THAT(names(), ElementsAre("Unknown"));
}

TEST_F(AudioApps, GoUpEightStepsAndNoFurther) {
    runApp(100, "Far Away");
    for (std::int32_t pid = 101; pid <= 109; ++pid)
        processes.parents[pid] = pid - 1;
    playHelper(108, "Renderer", 107);
    EXPECT_THAT(names(), ElementsAre("Far Away"));
    server.exitProgram(discover()[0].audioObjectID);
    playHelper(109, "Renderer", 108);
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(AudioApps, StopAtTheInitProcessAndAtProcessesThatStandForIt) {
    runApp(1, "Init");
    playHelper(20, "X Helper", 1);
    EXPECT_THAT(discover(), IsEmpty());
    for (const char* name : {"launchd", "kernel_task"}) {
        runApp(6, name);
        runApp(5, "Browser");
        processes.parents[6] = 5;
        processes.parents[20] = 6;
        EXPECT_THAT(discover(), IsEmpty()) << name;
    }
}

TEST_F(AudioApps, EndTheWalkWhereAParentCannotBeRead) {
    runApp(5, "Browser");
    processes.names[20] = "X Helper";
    play(20);
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(AudioApps, FindAHelpersApplicationByNameWhenTheTreeTellsNothing) {
    runApp(5, "Foo");
    playHelper(20, "Foo Helper", 1);
    EXPECT_THAT(names(), ElementsAre("Foo"));
}

TEST_F(AudioApps, TryTheCleanedNameThenTwoWordsThenOne) {
    playHelper(20, "Some Browser Helper (Renderer)", 1);
    EXPECT_THAT(discover(), IsEmpty());
    runApp(5, "Some");
    EXPECT_THAT(names(), ElementsAre("Some"));
    runApp(6, "SOME browser");
    EXPECT_THAT(names(), ElementsAre("SOME browser"));
    runApp(7, "some browser  ()");
    EXPECT_THAT(names(), ElementsAre("some browser  ()"));
}

TEST_F(AudioApps, TryAHelpersOnlyWordAlsoWithItsMarker) {
    playHelper(20, "WebHelper", 1);
    EXPECT_THAT(discover(), IsEmpty());
    runApp(5, "webhelper");
    EXPECT_THAT(names(), ElementsAre("webhelper"));
}

TEST_F(AudioApps, PassOverAnExcludedNameAndGoOn) {
    runApp(5, "Finder");
    playHelper(20, "Finder Helper", 1);
    EXPECT_THAT(discover(), IsEmpty());
    runApp(6, "finder");
    EXPECT_THAT(names(), ElementsAre("finder"));
}

TEST_F(AudioApps, TakeTheFirstOfSeveralMatchesAndSkipTheNameless) {
    runApp(4, std::nullopt, "org.example.nameless");
    runApp(5, "Foo", "org.example.first");
    runApp(6, "foo", "org.example.second");
    playHelper(20, "Foo Helper", 1);
    EXPECT_EQ(discover()[0].bundleIdentifier, "org.example.first");
}

TEST_F(AudioApps, LetAHelperThatIsAnApplicationFindItself) {
    runApp(20, "Lone Helper", "org.example.lone");
    play(20);
    EXPECT_THAT(names(), ElementsAre("Lone Helper"));
}

TEST_F(AudioApps, TakeTheEngineOfOneBrowserForAHelperByItsBundle) {
    runApp(5, "Browser");
    runApp(20, "Nothing telling", "com.apple.WebKit.GPU");
    processes.parents[20] = 5;
    play(20);
    EXPECT_THAT(names(), ElementsAre("Browser"));
    EXPECT_EQ(discover()[0].bundleIdentifier, "com.apple.WebKit.GPU") << "its parent has none";
}

TEST_F(AudioApps, KeepTheirBundleWhenAHelperWithoutOneTakesOver) {
    runApp(5, "Browser", "org.example.browser");
    play(5, false);
    runApp(7, "Browser");
    playHelper(20, "Browser Helper", 7);
    ASSERT_EQ(discover().size(), 1U);
    EXPECT_EQ(discover()[0].pid, 20);
    EXPECT_EQ(discover()[0].bundleIdentifier, "org.example.browser");
}

TEST_F(AudioApps, ResolveAnAccessoryThatIsAHelper) {
    runApp(5, "Browser");
    runApp(20, "Browser Helper").activationPolicy = ActivationPolicy::accessory;
    processes.parents[20] = 5;
    play(20);
    EXPECT_THAT(names(), ElementsAre("Browser"));
}

/// Counts the icons that are asked for.
class CountingWorkspace final : public Workspace {
public:
    explicit CountingWorkspace(const ScriptedWorkspace& told) : told_(told) {}

    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override {
        ++snapshots;
        return told_.runningApplications();
    }

    [[nodiscard]] std::optional<RunningApplication>
    runningApplication(std::int32_t pid) const override {
        return told_.runningApplication(pid);
    }

    [[nodiscard]] std::optional<std::filesystem::path>
    urlForApplication(const std::string& bundleIdentifier) const override {
        return told_.urlForApplication(bundleIdentifier);
    }

    [[nodiscard]] IconRef iconForFile(const std::filesystem::path& file) const override {
        ++icons;
        return told_.iconForFile(file);
    }

    mutable int snapshots = 0;
    mutable int icons = 0;

private:
    const ScriptedWorkspace& told_;
};

TEST_F(AudioApps, AskOnceForASnapshotAndForTheIconOfManyHelpers) {
    runApp(5, "Browser", "org.example.browser");
    workspace.install("org.example.browser", "globe");
    for (std::int32_t pid = 20; pid < 40; ++pid)
        playHelper(pid, "Browser Helper", 5);
    CountingWorkspace counting(workspace);
    AudioProcessDiscovery counted(fakes.platformWith(server, counting));
    EXPECT_EQ(counted.discoverAudioApps().size(), 1U);
    EXPECT_EQ(counting.snapshots, 1);
    EXPECT_EQ(counting.icons, 2) << "one for the helpers, one for the row";
    EXPECT_EQ(counted.discoverAudioApps().size(), 1U);
    EXPECT_EQ(counting.icons, 3) << "that of the row";
}

// ---- one row for each application

TEST_F(AudioApps, AreRepresentedByTheirFirstPlayingProcess) {
    runApp(5, "Browser");
    playHelper(20, "Browser Helper", 5, false);
    const auto second = playHelper(21, "Browser Helper", 5);
    playHelper(22, "Browser Helper", 5);
    const auto apps = discover();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_TRUE(apps[0].isPlaying);
    EXPECT_EQ(apps[0].pid, 21);
    EXPECT_EQ(apps[0].audioObjectID, second);
}

TEST_F(AudioApps, AreRepresentedByTheirFirstProcessWhereNonePlays) {
    runApp(5, "Browser");
    playHelper(20, "Browser Helper", 5, false);
    playHelper(21, "Browser Helper", 5, false);
    EXPECT_EQ(discover()[0].pid, 20);
}

TEST_F(AudioApps, OfOneNameAreOneAndKeepABundleThatAnyOfThemHas) {
    runApp(10, "Twin", "org.example.twin");
    workspace.install("org.example.twin", "twins");
    play(10, false);
    runApp(11, "Twin");
    play(11);
    const auto apps = discover();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(apps[0].pid, 11);
    EXPECT_EQ(apps[0].bundleIdentifier, "org.example.twin");
    EXPECT_EQ(apps[0].icon->cacheKey(), "twins");
}

TEST_F(AudioApps, TakeTheBundleOfTheProcessThatTakesOver) {
    runApp(10, "Twin", "org.example.one");
    play(10, false);
    runApp(11, "Twin", "org.example.other");
    play(11);
    EXPECT_EQ(discover()[0].bundleIdentifier, "org.example.other");
}

TEST_F(AudioApps, FallBackOnTheIconOfTheRunningProcess) {
    runApp(10, "Music", "org.example.gone").icon = std::make_shared<KeyIcon>("running");
    play(10);
    EXPECT_EQ(discover()[0].icon->cacheKey(), "running");
}

// ---- order

TEST_F(AudioApps, ArePlayingOnesFirstThenByNameWithoutRegardToCase) {
    playApp(10, "Zebra");
    playApp(11, "alpha", false);
    playApp(12, "Beta", false);
    playApp(13, "delta");
    playApp(14, "Charlie");
    EXPECT_THAT(names(), ElementsAre("Charlie", "delta", "Zebra", "alpha", "Beta"));
}

} // namespace
} // namespace orvanta::test
