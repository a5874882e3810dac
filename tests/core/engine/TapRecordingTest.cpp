#include "tests/core/engine/EngineNames.h"
#include "tests/support/RenderRig.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using Samples = std::vector<float>;
using Path = std::filesystem::path;

std::string nameOf(const std::optional<Path>& path) {
    return path ? path->filename().string() : "none";
}

/// A render callback whose recorders write into memory.
class RecordedCallback : public testing::Test {
protected:
    RecordedCallback() {
        rig.state().recorder = std::make_unique<AudioRecorder>(48000.0, 2, platform);
        rig.state().dryRecorder = std::make_unique<AudioRecorder>(48000.0, 2, platform);
    }

    void startBoth() {
        wet = rig.state().recorder->startRecording("wet", RecordingFormat::wav, folder.path());
        dry = rig.state().dryRecorder->startRecording("dry", RecordingFormat::wav, folder.path());
    }

    Samples written(const std::optional<Path>& path) {
        fakes.runLoop.advance(1s);
        return fakes.audioFiles.file(path.value()).interleaved();
    }

    TemporaryDirectory folder;
    EmbeddedAudioServer server;
    PlatformFakes fakes;
    Platform platform = fakes.platformWith(server);
    RenderRig rig;
    Buffers input;
    Buffers output;
    std::optional<Path> wet;
    std::optional<Path> dry;
};

