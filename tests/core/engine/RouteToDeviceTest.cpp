// Moving a running tap from one device to another.

#include "tests/core/engine/EngineNames.h"
#include "tests/core/engine/TapOnSpeakersTest.h"

#include <gmock/gmock.h>

namespace orvanta::test {
namespace {

using embedded::Journal;
using embedded::JournalEntry;
using embedded::Operation;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

/// The tap's volume is 2.
class RouteToDevice : public TapOnSpeakersTest {
protected:
    explicit RouteToDevice(const embedded::ServerSettings& settings = {})
        : TapOnSpeakersTest(settings) {
        rig.manager->setVolume(pid, 2.0F);
        rig.forget();
    }

    [[nodiscard]] bool route(const std::optional<std::string>& uid) const {
        return rig.manager->routeToDevice(pid, uid);
    }

    /// Names of the calls, and the selectors of those about properties.
    std::vector<std::string> calls() {
        std::vector<std::string> result;
        for (const JournalEntry& entry : rig.server.journal().entries()) {
            std::string call(operationName(entry.operation));
            if (entry.address)
                call += " " + fourCharText(entry.address->mSelector);
            result.push_back(call);
        }
        return result;
    }

    std::vector<JournalEntry> entries(Operation operation) {
        return rig.server.journal().entries(Journal::of(operation));
    }
};

TEST_F(RouteToDevice, MovesTheSoundWithAllItsSettings) {
    ASSERT_THAT(rig.nextCycle(rig.speakers), Each(1.0F));
    EXPECT_TRUE(route("headphones"));
    EXPECT_THAT(rig.nextCycle(headphones), Each(1.0F)) << "twice the program's 0.5";
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.0F));
    EXPECT_THAT(rig.manager->getOutputDeviceUID(pid), Optional(std::string("headphones")));
    EXPECT_THAT(rig.manager->getVolume(pid), Optional(2.0F));
    EXPECT_FALSE(rig.manager->isMuted(pid));
}

TEST_F(RouteToDevice, TakesTheOldAggregateDownBeforeItBuildsTheNewOne) {
    ASSERT_TRUE(route("headphones"));
    EXPECT_THAT(calls(), ElementsAre("AudioDeviceStop", "AudioDeviceDestroyIOProcID",
                                     "AudioHardwareDestroyAggregateDevice", //
                                     "AudioObjectGetPropertyDataSize dev#", //
                                     "AudioObjectGetPropertyData dev#",     //
                                     "AudioObjectGetPropertyData uid ",     //
                                     "AudioObjectGetPropertyData uid ",     //
                                     "AudioObjectGetPropertyData tran",     //
                                     "AudioHardwareCreateAggregateDevice",  //
                                     "AudioObjectGetPropertyData nsrt",     //
                                     "AudioObjectGetPropertyData nsrt",     //
                                     "AudioObjectIsPropertySettable volm",  //
                                     "AudioObjectIsPropertySettable volm",  //
                                     "AudioObjectIsPropertySettable volm",  //
                                     "AudioDeviceCreateIOProcID", "AudioDeviceStart"));
    EXPECT_THAT(rig.log.texts(),
                ElementsAre("🔬 rates: agg=48000.0Hz out=48000.0Hz uid=headphones bt=false\n",
                            "Audio pipeline started", "Routed PID 100 to device: headphones"));
    EXPECT_TRUE(rig.log.has(LogLevel::info, "Routed PID 100 to device: headphones"));
}

TEST_F(RouteToDevice, KeepsTheTapItself) {
    const auto before = rig.server.holdings().taps;
    ASSERT_TRUE(route("headphones"));
    EXPECT_EQ(rig.server.holdings().taps, before);
    EXPECT_EQ(rig.server.holdings().aggregates.size(), 1U);
    EXPECT_EQ(rig.server.holdings().startedIOProcs, 1U);
}

