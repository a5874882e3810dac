// What comes back by itself: taps that were there when this program stopped.

#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class ARestoredTap : public testing::Test, public ModelRig {
protected:
    ARestoredTap() { startPassive(); }
};

AppSettings fullRecord() {
    AppSettings record = ModelRig::defaultRecord();
    record.volume = 1.25F;
    record.isMuted = true;
    record.outputDeviceUID = "speakers";
    record.eqPreset = EQPreset::rock;
    record.balance = 0.25F;
    record.compressorPreset = CompressorPreset::vocal;
    record.limiterEnabled = true;
    record.normalizationEnabled = true;
    record.stereoWidth = 1.5F;
    record.crossfeedAmount = 0.3F;
    return record;
}

TEST_F(ARestoredTap, RestoresATapWithAllThatIsStored) {
    settings->records["com.music"] = fullRecord();
    list(7, "Music", "com.music", false);
    refresh();
    EXPECT_THAT(tapping->calls,
                ElementsAre("createTap 7 1007", "setVolume 7 1.25", "setMuted 7 true",
                            "routeToDevice 7 speakers", "setEQ 7 0 4", "setEQ 7 1 3", "setEQ 7 2 2",
                            "setEQ 7 3 0", "setEQ 7 4 -1", "setEQ 7 5 1", "setEQ 7 6 2",
                            "setEQ 7 7 4", "setEQ 7 8 3", "setEQ 7 9 2", "setBalance 7 0.25",
                            "setCompressor 7 on", "setLimiterEnabled 7 true",
                            "setNormalizationEnabled 7 true", "setStereoWidth 7 1.5",
                            "setCrossfeed 7 0.3"))
        << "playing or not";
    EXPECT_EQ(model->volume(7), 1.25F);
    EXPECT_TRUE(model->isMuted(7));
    EXPECT_EQ(model->outputDeviceUID(7), "speakers");
    EXPECT_EQ(model->eqPreset(7), EQPreset::rock);
    EXPECT_EQ(model->balance(7), 0.25F);
    EXPECT_EQ(model->getCompressor(7), CompressorPreset::vocal);
    EXPECT_TRUE(model->limiterEnabled.get().at(7));
    EXPECT_TRUE(model->normalizationEnabled.get().at(7));
    EXPECT_EQ(model->stereoWidths.get().at(7), 1.5F);
    EXPECT_EQ(model->crossfeedAmounts.get().at(7), 0.3F);
    EXPECT_THAT(settings->calls, IsEmpty());
    EXPECT_TRUE(log.has(LogLevel::info, "Restored tap for 'Music' (com.music) vol=1.250000"));
}

TEST_F(ARestoredTap, LeavesAloneWhatIsAsGoodAsNeutral) {
    AppSettings record = defaultRecord();
    record.eqPreset.emplace().gains[2] = 0.0499F;
    record.balance = -0.01F;
    record.compressorPreset = CompressorPreset::music;
    for (auto& band : record.compressorPreset->bands)
        band.ratio = 1.0499F;
    record.stereoWidth = 0.991F;
    record.crossfeedAmount = 0.01F;
    settings->records["Music"] = record;
    list(7, "Music");
    refresh();
    EXPECT_THAT(tapping->calls, ElementsAre("createTap 7 1007", "setVolume 7 1"));
    EXPECT_THAT(model->eqSettings.get(), IsEmpty());
    EXPECT_THAT(model->balances.get(), IsEmpty());
    EXPECT_THAT(model->compressorSettings.get(), IsEmpty());
    EXPECT_THAT(model->limiterEnabled.get(), IsEmpty());
    EXPECT_THAT(model->normalizationEnabled.get(), IsEmpty());
    EXPECT_THAT(model->stereoWidths.get(), IsEmpty());
    EXPECT_THAT(model->crossfeedAmounts.get(), IsEmpty());
}

