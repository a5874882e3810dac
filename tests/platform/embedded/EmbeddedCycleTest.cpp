#include "tests/platform/embedded/GainTap.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace orvanta::embedded {
namespace {

using test::GainTap;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

DeviceSettings smallDevice(const std::string& uid) {
    return {.uid = uid, .sampleRate = 1000, .framesPerCycle = 4};
}

TEST(EmbeddedCycle, PlaysAProgramOnItsDevice) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    server.addProgram({.pid = 100, .source = samples({0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F}, 2)});

    server.step(speakers);

    EXPECT_THAT(server.played(speakers), ElementsAre(0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F, 0, 0));
}

TEST(EmbeddedCycle, AddsProgramsUp) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    server.addProgram({.pid = 100, .source = constant(0.25F)});
    server.addProgram({.pid = 101, .source = constant({0.5F, -0.25F})});

    server.step(speakers);

    EXPECT_THAT(server.played(speakers, 0), Each(0.75F));
    EXPECT_THAT(server.played(speakers, 1), Each(0.0F));
}

TEST(EmbeddedCycle, AMutedTapLeadsTheSoundThroughTheIOProc) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto music = server.addProgram({.pid = 100, .source = constant(0.5F)});

    GainTap tap(server, {music}, "speakers", 0.5F);
    server.step(speakers);
    ASSERT_EQ(tap.start(), noErr);
    server.step(speakers);
    tap.stop();
    server.step(speakers);

    const auto left = server.played(speakers, 0);
    EXPECT_THAT(left, ElementsAre(0, 0, 0, 0, 0.25F, 0.25F, 0.25F, 0.25F, 0, 0, 0, 0));
}

TEST(EmbeddedCycle, TheIOProcHearsTheVerySamplesOfTheCycleItPlays) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 64});
    const auto music = server.addProgram({.pid = 100, .source = counting(1)});
    GainTap tap(server, {music}, "speakers", 1);
    tap.start();

    server.step(speakers, 10);

    std::vector<float> expected;
    for (int frame = 0; frame < 640; ++frame)
        expected.push_back(static_cast<float>(frame));
    EXPECT_THAT(server.played(speakers, 0), ElementsAreArray(expected));
    EXPECT_THAT(server.played(speakers, 1), ElementsAreArray(expected));
}

TEST(EmbeddedCycle, TwoTappedProgramsAndOneUntappedMix) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto first = server.addProgram({.pid = 100, .source = constant(0.5F)});
    const auto second = server.addProgram({.pid = 101, .source = constant(0.25F)});
    server.addProgram({.pid = 102, .source = constant(0.125F)});
    GainTap half(server, {first}, "speakers", 0.5F);
    GainTap twice(server, {second}, "speakers", 2);
    half.start();
    twice.start();

    server.step(speakers);

    EXPECT_THAT(server.played(speakers), Each(0.25F + 0.5F + 0.125F));
}

TEST(EmbeddedCycle, ATapOfSeveralProcessesMixesThem) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto first = server.addProgram({.pid = 100, .source = constant({0.5F, 0.0F})});
    const auto second = server.addProgram({.pid = 101, .source = constant({0.0F, 0.25F})});
    GainTap tap(server, {first, second}, "speakers");
    tap.start();

    server.step(speakers);

    EXPECT_THAT(server.played(speakers, 0), Each(0.5F));
    EXPECT_THAT(server.played(speakers, 1), Each(0.25F));
}

TEST(EmbeddedCycle, AnUnmutedTapHearsAndTheProgramPlaysOn) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto music = server.addProgram({.pid = 100, .source = constant(0.5F)});
    GainTap tap(server, {music}, "speakers", 0.25F, CATapMuteBehavior::unmuted);
    tap.start();

    server.step(speakers);

    EXPECT_THAT(server.played(speakers), Each(0.5F + 0.125F));
}

