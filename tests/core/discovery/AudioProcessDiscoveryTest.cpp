// Every process that has opened audio.

#include "tests/core/discovery/DiscoveryTest.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orvanta::test {
namespace {

using embedded::FaultEffect;
using embedded::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

class Discovery : public DiscoveryTest {
protected:
    std::vector<AudioApp> discover() override { return discovery.discoverAllAudioProcesses(); }
};

TEST_F(Discovery, WithoutAudioProcessesTheListIsEmpty) {
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(Discovery, AnUnreadableListIsEmpty) {
    play(10);
    for (const auto operation : {Operation::getPropertyDataSize, Operation::getPropertyData}) {
        const auto fault = server.faults().add(
            {.operation = operation, .selector = kAudioHardwarePropertyProcessObjectList});
        EXPECT_THAT(discover(), IsEmpty());
        server.faults().remove(fault);
    }
    EXPECT_EQ(discover().size(), 1U);
}

TEST_F(Discovery, AListOfFewerBytesThanOneObjectIsEmpty) {
    play(10);
    server.faults().add({.operation = Operation::getPropertyDataSize,
                         .effect = FaultEffect::givesBytes,
                         .bytes = 3,
                         .selector = kAudioHardwarePropertyProcessObjectList});
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(Discovery, ARunningApplicationGivesItsNameBundleAndIcon) {
    const auto object = play(10);
    runApp(10, "Music Box", "org.example.musicbox");
    workspace.install("org.example.musicbox", "box");
    processes.names[10] = "musicboxd";
    const auto apps = discover();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(apps[0].audioObjectID, object);
    EXPECT_EQ(apps[0].pid, 10);
    EXPECT_EQ(apps[0].id(), 10);
    EXPECT_EQ(apps[0].name, "Music Box");
    EXPECT_EQ(apps[0].bundleIdentifier, "org.example.musicbox");
    EXPECT_TRUE(apps[0].isPlaying);
    EXPECT_EQ(apps[0].icon->cacheKey(), "box");
}

TEST_F(Discovery, AnIconOfAnApplicationThatIsNotInstalledIsThatOfTheRunningOne) {
    play(10);
    runApp(10, "Music Box", "org.example.musicbox").icon = std::make_shared<KeyIcon>("running");
    EXPECT_EQ(discover()[0].icon->cacheKey(), "running");
}

TEST_F(Discovery, AnApplicationWithoutANameIsUnknown) {
    play(10);
    runApp(10, std::nullopt);
    EXPECT_THAT(names(), ElementsAre("Unknown (PID: 10)"));
}

TEST_F(Discovery, AProcessThatIsNoApplicationGoesByItsShortName) {
    play(10);
    processes.names[10] = "player";
    processes.paths[10] = "/usr/bin/other";
    const auto apps = discover();
    EXPECT_EQ(apps[0].name, "player");
    EXPECT_EQ(apps[0].bundleIdentifier, std::nullopt);
    EXPECT_EQ(apps[0].icon, nullptr);
}

TEST_F(Discovery, WithoutAShortNameTheInnermostBundleOfThePathOrItsLastComponentNamesAProcess) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"/Applications/Some Tool.app/Contents/MacOS/tool", "Some Tool"},
        {"/Applications/Outer.app/Contents/Inner.app/Contents/MacOS/x", "Inner"},
        {"Lone.app", "Lone"},
        {"/usr/lib/player/play", "play"},
        {"play", "play"}};
    processes.names[10] = "";
    play(10);
    for (const auto& [path, name] : cases) {
        processes.paths[10] = path;
        EXPECT_THAT(names(), ElementsAre(name)) << path;
    }
}

TEST_F(Discovery, AProcessWithoutAnyNameIsListedByItsNumber) {
    play(10);
    EXPECT_THAT(names(), ElementsAre("Process 10"));
}

TEST_F(Discovery, TheProgramsOwnProcessAndImpossibleOnesAreNotListed) {
    play(ScriptedProcessTable::self);
    play(0);
    play(-5);
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(Discovery, AProcessWhosePIDCannotBeReadIsNotListed) {
    const auto object = play(10);
    play(11);
    server.faults().add({.operation = Operation::getPropertyData,
                         .object = object,
                         .selector = kAudioProcessPropertyPID});
    ASSERT_EQ(discover().size(), 1U);
    EXPECT_EQ(discover()[0].pid, 11);
}

TEST_F(Discovery, OfTwoObjectsOfOneProcessTheFirstCounts) {
    const auto first = play(10, false);
    play(10, true);
    const auto apps = discover();
    ASSERT_EQ(apps.size(), 1U);
    EXPECT_EQ(apps[0].audioObjectID, first);
    EXPECT_FALSE(apps[0].isPlaying);
}

TEST_F(Discovery, RunningInputAloneCountsAsPlaying) {
    server.addProgram({.pid = 10, .playing = false, .recording = true});
    EXPECT_TRUE(discover()[0].isPlaying);
}

TEST_F(Discovery, AsksForOutputFirstAndForTheRestOnlyWhenThatIsNotRunning) {
    const auto object = play(10);
    server.journal().clear();
    EXPECT_TRUE(discover()[0].isPlaying);
    auto asked = server.journal().entries(embedded::Journal::about(object));
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[1].address->mSelector, kAudioProcessPropertyIsRunningOutput);

    server.faults().add({.operation = Operation::getPropertyData,
                         .selector = kAudioProcessPropertyIsRunningOutput});
    server.journal().clear();
    EXPECT_TRUE(discover()[0].isPlaying);
    asked = server.journal().entries(embedded::Journal::about(object));
    ASSERT_EQ(asked.size(), 3U);
    EXPECT_EQ(asked[2].address->mSelector, kAudioProcessPropertyIsRunning);

    server.faults().add(
        {.operation = Operation::getPropertyData, .selector = kAudioProcessPropertyIsRunning});
    EXPECT_FALSE(discover()[0].isPlaying);
}

TEST_F(Discovery, SortsByNameWithoutLookingAtCase) {
    for (const auto& [pid, name] : std::vector<std::pair<std::int32_t, std::string>>{
             {10, "zebra"}, {11, "Apple Pie"}, {12, "böse"}, {13, "Bose"}, {14, "beta"}}) {
        play(pid);
        processes.names[pid] = name;
    }
    EXPECT_THAT(names(), ElementsAre("Apple Pie", "beta", "Bose", "böse", "zebra"));
}

TEST(AudioApp, IsEqualAndHashedByItsProcessAlone) {
    const ScriptedWorkspace workspace;
    const AudioApp a(workspace, 1, 10, "one", std::nullopt, false);
    const AudioApp b(workspace, 2, 10, "two", "org.example", true);
    const AudioApp c(workspace, 1, 11, "one", std::nullopt, false);
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a == c);
    const std::unordered_set<AudioApp> set{a, b, c};
    EXPECT_EQ(set.size(), 2U);
}

TEST(NameOrder, TreatsNamesThatDifferInCaseAsTheSame) {
    const NameOrder order;
    EXPECT_TRUE(order.isSame("Finder", "fINDER"));
    EXPECT_TRUE(order.isSame("ÄPFEL", "äpfel"));
    EXPECT_FALSE(order.isSame("Apfel", "Äpfel"));
    EXPECT_TRUE(order.isAscending("apple", "Banana"));
    EXPECT_FALSE(order.isAscending("Banana", "apple"));
    EXPECT_FALSE(order.isAscending("same", "SAME"));
    EXPECT_TRUE(order.isSame("\xFF", "\xFE")) << "malformed bytes are all the same";
}

} // namespace
} // namespace orvanta::test
