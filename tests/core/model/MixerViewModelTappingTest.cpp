// The user takes an application's sound, or gives it back.

#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ToggleTap : public testing::Test, public ModelRig {
protected:
    ToggleTap() { startPassive(); }

    [[nodiscard]] AudioApp music() const { return app(7, "Music", "com.music"); }
};

TEST_F(ToggleTap, TakesAnApplicationThatNothingIsStoredFor) {
    model->toggleTap(music());
    EXPECT_THAT(tapping->calls, ElementsAre("createTap 7 1007"))
        << "the tap keeps its own defaults";
    EXPECT_THAT(model->tappedPIDs.get(), ElementsAre(7));
    EXPECT_EQ(model->tappedAppNames().at(7), "Music");
    EXPECT_EQ(model->tappedBundleIDs().at(7), "com.music");
    EXPECT_EQ(model->volumes.get().at(7), 1.0F);
    EXPECT_THAT(settings->calls, ElementsAre("save com.music"));
    EXPECT_EQ(stored("com.music"), defaultRecord());
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(ToggleTap, ChangesNothingWhenItIsRefused) {
    tapping->refusedTaps.insert(7);
    int announced = 0;
    const auto observation = model->objectWillChange.observe([&] { ++announced; });
    model->toggleTap(music());
    EXPECT_EQ(announced, 0);
    EXPECT_THAT(settings->calls, IsEmpty());
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(runLoop.timeToNextTask(), std::nullopt);
}

TEST_F(ToggleTap, BringsBackWhatTheUserHadGivenBack) {
    AppSettings record = defaultRecord();
    record.isTapped = false;
    record.volume = 0.25F;
    record.isMuted = true;
    record.outputDeviceUID = "speakers";
    record.eqPreset = EQPreset::bassBoost;
    record.compressorPreset = CompressorPreset::cinema;
    record.limiterEnabled = true;
    settings->records["com.music"] = record;
    model->toggleTap(music());
    EXPECT_EQ(model->volume(7), 0.25F);
    EXPECT_TRUE(model->isMuted(7));
    EXPECT_EQ(model->outputDeviceUID(7), "speakers");
    EXPECT_EQ(model->eqPreset(7), EQPreset::bassBoost);
    EXPECT_EQ(tapping->taps.at(7).compressor, CompressorPreset::cinema);
    EXPECT_TRUE(tapping->isLimiterEnabled(7));
    EXPECT_TRUE(log.has(LogLevel::info, "Restored settings for 'Music' vol=0.250000"));
    record.isTapped = true;
    EXPECT_EQ(stored("com.music"), record);
}

TEST_F(ToggleTap, UsesADeviceOnlyWhileItIsThere) {
    AppSettings record = defaultRecord();
    record.outputDeviceUID = "headphones";
    settings->records["com.music"] = record;
    model->toggleTap(music());
    EXPECT_THAT(tapping->calls, ElementsAre("createTap 7 1007", "setVolume 7 1"));
    EXPECT_EQ(stored("com.music").outputDeviceUID, std::nullopt);
}

TEST_F(ToggleTap, TakesNoNoticeOfMuteAll) {
    model->toggleMuteAll();
    model->toggleTap(music());
    EXPECT_FALSE(model->isMuted(7));
}

TEST_F(ToggleTap, GivesBackWithARecordThatKeepsEverything) {
    model->toggleTap(music());
    model->setVolume(7, 0.5F);
    model->setEQ(7, 1, 2.0F);
    model->setLimiterEnabled(7, true);
    forget();
    model->toggleTap(music());
    EXPECT_THAT(order, ElementsAre("save com.music", "removeTap 7"));
    AppSettings expected = defaultRecord();
    expected.isTapped = false;
    expected.volume = 0.5F;
    expected.eqPreset.emplace().gains[1] = 2.0F;
    expected.limiterEnabled = true;
    EXPECT_EQ(stored("com.music"), expected);
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
}

TEST_F(ToggleTap, StoresAFlatEqualiserAndACompressorThatIsOffAsTheyStand) {
    model->toggleTap(music());
    model->resetEQ(7);
    model->setCompressor(7, CompressorPreset::off);
    EXPECT_EQ(stored("com.music").eqPreset, std::nullopt);
    model->toggleTap(music());
    EXPECT_EQ(stored("com.music").eqPreset, EQPreset());
    EXPECT_EQ(stored("com.music").compressorPreset, CompressorPreset::off);
    model->toggleTap(music());
    EXPECT_TRUE(model->eqPreset(7).isFlat());
    EXPECT_THAT(model->eqSettings.get(), IsEmpty());
}

TEST_F(ToggleTap, StoresUnderTheKeyThatTheTapWasTakenWith) {
    model->toggleTap(music());
    model->toggleTap(app(7, "Music", "com.renamed"));
    EXPECT_THAT(settings->records, testing::SizeIs(1));
    EXPECT_FALSE(stored("com.music").isTapped);
}

TEST_F(ToggleTap, ForgetsWhatTheTapHadAndKeepsWhatDoesNoHarm) {
    model->toggleTap(music());
    model->setEQ(7, 0, 1.0F);
    model->setBalance(7, 0.5F);
    model->setCompressor(7, CompressorPreset::music);
    model->setLimiterEnabled(7, true);
    model->setNormalizationEnabled(7, true);
    model->setStereoWidth(7, 2.0F);
    model->setCrossfeed(7, 0.5F);
    model->setNoiseGate(7, true, -40.0F);
    model->routeApp(7, "speakers");
    model->toggleSolo(7);
    model->toggleMute(7);
    tapping->levels[7] = {.rms = 0.1F, .peak = 0.2F};
    tapping->gainReductions[7] = {1.0F, 1.0F, 1.0F};
    model->setConsoleVisible(true);
    runLoop.advance(Seconds(0.5));
    model->setConsoleVisible(false);

    model->toggleTap(music());
    for (const auto* map : {&model->volumes, &model->audioLevels, &model->balances})
        EXPECT_THAT(map->get(), IsEmpty());
    EXPECT_THAT(model->mutedPIDs.get(), IsEmpty());
    EXPECT_THAT(model->appOutputDevices.get(), IsEmpty());
    EXPECT_THAT(model->eqSettings.get(), IsEmpty());
    EXPECT_THAT(model->compressorSettings.get(), IsEmpty());
    EXPECT_THAT(model->tappedAppNames(), IsEmpty());
    EXPECT_THAT(model->tappedBundleIDs(), IsEmpty());
    EXPECT_TRUE(model->limiterEnabled.get().at(7));
    EXPECT_TRUE(model->normalizationEnabled.get().at(7));
    EXPECT_EQ(model->stereoWidths.get().at(7), 2.0F);
    EXPECT_EQ(model->crossfeedAmounts.get().at(7), 0.5F);
    EXPECT_TRUE(model->noiseGateEnabled.get().at(7));
    EXPECT_EQ(model->noiseGateThresholds.get().at(7), -40.0F);
    EXPECT_THAT(model->soloedPIDs.get(), ElementsAre(7));
    EXPECT_TRUE(model->compressorGainReduction.get().contains(7));
    EXPECT_TRUE(model->audioRmsLevels.get().contains(7));
}

TEST_F(ToggleTap, EndsARecordingWithoutANotice) {
    model->toggleTap(music());
    model->lastRecordingURL.set("/records/earlier.wav");
    model->startRecording(7);
    forget();
    model->toggleTap(music());
    EXPECT_THAT(tapping->calls, ElementsAre("removeTap 7", "stopRecording 7"));
    EXPECT_THAT(model->recordingPIDs.get(), IsEmpty());
    EXPECT_THAT(model->recordingDurations.get(), IsEmpty());
    EXPECT_EQ(model->lastRecordingURL.get(), "/records/earlier.wav");
    EXPECT_FALSE(model->showRecordingComplete.get());
}

TEST_F(ToggleTap, ForgetsWhetherTheTapHasSounded) {
    tap(7, "Music", "com.music");
    tapping->levels[7] = {};
    tapping->diagnostics[7] = {.inPeak = 0.5F};
    model->setPopoverVisible(true);
    runLoop.advance(Seconds(480.0 / 60.0));
    tapping->diagnostics[7].inPeak = 0.0F;
    runLoop.advance(Seconds(480.0 / 60.0));
    ASSERT_THAT(model->tapWatch().hasReceivedAudio, ElementsAre(7));
    ASSERT_EQ(model->tapWatch().silentSinceAudioCount.at(7), 1);
    model->toggleTap(music());
    EXPECT_THAT(model->tapWatch().hasReceivedAudio, IsEmpty());
    EXPECT_THAT(model->tapWatch().silentSinceAudioCount, IsEmpty());
}

TEST_F(ToggleTap, TakesTheApplicationOutOfTheListItself) {
    list(7, "Music", "com.music");
    refresh();
    const auto observation = model->tappedPIDs.observe([&](const PIDSet&) {
        list(8, "Video");
        refresh();
    });
    model->toggleTap(model->audioApps.get().front());
    EXPECT_EQ(model->tappedAppNames().at(7), "Music");
    EXPECT_EQ(model->tappedBundleIDs().at(7), "com.music");
}

TEST_F(ToggleTap, StartsAndStopsTheLevelTimer) {
    model->toggleTap(music());
    EXPECT_EQ(runLoop.timeToNextTask(), Seconds(0.125));
    model->toggleTap(music());
    EXPECT_EQ(runLoop.timeToNextTask(), std::nullopt);
}

} // namespace
} // namespace orvanta::test
