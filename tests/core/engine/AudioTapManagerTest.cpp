#include "tests/core/engine/EngineNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

namespace orvanta::test {
namespace {

using embedded::FaultEffect;
using embedded::Operation;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// ---- making a tap

TEST(AudioTapManager, CreateTapMakesTapAggregateAndIOProcInThisOrder) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_THAT(rig.lifecycleCalls(),
                ElementsAre("AudioHardwareCreateProcessTap", "AudioHardwareCreateAggregateDevice",
                            "AudioDeviceCreateIOProcID", "AudioDeviceStart"));
    EXPECT_TRUE(rig.manager->hasTap(pid));
}

TEST(AudioTapManager, CreateTapReadsAndSetsWhatItNeedsInThisOrder) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    std::vector<std::string> calls;
    for (const auto& entry : rig.server.journal().entries()) {
        std::string call(operationName(entry.operation));
        if (entry.address)
            call += " " + fourCharText(entry.address->mSelector) + " " +
                    fourCharText(entry.address->mScope) + " " +
                    std::to_string(entry.address->mElement);
        calls.push_back(call);
    }
    EXPECT_THAT(calls, ElementsAre("AudioHardwareCreateProcessTap",              //
                                   "AudioObjectGetPropertyData dOut glob 0",     //
                                   "AudioObjectGetPropertyData uid  glob 0",     //
                                   "AudioObjectGetPropertyDataSize dev# glob 0", //
                                   "AudioObjectGetPropertyData dev# glob 0",     //
                                   "AudioObjectGetPropertyData uid  glob 0",     //
                                   "AudioObjectGetPropertyData tran glob 0",     //
                                   "AudioHardwareCreateAggregateDevice",         //
                                   "AudioObjectGetPropertyData nsrt glob 0",     //
                                   "AudioObjectGetPropertyData nsrt glob 0",     //
                                   "AudioObjectIsPropertySettable volm outp 0",  //
                                   "AudioObjectIsPropertySettable volm outp 1",  //
                                   "AudioObjectIsPropertySettable volm outp 2",  //
                                   "AudioObjectGetPropertyData tfmt glob 0",     //
                                   "AudioObjectGetPropertyDataSize stm# inpt 0", //
                                   "AudioObjectGetPropertyDataSize stm# outp 0", //
                                   "AudioDeviceCreateIOProcID", "AudioDeviceStart"));
}

TEST(AudioTapManager, DescribesAPrivateMutedTapNamedAfterTheProcess) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    const auto entries =
        rig.server.journal().entries(embedded::Journal::of(Operation::createProcessTap));
    ASSERT_EQ(entries.size(), 1U);
    const CATapDescription& tap = *entries[0].tap;
    EXPECT_EQ(tap.name(), "Orvanta_100");
    EXPECT_EQ(tap.muteBehavior(), CATapMuted);
    EXPECT_TRUE(tap.isPrivate());
    EXPECT_THAT(tap.processes(), ElementsAre(rig.program));
}

TEST(AudioTapManager, DescribesAPrivateAggregateOfTheTapAndTheDefaultOutput) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    const auto taps =
        rig.server.journal().entries(embedded::Journal::of(Operation::createProcessTap));
    const auto aggregates =
        rig.server.journal().entries(embedded::Journal::of(Operation::createAggregateDevice));
    ASSERT_EQ(aggregates.size(), 1U);
    AggregateDeviceDescription description = *aggregates[0].aggregate;
    const std::regex uid(R"(com\.meridane\.orvanta\.agg\.100\.(0|[1-9][0-9]{0,9}))");
    EXPECT_TRUE(std::regex_match(description.uid, uid)) << description.uid;
    description.uid.clear();
    EXPECT_EQ(description, (AggregateDeviceDescription{.uid = "",
                                                       .name = "Orvanta_100",
                                                       .isPrivate = true,
                                                       .isStacked = false,
                                                       .taps = {taps[0].tap->UUID()},
                                                       .subDevices = {"speakers"},
                                                       .master = "speakers",
                                                       .tapAutoStart = true}));
}

TEST(AudioTapManager, EveryBuildOfAnAggregateGetsAUIDOfItsOwn) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    rig.manager->removeTap(pid);
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    const auto builds =
        rig.server.journal().entries(embedded::Journal::of(Operation::createAggregateDevice));
    ASSERT_EQ(builds.size(), 2U);
    EXPECT_NE(builds[0].aggregate->uid, builds[1].aggregate->uid);
}