TEST_F(RouteToDevice, WithoutADeviceGoesToTheDefaultOutputAndFollowsItFromThenOn) {
    ASSERT_TRUE(route("headphones"));
    rig.forget();
    EXPECT_TRUE(route(std::nullopt));
    EXPECT_EQ(rig.manager->getOutputDeviceUID(pid), std::nullopt);
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(1.0F));
    EXPECT_TRUE(rig.log.has(LogLevel::info, "Routed PID 100 to device: default"));
}

TEST_F(RouteToDevice, StartsTheCountsAnew) {
    rig.server.step(rig.speakers, 7);
    ASSERT_EQ(rig.manager->getCallbackCount(pid), 7U);
    ASSERT_GT(rig.manager->getAudioLevel(pid)->peak, 0.0F);
    rig.state().lastPollCallbackCount = 5;
    ASSERT_TRUE(route("headphones"));
    EXPECT_EQ(rig.manager->getCallbackCount(pid), 0U);
    EXPECT_EQ(rig.manager->getAudioLevel(pid), AudioLevel{});
    EXPECT_EQ(rig.state().lastPollCallbackCount, 0U);
    rig.manager->flushLog();
    rig.log.clear();
    rig.server.step(headphones);
    rig.manager->flushLog();
    EXPECT_EQ(rig.manager->getCallbackCount(pid), 1U);
    EXPECT_EQ(rig.log.texts().size(), 1U) << "the line of a first callback";
}

TEST_F(RouteToDevice, OfAnUnknownProcessIsRefusedWithoutACall) {
    EXPECT_FALSE(rig.manager->routeToDevice(999, "headphones"));
    EXPECT_FALSE(rig.manager->routeToDevice(-1, std::nullopt));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(rig.log.texts(), IsEmpty());
}

TEST_F(RouteToDevice, ToAMutedTapKeepsItMuted) {
    rig.manager->setMuted(pid, true);
    ASSERT_TRUE(route("headphones"));
    EXPECT_TRUE(rig.manager->isMuted(pid));
    EXPECT_THAT(rig.nextCycle(headphones), Each(0.0F));
}

TEST_F(RouteToDevice, KeepsEveryProcessorAndWhatItRemembers) {
    rig.manager->setEQ(pid, 3, 6.0F);
    rig.manager->setLimiterEnabled(pid, true);
    rig.manager->setCrossfeed(pid, 0.5F);
    const auto* const equaliser = rig.state().eqProcessor.get();
    const auto* const limiter = rig.state().limiter.get();
    ASSERT_TRUE(route("headphones"));
    EXPECT_EQ(rig.state().eqProcessor.get(), equaliser);
    EXPECT_EQ(rig.state().limiter.get(), limiter);
    EXPECT_THAT(rig.manager->getCrossfeed(pid), Optional(0.5F));
}

TEST_F(RouteToDevice, LetsARecordingGoOnInItsFile) {
    const auto files = rig.manager->startRecording(pid, "Player", RecordingFormat::wav, "/music",
                                                   RecordingMode::processed);
    ASSERT_TRUE(files.wet);
    rig.server.step(rig.speakers, 3);
    ASSERT_TRUE(route("headphones"));
    EXPECT_TRUE(rig.manager->isRecording(pid));
    rig.server.step(headphones, 2);
    rig.manager->stopRecording(pid);
    rig.runLoop.advance(Seconds(1));
    const auto& file = rig.audioFiles.file(*files.wet);
    EXPECT_THAT(file.channels.at(0), Each(1.0F));
    EXPECT_EQ(file.channels.at(0).size(), 5UL * EngineRig::frames);
}

