#include "core/platform/AudioProperties.h"
#include "tests/platform/embedded/GainTap.h"
#include "tests/platform/embedded/ListenerLog.h"
#include "tests/platform/embedded/PropertyReads.h"

#include <gmock/gmock.h>

namespace orvanta::embedded {
namespace {

using test::GainTap;
using test::global;
using test::ListenerLog;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto kSystem = kAudioObjectSystemObject;

/// A server whose system object is listened to.
class EmbeddedDevices : public testing::Test {
protected:
    void SetUp() override {
        listener.listen(server, kSystem, global(kAudioHardwarePropertyDevices));
        listener.listen(server, kSystem, global(kAudioHardwarePropertyDefaultOutputDevice));
    }

    EmbeddedAudioServer server;
    ListenerLog listener;
};

TEST_F(EmbeddedDevices, PluggingTheFirstOneChangesTheListAndTheDefault) {
    const auto speakers = server.addDevice({.uid = "speakers"});

    EXPECT_THAT(listener.heard(), ElementsAre("1 dev#", "1 dOut"));
    EXPECT_EQ(server.findDevice("speakers"), speakers);
    EXPECT_EQ(server.findDevice("headphones"), kAudioObjectUnknown);
}

TEST_F(EmbeddedDevices, UnpluggingTheDefaultMovesItToTheFirstOneLeft) {
    const auto speakers = server.addDevice({.uid = "speakers"});
    server.addDevice({.uid = "microphone", .channels = 0});
    const auto headphones = server.addDevice({.uid = "headphones"});
    listener.heard();

    EXPECT_TRUE(server.removeDevice(speakers));

    EXPECT_THAT(listener.heard(), ElementsAre("1 dev#", "1 dOut"));
    EXPECT_EQ(server.defaultOutput(), headphones);
    EXPECT_FALSE(server.removeDevice(speakers));
    EXPECT_THAT(listener.heard(), IsEmpty());
}

TEST_F(EmbeddedDevices, UnpluggingAnotherOneLeavesTheDefaultAlone) {
    const auto speakers = server.addDevice({.uid = "speakers"});
    const auto headphones = server.addDevice({.uid = "headphones"});
    listener.heard();

    server.removeDevice(headphones);

    EXPECT_THAT(listener.heard(), ElementsAre("1 dev#"));
    EXPECT_EQ(server.defaultOutput(), speakers);
}

TEST(EmbeddedDefaultOutput, MayBeLeftToTheScript) {
    EmbeddedAudioServer server({.choosesDefaultOutput = false});
    const auto speakers = server.addDevice({.uid = "speakers"});
    EXPECT_EQ(server.defaultOutput(), kAudioObjectUnknown);

    EXPECT_TRUE(server.setDefaultOutput(speakers));
    server.addDevice({.uid = "headphones"});
    server.removeDevice(speakers);
    EXPECT_EQ(server.defaultOutput(), kAudioObjectUnknown);
}

TEST_F(EmbeddedDevices, ADefaultThatIsChosenAgainIsNoChange) {
    const auto speakers = server.addDevice({.uid = "speakers"});
    listener.heard();

    EXPECT_TRUE(server.setDefaultOutput(speakers));
    EXPECT_THAT(listener.heard(), IsEmpty());
    EXPECT_TRUE(server.setDefaultOutput(kAudioObjectUnknown));
    EXPECT_THAT(listener.heard(), ElementsAre("1 dOut"));
    EXPECT_FALSE(server.setDefaultOutput(777));
}

TEST_F(EmbeddedDevices, ARenameIsHeardOnTheDevice) {
    const auto speakers = server.addDevice({.uid = "speakers", .name = "Speakers"});
    ListenerLog onDevice;
    onDevice.listen(server, speakers, global(kAudioObjectPropertyName));

    server.renameDevice(speakers, "Desk");

    EXPECT_EQ(readString(server, speakers, global(kAudioObjectPropertyName)), "Desk");
    EXPECT_THAT(onDevice.heard(), ElementsAre(std::to_string(speakers) + " lnam"));
}

TEST_F(EmbeddedDevices, ProgramsFollowTheDefaultAndStayOnAChosenDevice) {
    const auto speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 2});
    const auto headphones = server.addDevice({.uid = "headphones", .framesPerCycle = 2});
    server.addProgram({.pid = 1, .source = constant(0.25F)});
    server.addProgram({.pid = 2, .source = constant(0.5F), .device = "headphones"});