TEST(AudioTapManager, LogsTheMakingOfATapLineByLine) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    const auto made = rig.server.journal().entries(embedded::Journal::lifecycle());
    const std::string tap = std::to_string(made[0].created);
    const std::string device = std::to_string(made[1].created);
    EXPECT_THAT(rig.log.texts(),
                ElementsAre("Created tap " + tap + " for PID 100",
                            "🔬 rates: agg=48000.0Hz out=48000.0Hz uid=speakers bt=false\n",
                            "Created audio device " + device, "Tap format: 48000.000000Hz, 2ch",
                            "Audio device " + device + ": 1 input stream(s), 1 output stream(s)",
                            "Audio pipeline started", "Audio pipeline active for PID 100"));
    std::vector<LogLevel> levels;
    for (const auto& message : rig.log.messages())
        levels.push_back(message.level);
    EXPECT_THAT(levels,
                ElementsAre(LogLevel::info, LogLevel::debug, LogLevel::info, LogLevel::debug,
                            LogLevel::debug, LogLevel::info, LogLevel::info));
}

TEST(AudioTapManager, ASecondCreateTapForTheSameProcessChangesNothingAndSucceeds) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    rig.manager->setVolume(pid, 0.25F);
    rig.forget();
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_THAT(rig.server.journal().entries(), IsEmpty());
    EXPECT_THAT(rig.log.texts(), ElementsAre("Tap already exists for PID 100"));
    EXPECT_TRUE(rig.log.has(LogLevel::info, "Tap already exists for PID 100"));
    EXPECT_EQ(rig.manager->getVolume(pid), 0.25F);
}

TEST(AudioTapManager, FindsTheProcessObjectItselfWhenNoneIsGiven) {
    EngineRig rig;
    EXPECT_TRUE(rig.manager->createTap(pid));
    const auto taps =
        rig.server.journal().entries(embedded::Journal::of(Operation::createProcessTap));
    EXPECT_THAT(taps[0].tap->processes(), ElementsAre(rig.program));
}

TEST(AudioTapManager, WithoutAProcessObjectNothingIsMade) {
    EngineRig rig;
    EXPECT_FALSE(rig.manager->createTap(999));
    EXPECT_FALSE(rig.manager->hasTap(999));
    EXPECT_THAT(rig.lifecycleCalls(), IsEmpty());
    EXPECT_TRUE(rig.log.has(LogLevel::error, "No audio process found for PID 999"));
}

TEST(AudioTapManager, OfTwoProcessObjectsOfOneProcessTheFirstInTheListIsTapped) {
    EngineRig rig;
    const AudioObjectID second = rig.server.addProgram({.pid = pid, .name = "Player again"});
    ASSERT_NE(second, rig.program);
    ASSERT_TRUE(rig.manager->createTap(pid));
    const auto taps =
        rig.server.journal().entries(embedded::Journal::of(Operation::createProcessTap));
    EXPECT_THAT(taps[0].tap->processes(), ElementsAre(rig.program));
}

// ---- sound

TEST(AudioTapManager, ATappedProcessIsHeardThroughTheCallbackAndOnlyThere) {
    EngineRig rig;
    EXPECT_THAT(rig.nextCycle(), Each(0.5F));
    ASSERT_TRUE(rig.manager->createTap(pid));
    EXPECT_THAT(rig.nextCycle(), Each(0.5F)) << "once, not doubled";
    rig.manager->setVolume(pid, 0.5F);
    EXPECT_THAT(rig.nextCycle(), Each(0.25F));
    rig.manager->setMuted(pid, true);
    EXPECT_THAT(rig.nextCycle(), Each(0.0F));
    rig.manager->removeTap(pid);
    rig.expectNothingLeft();
}