TEST_F(RouteToDevice, ToAnUnknownDeviceEndsOnTheDefaultOutputAndSaysSo) {
    ASSERT_TRUE(route("headphones"));
    rig.server.journal().clear();
    EXPECT_FALSE(route("unplugged"));
    const auto builds = entries(Operation::createAggregateDevice);
    ASSERT_EQ(builds.size(), 2U);
    EXPECT_EQ(builds[0].aggregate->master, "unplugged") << "the system is still asked";
    EXPECT_EQ(builds[1].aggregate->master, "speakers");
    EXPECT_EQ(rig.manager->getOutputDeviceUID(pid), std::nullopt);
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(1.0F));
}

TEST_F(RouteToDevice, TakesAnEmptyUIDForAGivenOne) {
    EXPECT_FALSE(route(""));
    EXPECT_EQ(entries(Operation::createAggregateDevice).at(0).aggregate->master, "");
    EXPECT_EQ(rig.manager->getOutputDeviceUID(pid), std::nullopt) << "on the default output";
}

TEST_F(RouteToDevice, ThatFallsBackKeepsTheCountsAndAsksForNoVolume) {
    rig.server.step(rig.speakers, 7);
    rig.manager->flushLog();
    rig.log.clear();
    rig.server.failNext(Operation::createAggregateDevice, refusal);
    EXPECT_FALSE(route("headphones"));
    EXPECT_EQ(rig.manager->getCallbackCount(pid), 7U);
    EXPECT_GT(rig.manager->getAudioLevel(pid)->peak, 0.0F);
    EXPECT_THAT(entries(Operation::isPropertySettable), IsEmpty());
    EXPECT_THAT(rig.log.texts(),
                ElementsAre("Audio device creation failed: -4321",
                            "🔬 rates: agg=48000.0Hz out=48000.0Hz uid=speakers bt=false\n",
                            "Audio pipeline started"));
    rig.server.step(rig.speakers);
    EXPECT_EQ(rig.manager->getCallbackCount(pid), 8U);
}

TEST_F(RouteToDevice, WithoutAnyAggregateLeavesATapThatPlaysNowhere) {
    rig.server.failNext(Operation::createAggregateDevice, refusal, 2);
    EXPECT_FALSE(route("headphones"));
    EXPECT_TRUE(rig.manager->hasTap(pid));
    EXPECT_EQ(rig.server.holdings().ioProcs, 0U);
    EXPECT_THAT(rig.log.texts(), ElementsAre("Audio device creation failed: -4321",
                                             "Audio device creation failed: -4321"));
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(0.0F)) << "the program stays muted";
    // It can be moved and removed like any other.
    EXPECT_TRUE(route("headphones"));
    EXPECT_THAT(rig.nextCycle(headphones), Each(1.0F));
    rig.manager->removeTap(pid);
    rig.expectNothingLeft();
}

TEST_F(RouteToDevice, WithoutAnyAggregateKeepsTheChosenDeviceInMind) {
    rig.addDevice("headset", kAudioDeviceTransportTypeBluetooth);
    ASSERT_TRUE(route("headset"));
    // The client data of its IOProc is about to go.
    const auto state = static_cast<AudioCallbackRef*>(rig.server.lastClientData)->state;
    rig.server.failNext(Operation::createAggregateDevice, refusal, 2);
    EXPECT_FALSE(route("headphones"));
    EXPECT_THAT(rig.manager->getOutputDeviceUID(pid), Optional(std::string("headset")));
    EXPECT_EQ(state->btOutputDeviceID, kAudioObjectUnknown);
    rig.manager->removeTap(pid);
    rig.expectNothingLeft();
}

TEST_F(RouteToDevice, ThatFallsBackRemembersABluetoothDefaultAndForgetsAnother) {
    const AudioObjectID headset = rig.addDevice("headset", kAudioDeviceTransportTypeBluetooth);
    rig.server.setDefaultOutput(headset);
    EXPECT_FALSE(route("unplugged"));
    EXPECT_EQ(rig.state().btOutputDeviceID, headset);
    rig.server.setDefaultOutput(rig.speakers);
    EXPECT_FALSE(route("unplugged"));
    EXPECT_EQ(rig.state().btOutputDeviceID, kAudioObjectUnknown);
}

