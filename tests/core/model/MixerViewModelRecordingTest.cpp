// Recordings as the user sees them.

#include "tests/support/EngineRig.h"
#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class ARecording : public testing::Test, public ModelRig {
protected:
    ARecording() {
        startPassive();
        model->recordingSaveDirectory.set("/records");
        tap(7, "Music");
    }
};

TEST_F(ARecording, IsBegunWithTheNameFormatFolderAndModeOfTheMoment) {
    model->recordingFormat.set(RecordingFormat::m4a);
    model->recordingMode.set(RecordingMode::both);
    model->showRecordingComplete.set(true);
    const auto file = model->startRecording(7);
    EXPECT_THAT(tapping->calls, ElementsAre("startRecording 7 Music m4a /records both"));
    EXPECT_EQ(file, "/records/Music_7") << "the processed one";
    EXPECT_TRUE(model->isRecording(7));
    EXPECT_EQ(model->recordingDurations.get().at(7), 0.0);
    EXPECT_FALSE(model->showRecordingComplete.get());
}

TEST_F(ARecording, HasTheOriginalForItsFileWhereThereIsNoOther) {
    model->recordingMode.set(RecordingMode::original);
    EXPECT_EQ(model->startRecording(7), "/records/Music_7_original");
    EXPECT_EQ(model->stopRecording(7), "/records/Music_7_original");
    EXPECT_EQ(model->lastRecordingURL.get(), "/records/Music_7_original");
}

TEST_F(ARecording, IsNoneWhenNoFileCouldBeBegun) {
    tapping->nextRecording[7] = {};
    model->showRecordingComplete.set(true);
    EXPECT_EQ(model->startRecording(7), std::nullopt);
    EXPECT_FALSE(model->isRecording(7));
    EXPECT_THAT(model->recordingDurations.get(), IsEmpty());
    EXPECT_TRUE(model->showRecordingComplete.get());
}

TEST_F(ARecording, TakesItsNameFromTheListWhereNothingIsTapped) {
    list(8, "Video");
    refresh();
    model->startRecording(8);
    EXPECT_THAT(tapping->calls, ElementsAre("startRecording 8 Video wav /records processed"));
}

TEST_F(ARecording, IsNotBegunForAProcessWithoutAName) {
    EXPECT_EQ(model->startRecording(99), std::nullopt);
    EXPECT_THAT(tapping->calls, IsEmpty());
}

TEST_F(ARecording, IsToldOfForEightSecondsWhenItIsFinished) {
    model->toggleRecording(7);
    model->toggleRecording(7);
    EXPECT_FALSE(model->isRecording(7));
    EXPECT_THAT(model->recordingDurations.get(), IsEmpty());
    EXPECT_EQ(model->lastRecordingURL.get(), "/records/Music_7");
    EXPECT_EQ(model->lastRecordingAppName.get(), "Music");
    EXPECT_TRUE(model->showRecordingComplete.get());
    runLoop.advance(Seconds(7.99));
    EXPECT_TRUE(model->showRecordingComplete.get());
    runLoop.advance(Seconds(0.01));
    EXPECT_FALSE(model->showRecordingComplete.get());
    EXPECT_EQ(model->lastRecordingURL.get(), "/records/Music_7");
}

TEST_F(ARecording, LeavesTheNoticeOfALaterOneUp) {
    tap(8, "Video");
    model->startRecording(7);
    model->startRecording(8);
    model->stopRecording(7);
    runLoop.advance(Seconds(5.0));
    model->stopRecording(8);
    runLoop.advance(Seconds(3.0));
    EXPECT_TRUE(model->showRecordingComplete.get());
    runLoop.advance(Seconds(5.0));
    EXPECT_FALSE(model->showRecordingComplete.get());
}

TEST_F(ARecording, LeavesNothingBehindWhenTheModelEndsBeforeItsNotice) {
    model->startRecording(7);
    model->stopRecording(7);
    model.reset();
    runLoop.advance(Seconds(8.0));
}

TEST_F(ARecording, ThatIsNotThereStillClearsItsTraces) {
    model->recordingPIDs.set({7});
    model->recordingDurations.set({{7, 3.0}});
    model->lastRecordingURL.set("/before");
    tapping->nextRecording[7] = {};
    EXPECT_EQ(model->stopRecording(7), std::nullopt);
    EXPECT_THAT(model->recordingPIDs.get(), IsEmpty());
    EXPECT_THAT(model->recordingDurations.get(), IsEmpty());
    EXPECT_EQ(model->lastRecordingURL.get(), "/before");
    EXPECT_FALSE(model->showRecordingComplete.get());
}

TEST_F(ARecording, OfAProcessThatIsInNoListEndsWithoutAName) {
    tapping->createTap(9, std::nullopt);
    tapping->startRecording(9, "Ghost", RecordingFormat::wav, "/records", RecordingMode::processed);
    EXPECT_EQ(model->stopRecording(9), "/records/Ghost_9");
    EXPECT_EQ(model->lastRecordingAppName.get(), "");
}