/// The first four samples that a device plays of a program with 0.5 on the left and 0.25 on the
/// right, at volume 0.5.
std::vector<float> playedWith(embedded::BufferLayout tapLayout, embedded::BufferLayout layout,
                              std::uint32_t channels) {
    embedded::ServerSettings settings;
    settings.tapLayout = tapLayout;
    EngineRig rig(settings, {.uid = "speakers",
                             .framesPerCycle = EngineRig::frames,
                             .channels = channels,
                             .layout = layout});
    rig.server.setSource(rig.program, embedded::constant(std::vector<float>{0.5F, 0.25F}));
    EXPECT_TRUE(rig.manager->createTap(pid));
    rig.manager->setVolume(pid, 0.5F);
    auto played = rig.nextCycle();
    EXPECT_EQ(played.size(), EngineRig::frames * channels);
    EXPECT_EQ(rig.manager->getCallbackCount(pid), 1U);
    played.resize(4);
    return played;
}

TEST(AudioTapManager, PlaysBothChannelsWhereTapAndDeviceLayOutTheirBuffersAlike) {
    using embedded::BufferLayout;
    EXPECT_THAT(playedWith(BufferLayout::interleaved, BufferLayout::interleaved, 2),
                ElementsAre(0.25F, 0.125F, 0.25F, 0.125F));
    EXPECT_THAT(playedWith(BufferLayout::planar, BufferLayout::planar, 2),
                ElementsAre(0.25F, 0.125F, 0.25F, 0.125F));
}

TEST(AudioTapManager, PlanarTapsReachTheFirstChannelsOfASurroundDeviceAndClearTheOthers) {
    using embedded::BufferLayout;
    EXPECT_THAT(playedWith(BufferLayout::planar, BufferLayout::planar, 4),
                ElementsAre(0.25F, 0.125F, 0.0F, 0.0F));
    EXPECT_THAT(playedWith(BufferLayout::planar, BufferLayout::planar, 1),
                ElementsAre(0.25F, 0.25F, 0.25F, 0.25F));
}

TEST(AudioTapManager, BuffersAreCopiedAsTheyLieWhateverTheirChannelCounts) {
    using embedded::BufferLayout;
    // Two interleaved channels into one mono buffer of half the size: sample after sample.
    EXPECT_THAT(playedWith(BufferLayout::interleaved, BufferLayout::interleaved, 1),
                ElementsAre(0.25F, 0.125F, 0.25F, 0.125F));
}

TEST(AudioTapManager, LogsTheFirstCallbackOnce) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid));
    rig.log.clear();
    rig.server.step(rig.speakers, 3);
    rig.manager->flushLog();
    EXPECT_THAT(rig.log.texts(),
                ElementsAre("Audio buffers: in=1024samp/2ch out=1024samp/2ch bufs=1in/1out"));
}

TEST(AudioTapManager, DropsTheCostOfAProcessAtRestButNotItsTap) {
    embedded::ServerSettings settings;
    settings.restsWhenStepped = true;
    EngineRig rig(settings);
    ASSERT_TRUE(rig.manager->createTap(pid));
    rig.server.step(rig.speakers, 10);
    rig.server.pauseProgram(rig.program);
    rig.server.step(rig.speakers, 300);
    const std::uint64_t atRest = rig.manager->getCallbackCount(pid);
    EXPECT_GT(atRest, 60U) << "silent cycles until the meters have fallen";
    EXPECT_EQ(rig.manager->getAudioLevel(pid), (AudioLevel{0.0F, 0.0F}));
    rig.server.step(rig.speakers, 100);
    EXPECT_EQ(rig.manager->getCallbackCount(pid), atRest);
    rig.server.resumeProgram(rig.program);
    EXPECT_THAT(rig.nextCycle(), Each(0.5F));
}

// ---- the ways it can fail

TEST(AudioTapManager, ARefusedTapLeavesNothingBehind) {
    EngineRig rig;
    rig.server.failNext(Operation::createProcessTap, refusal);
    EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
    EXPECT_THAT(rig.log.texts(), ElementsAre("Failed to create audio capture: OSStatus -4321"));
    EXPECT_EQ(rig.log.messages()[0].level, LogLevel::error);
    EXPECT_FALSE(rig.manager->hasTap(pid));
    rig.expectNothingLeft();
}

void expectTapUndone(EngineRig& rig) {
    EXPECT_TRUE(rig.log.has(LogLevel::error, "Could not get default output device UID"));
    EXPECT_THAT(rig.lifecycleCalls(),
                ElementsAre("AudioHardwareCreateProcessTap", "AudioHardwareDestroyProcessTap"));
    EXPECT_FALSE(rig.manager->hasTap(pid));
    rig.expectNothingLeft();
}