TEST_F(RouteToDevice, ThatTheSystemRefusesToStopLetsARecordingGoOn) {
    ASSERT_TRUE(rig.manager
                    ->startRecording(pid, "Player", RecordingFormat::wav, "/music",
                                     RecordingMode::processed)
                    .wet);
    rig.server.failNext(Operation::stopDevice, refusal);
    rig.server.failNext(Operation::destroyIOProcID, refusal);
    EXPECT_TRUE(route("headphones"));
    EXPECT_TRUE(rig.manager->isRecording(pid));
}

TEST_F(RouteToDevice, ToADeviceThatDoesNotStartFailsThereAndStaysRouted) {
    rig.server.failNext(Operation::startDevice, refusal);
    EXPECT_FALSE(route("headphones"));
    EXPECT_THAT(rig.manager->getOutputDeviceUID(pid), Optional(std::string("headphones")));
    EXPECT_EQ(rig.server.holdings().aggregates.size(), 1U) << "the aggregate stays";
    EXPECT_EQ(rig.server.holdings().ioProcs, 0U);
    EXPECT_EQ(rig.manager->getCallbackCount(pid), 0U);
    EXPECT_TRUE(route("headphones")) << "the next move finds it as any other";
    EXPECT_THAT(rig.nextCycle(headphones), Each(1.0F));
    rig.manager->removeTap(pid);
    rig.expectNothingLeft();
}

TEST_F(RouteToDevice, WhoseFallbackDoesNotStartLeavesAnAggregateWithoutAnIOProc) {
    rig.server.failNext(Operation::createAggregateDevice, refusal);
    rig.server.failNext(Operation::createIOProcID, refusal);
    EXPECT_FALSE(route("headphones"));
    EXPECT_EQ(rig.server.holdings().aggregates.size(), 1U);
    EXPECT_EQ(rig.server.holdings().ioProcs, 0U);
    EXPECT_TRUE(rig.log.has(LogLevel::error, "Audio callback setup failed: -4321"));
    EXPECT_TRUE(route(std::nullopt));
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(1.0F));
}

TEST_F(RouteToDevice, RemembersABluetoothDeviceUntilTheNextMove) {
    const AudioObjectID headset = rig.addDevice("headset", kAudioDeviceTransportTypeBluetooth);
    ASSERT_TRUE(route("headset"));
    EXPECT_EQ(rig.state().btOutputDeviceID, headset);
    ASSERT_TRUE(route("headphones"));
    EXPECT_EQ(rig.state().btOutputDeviceID, kAudioObjectUnknown);
}

TEST_F(RouteToDevice, TwoTapsPlayOnTwoDevices) {
    const auto other =
        rig.server.addProgram({.pid = 200, .name = "Other", .source = embedded::constant(0.25F)});
    ASSERT_TRUE(rig.manager->createTap(200, other));
    ASSERT_TRUE(rig.manager->routeToDevice(200, "headphones"));
    EXPECT_THAT(rig.nextCycle(rig.speakers), Each(1.0F));
    EXPECT_THAT(rig.nextCycle(headphones), Each(0.25F));
}

class RouteToUnlistedDevice : public RouteToDevice {
protected:
    RouteToUnlistedDevice() : RouteToDevice({.refusesUnknownSubDevices = false}) {}
};

TEST_F(RouteToUnlistedDevice, MayBeAcceptedByTheSystemButDoesNotStart) {
    EXPECT_FALSE(route("unplugged"));
    EXPECT_THAT(rig.manager->getOutputDeviceUID(pid), Optional(std::string("unplugged")));
    EXPECT_THAT(rig.log.texts(),
                Contains("Audio start failed: " + std::to_string(kAudioHardwareNotRunningError)));
}

} // namespace
} // namespace orvanta::test