TEST_F(ARestoredTap, RestoresWhatIsJustAboveNeutral) {
    AppSettings record = defaultRecord();
    record.eqPreset.emplace().gains[2] = -0.05F;
    record.balance = -0.0101F;
    record.compressorPreset = CompressorPreset::off;
    record.compressorPreset->bands[1].ratio = 1.05F;
    record.stereoWidth = 1.012F;
    record.crossfeedAmount = 0.0101F;
    settings->records["Music"] = record;
    list(7, "Music");
    refresh();
    EXPECT_THAT(tapping->calls, Contains("setEQ 7 2 -0.05"));
    EXPECT_THAT(tapping->calls, Contains("setBalance 7 -0.0101"));
    EXPECT_THAT(tapping->calls, Contains("setCompressor 7 on")) << "single precision";
    EXPECT_THAT(tapping->calls, Contains("setStereoWidth 7 1.012"));
    EXPECT_THAT(tapping->calls, Contains("setCrossfeed 7 0.0101"));
}

TEST_F(ARestoredTap, RestoresNoCrossfeedBelowNothing) {
    settings->records["Music"] = defaultRecord();
    settings->records["Music"].crossfeedAmount = -0.5F;
    list(7, "Music");
    refresh();
    EXPECT_THAT(tapping->calls, ElementsAre("createTap 7 1007", "setVolume 7 1"));
}

TEST_F(ARestoredTap, RestoresOnTheDefaultOutputWhatPlayedOnADeviceThatIsGone) {
    settings->records["Music"] = defaultRecord();
    settings->records["Music"].outputDeviceUID = "headphones";
    list(7, "Music");
    refresh();
    EXPECT_TRUE(model->isTapped(7));
    EXPECT_THAT(model->appOutputDevices.get(), IsEmpty());
    EXPECT_THAT(tapping->calls, Not(Contains("routeToDevice 7 headphones")));
    EXPECT_EQ(stored("Music").outputDeviceUID, "headphones") << "until the next save";
    model->setVolume(7, 0.5F);
    EXPECT_EQ(stored("Music").outputDeviceUID, std::nullopt);
}

TEST_F(ARestoredTap, RestoresOnTheDefaultOutputWhatADeviceRefuses) {
    settings->records["Music"] = defaultRecord();
    settings->records["Music"].outputDeviceUID = "speakers";
    tapping->refusedDevices.insert("speakers");
    list(7, "Music");
    refresh();
    EXPECT_TRUE(model->isTapped(7));
    EXPECT_THAT(model->appOutputDevices.get(), IsEmpty());
}

TEST_F(ARestoredTap, TriesARefusedRestoreAgainAtTheNextPass) {
    settings->records["Music"] = defaultRecord();
    tapping->refusedTaps.insert(7);
    list(7, "Music");
    refresh();
    refresh();
    EXPECT_THAT(tapping->calls, ElementsAre("createTap 7 1007", "createTap 7 1007"));
    EXPECT_THAT(log.texts(), IsEmpty());
    tapping->refusedTaps.clear();
    refresh();
    EXPECT_TRUE(model->isTapped(7));
}

TEST_F(ARestoredTap, DoesNotRestoreWhatWasGivenBack) {
    settings->records["Music"] = fullRecord();
    settings->records["Music"].isTapped = false;
    list(7, "Music");
    refresh();
    EXPECT_THAT(tapping->calls, IsEmpty());
}

TEST_F(ARestoredTap, ComesBackAfterARestartOfThisProgram) {
    tap(7, "Music", "com.music");
    model->setVolume(7, 0.4F);
    model->setNoiseGate(7, true, -40.0F);
    tapping = std::make_shared<RecordingTapping>();
    startPassive();
    refresh();
    EXPECT_TRUE(model->isTapped(7));
    EXPECT_EQ(model->volume(7), 0.4F);
    EXPECT_THAT(model->noiseGateEnabled.get(), IsEmpty()) << "the gate is never stored";
}

} // namespace
} // namespace orvanta::test