TEST(EmbeddedCycle, ATapThatMutesWhenTappedMutesOnlyWhileSomebodyListens) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto music = server.addProgram({.pid = 100, .source = constant(0.5F)});
    GainTap tap(server, {music}, "speakers", 0.25F, CATapMuteBehavior::mutedWhenTapped);

    server.step(speakers);
    EXPECT_THAT(server.played(speakers), Each(0.5F));
    server.clearPlayed(speakers);
    tap.start();
    server.step(speakers);
    EXPECT_THAT(server.played(speakers), Each(0.125F));
    server.clearPlayed(speakers);
    tap.stop();
    server.step(speakers);
    EXPECT_THAT(server.played(speakers), Each(0.5F));
}

TEST(EmbeddedCycle, DestroyingTheTapGivesTheProgramItsOwnPathBack) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto music = server.addProgram({.pid = 100, .source = constant(0.5F)});
    GainTap tap(server, {music}, "speakers", 0.25F);
    tap.start();

    server.destroyProcessTap(tap.tap());
    server.step(speakers);

    EXPECT_THAT(server.played(speakers), Each(0.5F));
    EXPECT_EQ(tap.calls(), 1U);
}

TEST(EmbeddedCycle, ATappedProgramPlaysOnTheDeviceOfTheAggregate) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto headphones = server.addDevice(smallDevice("headphones"));
    const auto music = server.addProgram({.pid = 100, .source = constant(0.5F)});
    GainTap tap(server, {music}, "headphones", 0.5F);
    tap.start();

    server.stepAll();

    EXPECT_THAT(server.played(speakers), Each(0.0F));
    EXPECT_THAT(server.played(headphones), Each(0.25F));
}

TEST(EmbeddedCycle, TimePassesForAMutedProgramThatNobodyHears) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto music = server.addProgram({.pid = 100, .source = counting(1)});
    GainTap tap(server, {music}, "speakers");

    server.step(speakers);
    tap.start();
    server.step(speakers);

    EXPECT_THAT(server.played(speakers, 0), ElementsAre(0, 0, 0, 0, 4, 5, 6, 7));
}

TEST(EmbeddedCycle, APausedProgramIsSilentAndGoesOnWhereItWas) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice({.uid = "speakers", .framesPerCycle = 2});
    const auto music = server.addProgram({.pid = 100, .source = counting(1), .playing = false});

    server.startProgram(music);
    server.step(speakers);
    server.pauseProgram(music);
    server.step(speakers);
    server.resumeProgram(music);
    server.step(speakers);
    server.startProgram(music);
    server.step(speakers);

    EXPECT_THAT(server.played(speakers, 0), ElementsAre(0, 1, 0, 0, 2, 3, 0, 1));
}

TEST(EmbeddedCycle, AProgramThatExitsLeavesItsTapSilent) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto music = server.addProgram({.pid = 100, .source = constant(0.5F)});
    GainTap tap(server, {music}, "speakers");
    tap.start();
    EXPECT_TRUE(server.exitProgram(music));
    EXPECT_FALSE(server.exitProgram(music));

    server.step(speakers);

    EXPECT_THAT(server.played(speakers), Each(0.0F));
    EXPECT_EQ(tap.calls(), 1U);
}

TEST(EmbeddedCycle, SeveralIOProcsOnOneDeviceAddUp) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto fill = [](AudioObjectID, const AudioTimeStamp*, const AudioBufferList* input,
                         const AudioTimeStamp*, AudioBufferList* output, const AudioTimeStamp*,
                         void* clientData) -> OSStatus {
        const AudioBuffer& buffer = (*output)[0];
        const bool asItShouldBe =
            input->count() == 0 &&
            std::all_of(buffer.samples(), buffer.samples() + buffer.sampleCount(),
                        [](float sample) { return sample == 0; });
        if (asItShouldBe)
            std::fill_n(buffer.samples(), buffer.sampleCount(), *static_cast<float*>(clientData));
        return noErr;
    };
    float quarter = 0.25F;
    float half = 0.5F;
    for (float* level : {&quarter, &half}) {
        AudioDeviceIOProcID proc = nullptr;
        ASSERT_EQ(server.createIOProcID(speakers, {fill, level}, proc), noErr);
        ASSERT_EQ(server.startDevice(speakers, proc), noErr);
    }

    server.step(speakers);

    EXPECT_THAT(server.played(speakers), Each(0.75F));
}

