// The commands for one process: what they set, in which order, and what they store.

#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace orvanta::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class AMixerCommand : public testing::Test, public ModelRig {
protected:
    AMixerCommand() {
        startPassive();
        tap(7, "Music", "com.music");
    }
};

TEST_F(AMixerCommand, SetsTheMapThenTheTapThenTheStore) {
    const auto whole = model->objectWillChange.observe([&] { order.emplace_back("map"); });
    const auto inOrder = [&](const std::string& call) {
        return ElementsAre("map", call, "save com.music");
    };
    const auto commanded = [&](const std::function<void()>& command) {
        order.clear();
        command();
        return order;
    };
    EXPECT_THAT(commanded([&] { model->setVolume(7, 0.5F); }), inOrder("setVolume 7 0.5"));
    EXPECT_THAT(commanded([&] { model->toggleMute(7); }), inOrder("setMuted 7 true"));
    EXPECT_THAT(commanded([&] { model->toggleMute(7); }), inOrder("setMuted 7 false"));
    EXPECT_THAT(commanded([&] { model->setEQ(7, 1, 2.0F); }), inOrder("setEQ 7 1 2"));
    EXPECT_THAT(commanded([&] { model->setBalance(7, 0.5F); }), inOrder("setBalance 7 0.5"));
    EXPECT_THAT(commanded([&] { model->setCompressor(7, CompressorPreset::music); }),
                inOrder("setCompressor 7 on"));
    EXPECT_THAT(commanded([&] { model->setLimiterEnabled(7, true); }),
                inOrder("setLimiterEnabled 7 true"));
    EXPECT_THAT(commanded([&] { model->setNormalizationEnabled(7, true); }),
                inOrder("setNormalizationEnabled 7 true"));
    EXPECT_THAT(commanded([&] { model->setStereoWidth(7, 2.0F); }), inOrder("setStereoWidth 7 2"));
    EXPECT_THAT(commanded([&] { model->setCrossfeed(7, 0.5F); }), inOrder("setCrossfeed 7 0.5"));
    EXPECT_THAT(commanded([&] { model->resetEQ(7); }),
                testing::AllOf(testing::SizeIs(12), Contains("setEQ 7 9 0")));
    EXPECT_EQ(order.front(), "map");
    EXPECT_EQ(order.back(), "save com.music");
    EXPECT_THAT(commanded([&] { model->setNoiseGate(7, true, -40.0F); }),
                ElementsAre("map", "map", "setNoiseGate 7 true -40"));
    EXPECT_THAT(commanded([&] { model->routeApp(7, "speakers"); }),
                ElementsAre("routeToDevice 7 speakers", "map", "save com.music"))
        << "a route is known when it is made";
    EXPECT_EQ(model->volume(7), 0.5F);
    EXPECT_EQ(stored("com.music").volume, 0.5F);
}

TEST_F(AMixerCommand, StoresTheWholeRecordEachTime) {
    model->setVolume(7, 0.5F);
    model->toggleMute(7);
    model->setEQ(7, 4, -3.0F);
    model->setBalance(7, -0.5F);
    model->setCompressor(7, CompressorPreset::nightMode);
    model->setLimiterEnabled(7, true);
    model->setNormalizationEnabled(7, true);
    model->setStereoWidth(7, 0.5F);
    model->setCrossfeed(7, 0.25F);
    model->routeApp(7, "speakers");
    AppSettings expected = defaultRecord();
    expected.volume = 0.5F;
    expected.isMuted = true;
    expected.outputDeviceUID = "speakers";
    expected.eqPreset.emplace().gains[4] = -3.0F;
    expected.balance = -0.5F;
    expected.compressorPreset = CompressorPreset::nightMode;
    expected.limiterEnabled = true;
    expected.normalizationEnabled = true;
    expected.stereoWidth = 0.5F;
    expected.crossfeedAmount = 0.25F;
    EXPECT_EQ(stored("com.music"), expected);
    EXPECT_THAT(settings->calls, testing::SizeIs(10));
    EXPECT_THAT(tapping->calls,
                ElementsAre("setVolume 7 0.5", "setMuted 7 true", "setEQ 7 4 -3",
                            "setBalance 7 -0.5", "setCompressor 7 on", "setLimiterEnabled 7 true",
                            "setNormalizationEnabled 7 true", "setStereoWidth 7 0.5",
                            "setCrossfeed 7 0.25", "routeToDevice 7 speakers"));
}

TEST_F(AMixerCommand, StoresAFlatEqualiserAndACompressorThatIsOffAsAbsent) {
    model->setEQ(7, 0, 0.0499F);
    CompressorPreset nearlyOff = CompressorPreset::music;
    for (auto& band : nearlyOff.bands)
        band.ratio = 1.04F;
    model->setCompressor(7, nearlyOff);
    EXPECT_EQ(stored("com.music").eqPreset, std::nullopt);
    EXPECT_EQ(stored("com.music").compressorPreset, std::nullopt);
    EXPECT_EQ(model->eqPreset(7).gains[0], 0.0499F) << "as it stands in the map";
    EXPECT_EQ(model->getCompressor(7), nearlyOff);
}