    server.stepAll();
    server.setDefaultOutput(headphones);
    server.stepAll();
    server.removeDevice(headphones);
    server.stepAll();

    EXPECT_THAT(server.played(speakers, 0), ElementsAre(0.25F, 0.25F, 0, 0, 0.75F, 0.75F));
    EXPECT_THAT(server.played(headphones, 0), ElementsAre(0.5F, 0.5F, 0.75F, 0.75F));
}

TEST_F(EmbeddedDevices, AnAggregateLosesItsDeviceAndFindsItAgain) {
    server.addDevice({.uid = "speakers", .framesPerCycle = 2});
    const auto headset = server.addDevice({.uid = "headset", .framesPerCycle = 2});
    const auto music = server.addProgram({.pid = 1, .source = constant(0.5F)});
    GainTap tap(server, {music}, "headset");
    ASSERT_EQ(tap.start(), noErr);
    const auto active = global(kAudioAggregateDevicePropertyActiveSubDeviceList);
    EXPECT_THAT(readObjectList(server, tap.aggregate(), active), ElementsAre(headset));
    EXPECT_THAT(deviceList(server), testing::Contains(tap.aggregate()));
    ListenerLog onAggregate;
    onAggregate.listen(server, tap.aggregate(), active);

    server.removeDevice(headset);

    EXPECT_THAT(onAggregate.heard(), SizeIs(1));
    EXPECT_THAT(readObjectList(server, tap.aggregate(), active), IsEmpty());
    EXPECT_EQ(test::sizeOf(server, tap.aggregate(), active).status, noErr);
    EXPECT_THAT(deviceList(server), testing::Not(testing::Contains(tap.aggregate())));
    server.stepAll(3);
    EXPECT_EQ(tap.calls(), 0U);
    tap.stop();
    EXPECT_EQ(tap.start(), kAudioHardwareNotRunningError);

    const auto again = server.addDevice({.uid = "headset", .framesPerCycle = 2});
    EXPECT_THAT(readObjectList(server, tap.aggregate(), active), ElementsAre(again));
    EXPECT_EQ(tap.start(), noErr);
    server.step(again);
    EXPECT_THAT(server.played(again, 0), Each(0.5F));
}

TEST_F(EmbeddedDevices, WhatADevicePlayedOutlivesIt) {
    const auto speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 2});
    server.addProgram({.pid = 1, .source = constant(0.5F)});
    server.step(speakers);
    server.removeDevice(speakers);
    server.step(speakers);

    EXPECT_THAT(server.played(speakers, 0), ElementsAre(0.5F, 0.5F));
    server.clearPlayed(speakers);
    EXPECT_THAT(server.played(speakers), IsEmpty());
}

TEST_F(EmbeddedDevices, OneThatKeepsNothingHasPlayedNothing) {
    const auto speakers = server.addDevice({.uid = "speakers", .keepsPlayed = false});
    server.step(speakers, 3);

    EXPECT_EQ(server.cycles(speakers), 3U);
    EXPECT_THAT(server.played(speakers), IsEmpty());
    EXPECT_THAT(server.played(speakers, 0), IsEmpty());
}

TEST_F(EmbeddedDevices, VolumeIsHeardAsItsCube) {
    const auto speakers = server.addDevice(
        {.uid = "speakers", .framesPerCycle = 1, .volumes = {{.element = 0}, {.element = 2}}});
    server.addProgram({.pid = 1, .source = constant({1.0F, 1.0F})});

    server.setVolume(speakers, 0, 0.5F);
    server.step(speakers);
    server.setVolume(speakers, 2, 0.5F);
    server.step(speakers);

    EXPECT_THAT(server.played(speakers), ElementsAre(0.125F, 0.125F, 0.125F, 0.015625F));
    EXPECT_FALSE(server.setVolume(speakers, 1, 0.5F));
}

} // namespace
} // namespace orvanta::embedded