TEST(EmbeddedCycle, AnAggregateHasAVolumeOfItsOwn) {
    EmbeddedAudioServer server({.aggregateVolumes = {{.element = 0, .scalar = 0.5F}}});
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto music = server.addProgram({.pid = 100, .source = constant(0.5F)});
    GainTap tap(server, {music}, "speakers");
    tap.start();

    server.step(speakers);
    EXPECT_THAT(server.played(speakers), Each(0.0625F));
    server.clearPlayed(speakers);
    const float unity = 1;
    EXPECT_EQ(server.setPropertyData(
                  tap.aggregate(),
                  {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, 0},
                  sizeof unity, &unity),
              noErr);
    server.step(speakers);
    EXPECT_THAT(server.played(speakers), Each(0.5F));
}

/// Every pairing of layouts carries left to left and right to right.
struct Layouts {
    BufferLayout tap;
    BufferLayout device;
};

class EmbeddedLayouts : public testing::TestWithParam<Layouts> {};

TEST_P(EmbeddedLayouts, CarryEachChannelToItsOwn) {
    EmbeddedAudioServer server({.tapLayout = GetParam().tap});
    const auto speakers =
        server.addDevice({.uid = "speakers", .framesPerCycle = 3, .layout = GetParam().device});
    const auto music = server.addProgram({.pid = 100, .source = samples({1, -1, 2, -2, 3, -3}, 2)});
    GainTap tap(server, {music}, "speakers");
    tap.start();

    server.step(speakers);

    EXPECT_THAT(server.played(speakers), ElementsAre(1, -1, 2, -2, 3, -3));
    const bool planarTap = GetParam().tap == BufferLayout::planar;
    const bool planarDevice = GetParam().device == BufferLayout::planar;
    EXPECT_EQ(tap.shape().inputBuffers, planarTap ? 2U : 1U);
    EXPECT_EQ(tap.shape().inputChannels, planarTap ? 1U : 2U);
    EXPECT_EQ(tap.shape().outputBuffers, planarDevice ? 2U : 1U);
    EXPECT_EQ(tap.shape().outputChannels, planarDevice ? 1U : 2U);
    EXPECT_EQ(tap.shape().outputBytes, planarDevice ? 12U : 24U);
}

INSTANTIATE_TEST_SUITE_P(, EmbeddedLayouts,
                         testing::Values(Layouts{BufferLayout::interleaved,
                                                 BufferLayout::interleaved},
                                         Layouts{BufferLayout::interleaved, BufferLayout::planar},
                                         Layouts{BufferLayout::planar, BufferLayout::interleaved},
                                         Layouts{BufferLayout::planar, BufferLayout::planar}));

TEST(EmbeddedCycle, AMonoDeviceGetsTheMean) {
    EmbeddedAudioServer server;
    const auto speaker = server.addDevice({.uid = "speaker", .framesPerCycle = 2, .channels = 1});
    server.addProgram({.pid = 100, .source = constant({0.5F, 0.25F})});

    server.step(speaker);

    EXPECT_THAT(server.played(speaker), ElementsAre(0.375F, 0.375F));
}

TEST(EmbeddedCycle, AnIOProcMaySpoilItsBufferRecordsWithoutHarm) {
    EmbeddedAudioServer server;
    const auto speakers = server.addDevice(smallDevice("speakers"));
    const auto spoil = [](AudioObjectID, const AudioTimeStamp*, const AudioBufferList*,
                          const AudioTimeStamp*, AudioBufferList* output, const AudioTimeStamp*,
                          void*) -> OSStatus {
        if ((*output)[0].mDataByteSize == 32)
            (*output)[0].samples()[0] = 0.5F;
        (*output)[0] = {};
        return kAudioHardwareUnspecifiedError;
    };
    AudioDeviceIOProcID proc = nullptr;
    server.createIOProcID(speakers, {spoil, nullptr}, proc);
    server.startDevice(speakers, proc);

    server.step(speakers, 2);

    EXPECT_THAT(server.played(speakers, 0), ElementsAre(0.5F, 0, 0, 0, 0.5F, 0, 0, 0));
}

} // namespace
} // namespace orvanta::embedded