TEST_F(AMixerCommand, SavesAnApplicationWithoutAnIdentifierUnderItsName) {
    tap(8, "Game");
    model->setVolume(8, 0.5F);
    EXPECT_THAT(settings->calls, ElementsAre("save Game"));
}

TEST_F(AMixerCommand, TakesWhatThePublishedValuesThemselvesHold) {
    tap(8, "Video");
    const auto observation = model->compressorSettings.observe([](const auto&) {});
    model->setCompressor(7, CompressorPreset::vocal);
    model->setCompressor(8, model->compressorSettings.get().at(7));
    EXPECT_EQ(tapping->taps.at(8).compressor, CompressorPreset::vocal);
}

TEST_F(AMixerCommand, MayGiveRiseToAnotherInAnObserver) {
    tap(8, "Video");
    bool isNested = false;
    const auto observation = model->mutedPIDs.observe([&](const PIDSet&) {
        if (!std::exchange(isNested, true))
            model->toggleMute(8);
    });
    model->toggleMute(7);
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(7, 8));
    EXPECT_TRUE(tapping->isMuted(7));
    EXPECT_TRUE(tapping->isMuted(8));
    EXPECT_TRUE(stored("com.music").isMuted);
    EXPECT_TRUE(stored("Video").isMuted);
}

TEST_F(AMixerCommand, DoesNotCheckItsRange) {
    model->setVolume(7, 17.0F);
    EXPECT_EQ(model->volume(7), 17.0F);
    EXPECT_EQ(stored("com.music").volume, 17.0F);
}

TEST_F(AMixerCommand, WritesItsMapForAnyProcessButStoresOnlyTappedOnes) {
    model->setVolume(99, 0.5F);
    model->toggleMute(99);
    model->setCompressor(99, CompressorPreset::music);
    model->setLimiterEnabled(99, true);
    model->setNormalizationEnabled(99, true);
    model->setStereoWidth(99, 2.0F);
    model->setCrossfeed(99, 0.5F);
    model->resetEQ(99);
    EXPECT_EQ(model->volume(99), 0.5F);
    EXPECT_TRUE(model->isMuted(99));
    EXPECT_EQ(model->getCompressor(99), CompressorPreset::music);
    EXPECT_TRUE(model->eqSettings.get().contains(99));
    EXPECT_THAT(settings->calls, IsEmpty());
}

TEST_F(AMixerCommand, DoesNothingAtAllForAProcessThatMustBeTapped) {
    int announced = 0;
    const auto observation = model->objectWillChange.observe([&] { ++announced; });
    model->setEQ(99, 0, 3.0F);
    model->setBalance(99, 0.5F);
    model->setNoiseGate(99, true, -40.0F);
    EXPECT_EQ(announced, 0);
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_THAT(settings->calls, IsEmpty());
}

TEST_F(AMixerCommand, IgnoresABandThatIsNotThere) {
    model->setEQ(7, 10, 3.0F);
    model->setEQ(7, -1, 3.0F);
    EXPECT_THAT(model->eqSettings.get(), IsEmpty());
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_THAT(settings->calls, IsEmpty());
}

TEST_F(AMixerCommand, SetsOneBandAndKeepsTheOthers) {
    model->setEQ(7, 0, 3.0F);
    model->setEQ(7, 9, -3.0F);
    EXPECT_EQ(model->eqPreset(7).gains[0], 3.0F);
    EXPECT_EQ(model->eqPreset(7).gains[9], -3.0F);
    EXPECT_THAT(tapping->calls, ElementsAre("setEQ 7 0 3", "setEQ 7 9 -3"));
}

TEST_F(AMixerCommand, ResetsTheEqualiserToAFlatEntry) {
    model->setEQ(7, 0, 3.0F);
    forget();
    model->resetEQ(7);
    EXPECT_TRUE(model->eqSettings.get().contains(7));
    EXPECT_EQ(model->eqPreset(7), EQPreset());
    EXPECT_THAT(tapping->calls,
                ElementsAre("setEQ 7 0 0", "setEQ 7 1 0", "setEQ 7 2 0", "setEQ 7 3 0",
                            "setEQ 7 4 0", "setEQ 7 5 0", "setEQ 7 6 0", "setEQ 7 7 0",
                            "setEQ 7 8 0", "setEQ 7 9 0"));
    EXPECT_THAT(settings->calls, ElementsAre("save com.music"));
    EXPECT_EQ(stored("com.music").eqPreset, std::nullopt);
}

TEST_F(AMixerCommand, TurnsMuteOnAndOffAgain) {
    model->toggleMute(7);
    EXPECT_TRUE(stored("com.music").isMuted);
    model->toggleMute(7);
    EXPECT_FALSE(model->isMuted(7));
    EXPECT_FALSE(stored("com.music").isMuted);
    EXPECT_THAT(tapping->calls, ElementsAre("setMuted 7 true", "setMuted 7 false"));
}