TEST_F(RecordedCallback, GivesTheDryRecorderWhatTheProgramGaveAndTheWetOneWhatTheDeviceGets) {
    rig.state().volume.store(0.5F);
    startBoth();
    input.add(2, {1, 2, 3, 4});
    output.add(2, Samples(4));
    rig.render(input, output);
    EXPECT_THAT(written(dry), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(written(wet), ElementsAre(0.5F, 1, 1.5F, 2));
}

TEST_F(RecordedCallback, TakesPlanarBuffersForTheChannelsOfABlock) {
    rig.state().volume.store(2.0F);
    startBoth();
    input.add(1, {1, 3}).add(1, {2, 4});
    output.add(1, Samples(2)).add(1, Samples(2));
    rig.render(input, output);
    EXPECT_THAT(written(dry), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(written(wet), ElementsAre(2, 4, 6, 8));
}

TEST_F(RecordedCallback, ShowsTheDryRecorderInputsThatHaveNoOutput) {
    startBoth();
    input.add(1, {1, 3}).add(1, {2, 4});
    output.add(1, Samples(2));
    rig.render(input, output);
    EXPECT_THAT(written(dry), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(written(wet), ElementsAre(1, 3)) << "the lone output buffer, as it is";
}

TEST_F(RecordedCallback, GivesTheWetRecorderPairsOnly) {
    startBoth();
    input.add(2, {1, 2});
    output.add(2, Samples(2)).add(2, Samples(2, 7.0F));
    rig.render(input, output);
    EXPECT_THAT(written(wet), ElementsAre(1, 2));
}

TEST_F(RecordedCallback, PassesBuffersWithoutMemoryOver) {
    startBoth();
    input.addNull(2, 8);
    output.add(2, Samples(2));
    rig.render(input, output);
    EXPECT_THAT(written(dry), IsEmpty());
    EXPECT_THAT(written(wet), ElementsAre(0, 0)) << "the output as it stands";
}

TEST_F(RecordedCallback, MakesASideWithoutMemorySilent) {
    startBoth();
    input.addNull(1, 8).add(1, {2, 4});
    output.addNull(1, 8).add(1, Samples(2));
    rig.render(input, output);
    EXPECT_THAT(written(dry), ElementsAre(0, 2, 0, 4));
    EXPECT_THAT(written(wet), ElementsAre(0, 2, 0, 4));
}

TEST_F(RecordedCallback, RecordsNothingFromEmptyLists) {
    startBoth();
    rig.render(input, output);
    output.add(2, Samples(2, 7.0F));
    rig.render(input, output);
    EXPECT_THAT(written(dry), IsEmpty());
    EXPECT_THAT(written(wet), IsEmpty());
}

TEST_F(RecordedCallback, TakesABufferOfNoChannelsForNothing) {
    startBoth();
    input.add(0, {1, 2});
    output.add(0, Samples(2));
    rig.render(input, output);
    EXPECT_THAT(written(dry), IsEmpty());
}

TEST_F(RecordedCallback, KeepsEveryBitOfWhatTheProgramGave) {
    startBoth();
    const float nan = std::nanf("0x1234");
    const Samples odd{nan, -0.0F, 1e-42F, std::numeric_limits<float>::infinity()};
    input.add(2, odd);
    output.add(2, Samples(4));
    rig.render(input, output);
    const Samples back = written(dry);
    ASSERT_EQ(back.size(), odd.size());
    EXPECT_EQ(std::memcmp(back.data(), odd.data(), sizeof(float) * odd.size()), 0);
    EXPECT_EQ(written(wet), output[0]) << "and wet is what the device got, silence for no number";
}

TEST_F(RecordedCallback, LetsTheWetRecorderHearTheGateWhileTheMetersDoNot) {
    rig.state().noiseGateEnabled.store(true);
    rig.state().noiseGateThresholdLinear.store(0.5F);
    startBoth();
    const Samples quiet(1024, 0.25F);
    input.add(2, quiet);
    output.add(2, Samples(1024));
    for (int callback = 0; callback < 100; ++callback)
        rig.render(input, output);
    const Samples wetSamples = written(wet);
    ASSERT_EQ(wetSamples.size(), 100U * 1024U);
    EXPECT_EQ(wetSamples[8 * 1024], 0.25F);
    EXPECT_FLOAT_EQ(wetSamples[9 * 1024], 0.25F * 0.98F) << "the tenth begins to close it";
    EXPECT_EQ(wetSamples.back(), 0.0F);
    EXPECT_FLOAT_EQ(rig.state().peakLevel.load(), 0.25F);
    EXPECT_THAT(written(dry), Each(0.25F));
}

TEST_F(RecordedCallback, KeepsATapFromRestBecauseSilenceIsPartOfARecording) {
    rig.state().silentCallbackCount.store(20);
    ASSERT_TRUE(tapIsAtRest(&rig.ref()));
    startBoth();
    EXPECT_FALSE(tapIsAtRest(&rig.ref()));
    rig.state().recorder->stopRecording();
    EXPECT_FALSE(tapIsAtRest(&rig.ref())) << "the other side still records";
    rig.state().dryRecorder->stopRecording();
    EXPECT_TRUE(tapIsAtRest(&rig.ref()));
}

/// Recordings of a whole tap on an audio server.
class TapRecording : public testing::Test {
protected:
    TapRecording() { rig.manager->createTap(pid); }

    RecordingFiles start(RecordingMode mode) {
        return manager.startRecording(pid, "Music", RecordingFormat::wav, folder.path(), mode);
    }

    Samples written(const std::optional<Path>& path) {
        rig.runLoop.advance(1s);
        return rig.audioFiles.file(path.value()).interleaved();
    }

    TemporaryDirectory folder;
    EngineRig rig;
    AudioTapManager& manager = *rig.manager;
};

TEST_F(TapRecording, OfTheProcessedSideIsNamedAfterTheProgram) {
    const RecordingFiles files = start(RecordingMode::processed);
    EXPECT_THAT(nameOf(files.wet), StartsWith("Music_2"));
    EXPECT_EQ(files.dry, std::nullopt);
    EXPECT_EQ(rig.state().recordingMode, RecordingMode::processed);
}

TEST_F(TapRecording, OfTheOriginalSideSaysSoInItsName) {
    const RecordingFiles files = start(RecordingMode::original);
    EXPECT_EQ(files.wet, std::nullopt);
    EXPECT_THAT(nameOf(files.dry), StartsWith("Music_original_2"));
    EXPECT_EQ(rig.state().recordingMode, RecordingMode::original);
}

TEST_F(TapRecording, OfBothSidesMakesAFileOfEach) {
    const RecordingFiles files = start(RecordingMode::both);
    EXPECT_THAT(nameOf(files.wet), StartsWith("Music_processed_2"));
    EXPECT_THAT(nameOf(files.dry), StartsWith("Music_original_2"));
    EXPECT_EQ(manager.stopRecording(pid), files);
    EXPECT_EQ(rig.state().recordingMode, RecordingMode::processed) << "back at rest";
}

TEST_F(TapRecording, CarriesWhatIsHeardAndWhatTheProgramPlaysToTheBit) {
    manager.setVolume(pid, 0.7F);
    manager.setEQ(pid, 3, 5.0F);
    manager.setLimiterEnabled(pid, true);
    const RecordingFiles files = start(RecordingMode::both);
    Samples played;
    for (int cycle = 0; cycle < 20; ++cycle) {
        const Samples heard = rig.nextCycle();
        played.insert(played.end(), heard.begin(), heard.end());
    }
    EXPECT_EQ(written(files.wet), played);
    EXPECT_EQ(written(files.dry), Samples(played.size(), 0.5F));
}

TEST_F(TapRecording, CountsOnlyTheProcessedSideAsRecording) {
    EXPECT_FALSE(manager.isRecording(pid));
    start(RecordingMode::original);
    rig.runLoop.advance(3s);
    EXPECT_FALSE(manager.isRecording(pid));
    EXPECT_EQ(manager.recordingDuration(pid), 0.0);
    manager.stopRecording(pid);

    start(RecordingMode::processed);
    rig.runLoop.advance(3s);
    EXPECT_TRUE(manager.isRecording(pid));
    EXPECT_DOUBLE_EQ(manager.recordingDuration(pid), 3.0);
    manager.stopRecording(pid);
    EXPECT_FALSE(manager.isRecording(pid));
    EXPECT_EQ(manager.recordingDuration(pid), 0.0);
}

TEST_F(TapRecording, OfAnUnknownProcessIsNothing) {
    EXPECT_EQ(
        manager.startRecording(999, "X", RecordingFormat::wav, folder.path(), RecordingMode::both),
        RecordingFiles{});
    EXPECT_EQ(manager.stopRecording(999), RecordingFiles{});
    EXPECT_FALSE(manager.isRecording(999));
    EXPECT_EQ(manager.recordingDuration(999), 0.0);
    EXPECT_EQ(rig.audioFiles.count(), 0U);
}

TEST_F(TapRecording, StopsWhicheverSideRuns) {
    EXPECT_EQ(manager.stopRecording(pid), RecordingFiles{});
    const RecordingFiles files = start(RecordingMode::original);
    EXPECT_EQ(manager.stopRecording(pid), files);
}

TEST_F(TapRecording, OfOneSideGoesOnWhenTheOtherCannotBeMade) {
    rig.audioFiles.refuseNext("Permission denied");
    const RecordingFiles files = start(RecordingMode::both);
    EXPECT_EQ(files.wet, std::nullopt);
    ASSERT_TRUE(files.dry);
    rig.nextCycle();
    EXPECT_THAT(written(files.dry), Each(0.5F));
}

TEST_F(TapRecording, KeepsItsFilesWhenItIsStartedTwiceAndTakesTheNewMode) {
    const RecordingFiles files = start(RecordingMode::both);
    EXPECT_EQ(start(RecordingMode::original), RecordingFiles{});
    EXPECT_EQ(rig.state().recordingMode, RecordingMode::original);
    EXPECT_EQ(manager.stopRecording(pid), files);
}

TEST_F(TapRecording, GivesEachFileOfBothItsOwnTime) {
    rig.audioFiles.beforeEachCreate([this] { rig.wallClock.time += 1s; });
    const RecordingFiles files = start(RecordingMode::both);
    EXPECT_EQ(rig.state().dryRecorder->startTime().value() -
                  rig.state().recorder->startTime().value(),
              1s);
    EXPECT_NE(nameOf(files.wet).substr(sizeof("Music_processed_")),
              nameOf(files.dry).substr(sizeof("Music_original_")));
}

TEST_F(TapRecording, IsSilentOnTheProcessedSideOfAMutedTapAlone) {
    manager.setMuted(pid, true);
    const RecordingFiles files = start(RecordingMode::both);
    rig.nextCycle();
    EXPECT_THAT(written(files.wet), Each(0.0F));
    EXPECT_THAT(written(files.dry), Each(0.5F));
}

TEST_F(TapRecording, EndsWhenTheDeviceRefusesToStopItsRemovedTap) {
    const RecordingFiles files = start(RecordingMode::both);
    rig.server.failNext(embedded::Operation::stopDevice, -1);
    rig.server.failNext(embedded::Operation::destroyIOProcID, -1);
    manager.removeTap(pid);
    rig.runLoop.runUntilIdle();
    EXPECT_TRUE(rig.audioFiles.file(files.wet.value()).isFinished);
    EXPECT_TRUE(rig.audioFiles.file(files.dry.value()).isFinished);
}

TEST_F(TapRecording, GoesAtTheRateOfTheTap) {
    const auto files = start(RecordingMode::processed);
    EXPECT_EQ(rig.audioFiles.file(files.wet.value()).settings.sampleRate, 48000.0);
    EngineRig other({}, {.uid = "speakers",
                         .name = "Speakers",
                         .sampleRate = 96000.0,
                         .framesPerCycle = EngineRig::frames});
    other.manager->createTap(pid);
    const auto fast = other.manager->startRecording(pid, "Music", RecordingFormat::wav,
                                                    folder.path(), RecordingMode::processed);
    EXPECT_EQ(other.audioFiles.file(fast.wet.value()).settings.sampleRate, 96000.0);
}

TEST_F(TapRecording, IsFinishedWhenItsTapIsRemoved) {
    const RecordingFiles files = start(RecordingMode::both);
    rig.nextCycle();
    rig.runLoop.advance(100ms);
    rig.nextCycle(); // stays in the ring
    manager.removeTap(pid);
    for (const auto& path : {files.wet, files.dry}) {
        EXPECT_TRUE(rig.audioFiles.file(path.value()).isFinished);
        EXPECT_EQ(rig.audioFiles.file(path.value()).interleaved(),
                  Samples(EngineRig::frames * 2, 0.5F));
    }
}

/// The tap gets cycles until it is at rest.
class TapRecordingOfAPausedProgram : public testing::Test {
protected:
    TapRecordingOfAPausedProgram() {
        rig.manager->createTap(pid);
        rig.server.step(rig.speakers, 10);
        rig.server.pauseProgram(rig.program);
    }

    TemporaryDirectory folder;
    EngineRig rig{{.restsWhenStepped = true}};
};

TEST_F(TapRecordingOfAPausedProgram, CarriesItsSilence) {
    rig.server.step(rig.speakers, 300);
    const std::uint64_t atRest = rig.manager->getCallbackCount(pid);
    const auto files = rig.manager->startRecording(pid, "Music", RecordingFormat::wav,
                                                   folder.path(), RecordingMode::original);
    rig.server.step(rig.speakers, 100);
    EXPECT_EQ(rig.manager->getCallbackCount(pid), atRest + 100) << "woken, and kept awake";
    rig.manager->stopRecording(pid);
    rig.runLoop.runUntilIdle();
    EXPECT_EQ(rig.audioFiles.file(files.dry.value()).interleaved(),
              Samples(std::size_t{100} * EngineRig::frames * 2, 0.0F));
    rig.server.step(rig.speakers, 100);
    EXPECT_EQ(rig.manager->getCallbackCount(pid), atRest + 100) << "and at rest again";
}

TEST_F(TapRecordingOfAPausedProgram, WakesATapThatComesToRestWhileTheFileIsMade) {
    rig.audioFiles.beforeEachCreate([&] { rig.server.step(rig.speakers, 300); });
    rig.server.journal().clear();
    rig.manager->startRecording(pid, "Music", RecordingFormat::wav, folder.path(),
                                RecordingMode::processed);
    EXPECT_THAT(rig.lifecycleCalls(), ElementsAre("AudioDeviceStart"));
}

TEST_F(TapRecording, AsksNothingOfTheDeviceWhileItPlays) {
    rig.nextCycle();
    rig.server.journal().clear();
    start(RecordingMode::both);
    manager.stopRecording(pid);
    EXPECT_THAT(rig.lifecycleCalls(), IsEmpty());
}

TEST_F(TapRecording, IsOfferedByEveryTapAndIdleAtFirst) {
    EXPECT_TRUE(rig.state().recorder);
    EXPECT_TRUE(rig.state().dryRecorder);
    EXPECT_FALSE(rig.state().isRecording());
}

} // namespace
} // namespace orvanta::test