TEST_F(ARecording, ShowsHowLongItIsAtEachTick) {
    model->startRecording(7);
    tapping->recordingDurations[7] = 12.5;
    int told = 0;
    const auto observation = model->recordingDurations.observe([&](const auto&) { ++told; });
    runLoop.advance(Seconds(0.125));
    EXPECT_EQ(model->recordingDurations.get().at(7), 12.5);
    EXPECT_EQ(told, 1);
}

TEST_F(ARecording, EndsAtItsLimitAsIfByHand) {
    model->startRecording(7);
    tapping->recordingDurations[7] = 7199.9;
    runLoop.advance(Seconds(0.125));
    EXPECT_TRUE(model->isRecording(7));
    tapping->recordingDurations[7] = 7200.0;
    runLoop.advance(Seconds(0.125));
    EXPECT_FALSE(model->isRecording(7));
    EXPECT_EQ(model->lastRecordingURL.get(), "/records/Music_7");
    EXPECT_EQ(model->lastRecordingAppName.get(), "Music");
    EXPECT_TRUE(model->showRecordingComplete.get());
}

TEST_F(ARecording, EndsAtTheFirstPollWithALimitOfNothing) {
    model->maxRecordingDuration.set(0.0);
    model->startRecording(7);
    runLoop.advance(Seconds(0.125));
    EXPECT_FALSE(model->isRecording(7));
}

TEST_F(ARecording, OfTheOriginalAloneHasNoDurationAndNoLimit) {
    model->recordingMode.set(RecordingMode::original);
    model->startRecording(7);
    tapping->recordingDurations[7] = 9000.0;
    runLoop.advance(Seconds(60.0));
    EXPECT_TRUE(model->isRecording(7));
    EXPECT_EQ(model->recordingDurations.get().at(7), 0.0);
}

TEST_F(ARecording, HasASizeInWords) {
    EXPECT_EQ(model->estimatedFileSize(1.0), 384000);
    EXPECT_EQ(model->formattedFileSize(60.0), "22.0 MB");
    EXPECT_EQ(model->formattedFileSize(3000.0), "1.07 GB");
    model->recordingFormat.set(RecordingFormat::m4a);
    EXPECT_EQ(model->estimatedFileSize(1.0), 32000);
    EXPECT_EQ(model->formattedFileSize(2.0), "62 KB");
    EXPECT_EQ(model->formattedFileSize(32.767), "1024 KB") << "just below a megabyte";
    EXPECT_EQ(model->formattedFileSize(32.768), "1.0 MB");
    EXPECT_EQ(model->formattedFileSize(33554.4), "1024.0 MB");
    EXPECT_EQ(model->formattedFileSize(33554.432), "1.00 GB");
    EXPECT_EQ(model->formattedFileSize(0.0), "0 KB");
}

TEST_F(ARecording, HasASizeForAnyNumber) {
    EXPECT_EQ(model->estimatedFileSize(0.00001), 3) << "the rest is cut off";
    EXPECT_EQ(model->estimatedFileSize(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(model->estimatedFileSize(std::numeric_limits<double>::infinity()),
              std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(model->estimatedFileSize(-1.0), -384000);
}

TEST_F(ARecording, IsShownInTheFileManager) {
    model->revealLastRecording();
    EXPECT_THAT(fileViewer.shown, IsEmpty());
    model->startRecording(7);
    model->stopRecording(7);
    model->revealLastRecording();
    EXPECT_THAT(fileViewer.shown, ElementsAre("/records/Music_7"));
}

// With the real engine and real names.

class ARecordingOfARealTap : public testing::Test, public EngineRig {
protected:
    ARecordingOfARealTap() {
        workspace.applications[pid] = {.processIdentifier = pid, .localizedName = "Music"};
        model = MixerViewModel::create(platformWith(server), {}, true);
        model->refreshAppsSync();
        model->recordingSaveDirectory.set("/records");
        model->toggleTap(model->audioApps.get().front());
    }

    std::shared_ptr<MixerViewModel> model;
};

TEST_F(ARecordingOfARealTap, OfBothSidesHasAFileForEach) {
    model->recordingMode.set(RecordingMode::both);
    const auto file = model->startRecording(pid);
    ASSERT_TRUE(file);
    EXPECT_THAT(file->filename().string(), StartsWith("Music_processed_"));
    server.step(speakers, 10);
    EXPECT_EQ(model->stopRecording(pid), file);
    runLoop.advance(Seconds(1.0));
    const std::string original =
        std::string(file->filename()).replace(0, std::strlen("Music_processed"), "Music_original");
    EXPECT_EQ(audioFiles.count(), 2U);
    EXPECT_TRUE(audioFiles.exists(file->parent_path() / original));
}

TEST_F(ARecordingOfARealTap, LeavesACompleteFileWhenItsTapIsGivenBack) {
    const auto file = model->startRecording(pid);
    server.step(speakers, 10);
    runLoop.advance(Seconds(0.1));
    model->toggleTap(model->audioApps.get().front());
    EXPECT_FALSE(model->isRecording(pid));
    EXPECT_TRUE(audioFiles.file(*file).isFinished);
    EXPECT_EQ(audioFiles.file(*file).interleaved().size(), 2U * 10U * frames);
}

} // namespace
} // namespace orvanta::test