TEST_F(AMixerCommand, NeverStoresTheNoiseGate) {
    model->setNoiseGate(7, true, -42.0F);
    EXPECT_TRUE(model->noiseGateEnabled.get().at(7));
    EXPECT_EQ(model->noiseGateThresholds.get().at(7), -42.0F);
    EXPECT_THAT(tapping->calls, ElementsAre("setNoiseGate 7 true -42"));
    EXPECT_THAT(settings->calls, IsEmpty());
}

// Routes.

TEST_F(AMixerCommand, RoutesAnApplicationAndSaysSo) {
    model->routeApp(7, "headphones");
    EXPECT_EQ(model->outputDeviceUID(7), "headphones");
    EXPECT_EQ(stored("com.music").outputDeviceUID, "headphones");
    EXPECT_THAT(log.texts(),
                ElementsAre("routeApp: PID 7 → headphones", "routeApp: PID 7 result=success"));
    model->routeApp(7, std::nullopt);
    EXPECT_EQ(model->outputDeviceUID(7), std::nullopt);
    EXPECT_EQ(stored("com.music").outputDeviceUID, std::nullopt);
    EXPECT_TRUE(log.has(LogLevel::info, "routeApp: PID 7 → default"));
}

TEST_F(AMixerCommand, ChangesNothingWhenARouteIsRefused) {
    model->routeApp(7, "headphones");
    forget();
    tapping->refusedDevices = {"radio", ""};
    model->routeApp(7, "radio");
    model->routeApp(7, std::nullopt);
    EXPECT_EQ(model->outputDeviceUID(7), "headphones");
    EXPECT_THAT(settings->calls, IsEmpty());
    EXPECT_TRUE(log.has(LogLevel::info, "routeApp: PID 7 result=failed"));
}

TEST_F(AMixerCommand, RoutesNothingThatIsNotTapped) {
    model->routeApp(99, "headphones");
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_THAT(log.texts(), ElementsAre("routeApp: PID 99 is not tapped, ignoring"));
    EXPECT_EQ(log.messages().front().level, LogLevel::error);
}

// Solo.

class ASolo : public testing::Test, public ModelRig {
protected:
    ASolo() {
        startPassive();
        tap(7, "Music");
        tap(8, "Video");
        tap(9, "Game");
    }

    [[nodiscard]] PIDSet mutedTaps() const {
        PIDSet muted;
        for (const auto& [pid, tap] : tapping->taps)
            if (tap.isMuted)
                muted.insert(pid);
        return muted;
    }
};

TEST_F(ASolo, MutesAllOthersUntilItEnds) {
    model->toggleSolo(8);
    EXPECT_THAT(model->soloedPIDs.get(), ElementsAre(8));
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(7, 9));
    EXPECT_EQ(mutedTaps(), model->mutedPIDs.get());
    EXPECT_THAT(tapping->takeCalls(), ElementsAre("setMuted 7 true", "setMuted 9 true"));
    model->toggleSolo(8);
    EXPECT_THAT(model->mutedPIDs.get(), IsEmpty());
    EXPECT_THAT(tapping->calls, ElementsAre("setMuted 7 false", "setMuted 9 false"));
    EXPECT_THAT(settings->calls, IsEmpty()) << "never stored";
}

TEST_F(ASolo, UnmutesItsProcessAndMutesItAgain) {
    model->toggleMute(8);
    model->toggleSolo(8);
    EXPECT_FALSE(model->isMuted(8));
    model->toggleSolo(8);
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(8));
    EXPECT_EQ(mutedTaps(), model->mutedPIDs.get());
}

TEST_F(ASolo, KeepsTheMutesFromBeforeTheFirstOfSeveral) {
    model->toggleMute(9);
    model->toggleSolo(7);
    model->toggleSolo(8);
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(9));
    model->toggleSolo(7);
    EXPECT_THAT(model->soloedPIDs.get(), ElementsAre(8));
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(7, 9));
    model->toggleSolo(8);
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(9));
    EXPECT_EQ(mutedTaps(), model->mutedPIDs.get());
}

TEST_F(ASolo, LeavesWhatIsTappedMeanwhileAudibleUntilItChanges) {
    model->toggleSolo(8);
    tap(10, "Radio");
    EXPECT_FALSE(model->isMuted(10));
    model->toggleSolo(7);
    EXPECT_TRUE(model->isMuted(10));
}

TEST_F(ASolo, ReachesTheStoreOnlyWithAnotherCommand) {
    model->toggleSolo(8);
    model->setVolume(7, 0.5F);
    EXPECT_TRUE(stored("Music").isMuted);
    EXPECT_FALSE(stored("Game").isMuted);
}

TEST_F(ASolo, OfAProcessThatIsNotTappedMutesEverything) {
    model->toggleSolo(99);
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(7, 8, 9));
    model->toggleSolo(99);
    EXPECT_THAT(model->mutedPIDs.get(), IsEmpty());
}

} // namespace
} // namespace orvanta::test