TEST(AudioTapManager, WithoutADefaultOutputTheTapIsDestroyedAgain) {
    EngineRig rig;
    rig.server.setDefaultOutput(kAudioObjectUnknown);
    EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
    rig.server.setDefaultOutput(rig.speakers);
    expectTapUndone(rig);
}

TEST(AudioTapManager, WithAnUnreadableDefaultOutputTheTapIsDestroyedAgain) {
    EngineRig rig;
    rig.server.faults().add({.operation = Operation::getPropertyData,
                             .times = 1,
                             .selector = kAudioHardwarePropertyDefaultOutputDevice});
    EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
    expectTapUndone(rig);
}

TEST(AudioTapManager, WithADefaultOutputWhoseUIDCannotBeReadTheTapIsDestroyedAgain) {
    for (const FaultEffect effect : {FaultEffect::failure, FaultEffect::nullString}) {
        EngineRig rig;
        rig.server.faults().add({.operation = Operation::getPropertyData,
                                 .effect = effect,
                                 .times = 1,
                                 .selector = kAudioDevicePropertyDeviceUID});
        EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
        expectTapUndone(rig);
    }
}

TEST(AudioTapManager, ARefusedAggregateTakesTheTapWithIt) {
    EngineRig rig;
    rig.server.failNext(Operation::createAggregateDevice, refusal);
    EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
    EXPECT_TRUE(rig.log.has(LogLevel::error, "Audio device creation failed: -4321"));
    EXPECT_THAT(rig.lifecycleCalls(),
                ElementsAre("AudioHardwareCreateProcessTap", "AudioHardwareCreateAggregateDevice",
                            "AudioHardwareDestroyProcessTap"));
    rig.expectNothingLeft();
}

TEST(AudioTapManager, ARefusedIOProcUndoesAggregateAndTap) {
    EngineRig rig;
    rig.server.failNext(Operation::createIOProcID, refusal);
    EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
    EXPECT_TRUE(rig.log.has(LogLevel::error, "Audio callback setup failed: -4321"));
    EXPECT_THAT(rig.lifecycleCalls(),
                ElementsAre("AudioHardwareCreateProcessTap", "AudioHardwareCreateAggregateDevice",
                            "AudioDeviceCreateIOProcID", "AudioHardwareDestroyAggregateDevice",
                            "AudioHardwareDestroyProcessTap"));
    EXPECT_FALSE(rig.manager->hasTap(pid));
    rig.expectNothingLeft();
}

TEST(AudioTapManager, ANullIOProcIDCountsAsRefusedAndLogsStatusZero) {
    EngineRig rig;
    rig.server.faults().add(
        {.operation = Operation::createIOProcID, .effect = FaultEffect::nullProcID, .times = 1});
    EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
    EXPECT_TRUE(rig.log.has(LogLevel::error, "Audio callback setup failed: 0"));
    rig.expectNothingLeft();
}

TEST(AudioTapManager, ADeviceThatDoesNotStartUndoesEverythingInReverse) {
    EngineRig rig;
    rig.server.failNext(Operation::startDevice, refusal);
    EXPECT_FALSE(rig.manager->createTap(pid, rig.program));
    EXPECT_TRUE(rig.log.has(LogLevel::error, "Audio start failed: -4321"));
    EXPECT_THAT(rig.lifecycleCalls(),
                ElementsAre("AudioHardwareCreateProcessTap", "AudioHardwareCreateAggregateDevice",
                            "AudioDeviceCreateIOProcID", "AudioDeviceStart",
                            "AudioDeviceDestroyIOProcID", "AudioHardwareDestroyAggregateDevice",
                            "AudioHardwareDestroyProcessTap"));
    EXPECT_FALSE(rig.manager->hasTap(pid));
    EXPECT_EQ(rig.manager->getVolume(pid), std::nullopt);
    rig.expectNothingLeft();
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program)) << "and can be tried again";
}

TEST(AudioTapManager, AnUnreadableTapFormatLeavesTheDefaultsAndNoLogLine) {
    EngineRig rig;
    rig.server.faults().add(
        {.operation = Operation::getPropertyData, .times = 1, .selector = kAudioTapPropertyFormat});
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    for (const auto& text : rig.log.texts())
        EXPECT_EQ(text.find("Tap format"), std::string::npos);
    EXPECT_EQ(rig.state().sampleRate, 48000.0);
    EXPECT_EQ(rig.state().channels, 2);
}

TEST(AudioTapManager, TakesRateAndChannelsFromTheTapsFormat) {
    embedded::ServerSettings settings;
    settings.tapSampleRate = 44100;
    EngineRig rig(settings);
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    EXPECT_EQ(rig.state().sampleRate, 44100.0);
    EXPECT_EQ(rig.state().channels, 2);
    EXPECT_TRUE(rig.log.has(LogLevel::debug, "Tap format: 44100.000000Hz, 2ch"));
    rig.manager->setLimiterEnabled(pid, true);
    EXPECT_EQ(rig.state().limiter.get()->lookAheadSamples(), 44U) << "processors follow it";
}

TEST(AudioTapManager, ATapFormatThatIsTooShortCountsAsUnreadable) {
    EngineRig rig;
    rig.server.faults().add({.operation = Operation::getPropertyData,
                             .effect = FaultEffect::givesBytes,
                             .bytes = 12,
                             .times = 1,
                             .selector = kAudioTapPropertyFormat});
    EXPECT_TRUE(rig.manager->createTap(pid, rig.program));
    for (const auto& text : rig.log.texts())
        EXPECT_EQ(text.find("Tap format"), std::string::npos);
}

// ---- taking a tap down

TEST(AudioTapManager, RemoveTapDestroysTheTapFirstAndTheAggregateLast) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid));
    rig.forget();
    rig.manager->removeTap(pid);
    EXPECT_THAT(rig.lifecycleCalls(),
                ElementsAre("AudioHardwareDestroyProcessTap", "AudioDeviceStop",
                            "AudioDeviceDestroyIOProcID", "AudioHardwareDestroyAggregateDevice"));
    EXPECT_EQ(rig.server.journal().entries().size(), 4U);
    EXPECT_THAT(rig.log.texts(), ElementsAre("Removed tap for PID 100"));
    EXPECT_TRUE(rig.log.has(LogLevel::info, "Removed tap for PID 100"));
    EXPECT_FALSE(rig.manager->hasTap(pid));
    rig.expectNothingLeft();
}

TEST(AudioTapManager, RemovingAnUnknownProcessCallsAndLogsNothing) {
    EngineRig rig;
    rig.manager->removeTap(999);
    EXPECT_THAT(rig.server.journal().entries(), IsEmpty());
    EXPECT_THAT(rig.log.texts(), IsEmpty());
}

TEST(AudioTapManager, RemovingGoesOnWhateverTheAudioSystemAnswers) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid));
    for (const auto operation : {Operation::destroyProcessTap, Operation::stopDevice,
                                 Operation::destroyIOProcID, Operation::destroyAggregateDevice})
        rig.server.failNext(operation, refusal);
    rig.server.journal().clear();
    rig.manager->removeTap(pid);
    EXPECT_EQ(rig.server.journal().entries().size(), 4U);
    EXPECT_FALSE(rig.manager->hasTap(pid));
    // The IOProc that would not stop is still called; what it works on must still be there.
    rig.server.step(rig.speakers, 3);
    EXPECT_EQ(rig.state().callbackCount.load(), 3U);
}

TEST(AudioTapManager, RemoveAllTapsRemovesEach) {
    EngineRig rig;
    const auto other = rig.server.addProgram({.pid = 200, .source = embedded::constant(0.25F)});
    ASSERT_TRUE(rig.manager->createTap(pid, rig.program));
    ASSERT_TRUE(rig.manager->createTap(200, other));
    rig.manager->removeAllTaps();
    EXPECT_FALSE(rig.manager->hasTap(pid));
    EXPECT_FALSE(rig.manager->hasTap(200));
    EXPECT_TRUE(rig.server.holdings().taps.empty());
    EXPECT_THAT(rig.nextCycle(), Each(0.75F));
}

TEST(AudioTapManager, TheEndOfTheManagerGivesEveryProcessBack) {
    EngineRig rig;
    ASSERT_TRUE(rig.manager->createTap(pid));
    rig.server.step(rig.speakers);
    rig.manager.reset();
    rig.expectNothingLeft();
}

} // namespace
} // namespace orvanta::test
