// The refresh pass: what is published, and which taps come, move and go.

#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ARefreshPass : public testing::Test, public ModelRig {
protected:
    ARefreshPass() { startPassive(); }

    [[nodiscard]] std::vector<std::string> listedNames() const {
        std::vector<std::string> names;
        for (const AudioApp& each : model->audioApps.get())
            names.push_back(each.name);
        return names;
    }

    /// Entries that belong to a process, by the map's name.
    [[nodiscard]] std::vector<std::string> entriesOf(std::int32_t pid) const;
    void giveEveryMapAnEntry(std::int32_t pid);
};

std::vector<std::string> ARefreshPass::entriesOf(std::int32_t pid) const {
    std::vector<std::string> names;
    const auto look = [&](const char* name, const auto& map) {
        if (map.contains(pid))
            names.emplace_back(name);
    };
    look("tappedPIDs", model->tappedPIDs.get());
    look("volumes", model->volumes.get());
    look("mutedPIDs", model->mutedPIDs.get());
    look("appOutputDevices", model->appOutputDevices.get());
    look("tappedAppNames", model->tappedAppNames());
    look("tappedBundleIDs", model->tappedBundleIDs());
    look("audioLevels", model->audioLevels.get());
    look("audioRmsLevels", model->audioRmsLevels.get());
    look("balances", model->balances.get());
    look("eqSettings", model->eqSettings.get());
    look("compressorSettings", model->compressorSettings.get());
    look("compressorGainReduction", model->compressorGainReduction.get());
    look("limiterEnabled", model->limiterEnabled.get());
    look("normalizationEnabled", model->normalizationEnabled.get());
    look("normalizationGain", model->normalizationGain.get());
    look("stereoWidths", model->stereoWidths.get());
    look("crossfeedAmounts", model->crossfeedAmounts.get());
    look("noiseGateEnabled", model->noiseGateEnabled.get());
    look("noiseGateThresholds", model->noiseGateThresholds.get());
    look("processStats", model->processStats.get());
    look("soloedPIDs", model->soloedPIDs.get());
    look("recordingPIDs", model->recordingPIDs.get());
    look("recordingDurations", model->recordingDurations.get());
    look("lastActiveTime", model->lastActiveTime());
    const TapWatch& watch = model->tapWatch();
    look("deadTapPollCounts", watch.deadTapPollCounts);
    look("deadTapRebuildCount", watch.deadTapRebuildCount);
    look("stallPollCounts", watch.stallPollCounts);
    look("lastRetapTime", watch.lastRetapTime);
    look("consecutiveRetapCount", watch.consecutiveRetapCount);
    return names;
}

void ARefreshPass::giveEveryMapAnEntry(std::int32_t pid) {
    model->setVolume(pid, 0.5F);
    model->setEQ(pid, 0, 3.0F);
    model->setBalance(pid, 0.5F);
    model->setCompressor(pid, CompressorPreset::music);
    model->setLimiterEnabled(pid, true);
    model->setNormalizationEnabled(pid, true);
    model->setStereoWidth(pid, 1.5F);
    model->setCrossfeed(pid, 0.5F);
    model->setNoiseGate(pid, true, -40.0F);
    model->routeApp(pid, "speakers");
    model->toggleSolo(pid);
    model->toggleMute(pid);
    model->startRecording(pid);
    model->normalizationGain.set({{pid, 1.0F}});
    tapping->levels[pid] = {.rms = 0.1F, .peak = 0.2F};
    tapping->gainReductions[pid] = {1.0F, 1.0F, 1.0F};
    processTable.tasks[pid] = {.residentSize = 1};
    // Silent until it is made anew, then dead until it is rebuilt, then counted again.
    model->setConsoleVisible(true);
    runLoop.advance(Seconds(16 * 8.0));
    model->setConsoleVisible(false);
    tapping->callbackCounts[pid] = 0;
    for (int pass = 0; pass < 11; ++pass)
        refresh();
}

TEST_F(ARefreshPass, PublishesTheListInDiscoverysOrder) {
    list(8, "Video");
    list(7, "Music");
    refresh();
    EXPECT_THAT(listedNames(), ElementsAre("Video", "Music"));
}

TEST_F(ARefreshPass, PublishesNothingWhileProcessesAndWhatPlaysAreTheSame) {
    list(7, "Music");
    list(8, "Video");
    refresh();
    int announced = 0;
    const auto observation = model->audioApps.observe([&](const auto&) { ++announced; });
    discovery->apps = {app(8, "Film"), app(7, "Music")};
    refresh();
    EXPECT_EQ(announced, 0);
    EXPECT_THAT(listedNames(), ElementsAre("Music", "Video")) << "the old order and the old names";
    discovery->apps = {app(8, "Film"), app(7, "Music", std::nullopt, false)};
    refresh();
    EXPECT_EQ(announced, 1);
    EXPECT_THAT(listedNames(), ElementsAre("Film", "Music"));
    discovery->apps.pop_back();
    refresh();
    EXPECT_EQ(announced, 2);
    discovery->apps.push_back(app(9, "Game"));
    refresh();
    EXPECT_EQ(announced, 3);
    discovery->apps.back() = app(10, "Game");
    refresh();
    EXPECT_EQ(announced, 4) << "as many, but another process";
}

TEST_F(ARefreshPass, MovesATapToANewProcessOfTheSameName) {
    tap(7, "Browser", "com.browser");
    model->setVolume(7, 1.5F);
    model->toggleMute(7);
    model->routeApp(7, "headphones");
    model->setEQ(7, 3, 6.0F);
    model->setLimiterEnabled(7, true);
    model->setBalance(7, -0.5F);
    forget();
    unlist(7);
    list(9, "Browser", "com.browser");
    refresh();
    EXPECT_THAT(tapping->calls, ElementsAre("removeTap 7", "createTap 9 1009", "setVolume 9 1.5",
                                            "setMuted 9 true", "routeToDevice 9 headphones"));
    EXPECT_THAT(model->tappedPIDs.get(), ElementsAre(9));
    EXPECT_EQ(model->volume(9), 1.5F);
    EXPECT_TRUE(model->isMuted(9));
    EXPECT_EQ(model->outputDeviceUID(9), "headphones");
    EXPECT_EQ(model->tappedAppNames().at(9), "Browser");
    EXPECT_EQ(model->tappedBundleIDs().at(9), "com.browser");
    EXPECT_TRUE(model->eqPreset(9).isFlat());
    EXPECT_FALSE(model->limiterEnabled.get().contains(9));
    EXPECT_THAT(settings->calls, IsEmpty()) << "neither removed nor saved";
    ASSERT_THAT(log.texts(), ElementsAre("Migrated tap for 'Browser': PID 7 → 9"));
    EXPECT_EQ(log.messages().front().level, LogLevel::info);
    EXPECT_EQ(log.messages().front().category, "viewModel");
    EXPECT_EQ(log.messages().front().subsystem, "com.meridane.orvanta");

    model->setVolume(9, 1.4F);
    EXPECT_EQ(stored("com.browser").eqPreset, std::nullopt) << "saved as it is now";
}

TEST_F(ARefreshPass, MovesATapWithoutTheDeviceThatRefusesIt) {
    tap(7, "Browser");
    model->routeApp(7, "headphones");
    tapping->refusedDevices.insert("headphones");
    unlist(7);
    list(9, "Browser");
    refresh();
    EXPECT_TRUE(model->isTapped(9));
    EXPECT_EQ(model->outputDeviceUID(9), std::nullopt);
}

TEST_F(ARefreshPass, LosesATapThatCannotBeMoved) {
    tap(7, "Browser", "com.browser");
    tapping->refusedTaps.insert(9);
    unlist(7);
    list(9, "Browser", "com.other");
    refresh();
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_THAT(tapping->calls, ElementsAre("removeTap 7", "createTap 9 1009"));
    EXPECT_TRUE(settings->records.contains("com.browser")) << "the record stays";
}

TEST_F(ARefreshPass, RestoresInTheSamePassWhatCouldNotBeMoved) {
    tap(7, "Browser", "com.browser");
    model->setVolume(7, 0.5F);
    tapping->refusedTaps.insert(9);
    unlist(7);
    list(9, "Browser", "com.browser");
    tapping->calls.clear();
    refresh();
    EXPECT_THAT(tapping->calls, ElementsAre("removeTap 7", "createTap 9 1009", "createTap 9 1009"))
        << "the record asks for a tap";
    tapping->refusedTaps.clear();
    refresh();
    EXPECT_EQ(model->volume(9), 0.5F);
}

TEST_F(ARefreshPass, MovesATapToTheFirstOfTwoWithItsNameOrNotAtAll) {
    tap(7, "Player", "com.player");
    list(8, "Player", "com.player.eight");
    list(9, "Player", "com.player.nine");
    model->toggleTap(discovery->apps[1]);
    unlist(7);
    refresh();
    EXPECT_THAT(model->tappedPIDs.get(), ElementsAre(8)) << "9 might have taken it over";
    EXPECT_FALSE(settings->records.contains("com.player"));
}

TEST_F(ARefreshPass, ForgetsAnApplicationThatQuitsWhileItIsTapped) {
    tap(7, "Music", "com.music");
    model->setVolume(7, 0.3F);
    forget();
    unlist(7);
    refresh();
    EXPECT_THAT(settings->calls, ElementsAre("remove com.music"));
    EXPECT_THAT(tapping->calls, ElementsAre("removeTap 7"));
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());

    list(17, "Music", "com.music");
    refresh();
    EXPECT_FALSE(model->isTapped(17)) << "started again";
    model->toggleTap(discovery->apps.back());
    EXPECT_EQ(model->volume(17), 1.0F);
}

TEST_F(ARefreshPass, RemovesExactlyWhatBelongsToTheTapOfAGoneProcess) {
    tap(7, "Music");
    giveEveryMapAnEntry(7);
    ASSERT_THAT(entriesOf(7), testing::SizeIs(29)) << "every one of them has been filled";
    unlist(7);
    refresh();
    EXPECT_THAT(entriesOf(7),
                ElementsAre("audioRmsLevels", "soloedPIDs", "recordingPIDs", "recordingDurations",
                            "lastActiveTime", "deadTapRebuildCount", "consecutiveRetapCount"));
}

TEST_F(ARefreshPass, ForgetsWhetherAGoneTapHasSounded) {
    tap(7, "Music");
    tapping->levels[7] = {};
    tapping->diagnostics[7] = {.inPeak = 0.5F};
    model->setConsoleVisible(true);
    runLoop.advance(Seconds(8.0));
    tapping->diagnostics[7].inPeak = 0.0F;
    runLoop.advance(Seconds(8.0));
    ASSERT_THAT(model->tapWatch().hasReceivedAudio, ElementsAre(7));
    ASSERT_EQ(model->tapWatch().silentSinceAudioCount.at(7), 1);
    unlist(7);
    refresh();
    EXPECT_THAT(model->tapWatch().hasReceivedAudio, IsEmpty());
    EXPECT_THAT(model->tapWatch().silentSinceAudioCount, IsEmpty());
}

TEST_F(ARefreshPass, TakesAnEmptyListForTheEndOfEverything) {
    tap(7, "Music");
    model->autoTapEnabled.set(true);
    discovery->apps.clear();
    refresh();
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
    EXPECT_FALSE(settings->records.contains("Music"));
    EXPECT_EQ(runLoop.timeToNextTask(), std::nullopt) << "the level timer has stopped";
}

TEST_F(ARefreshPass, DoesItsStepsInOrder) {
    settings->records["com.restored"] = defaultRecord();
    settings->records["com.restored"].volume = 0.3F;
    tap(7, "Gone", "com.gone");
    model->autoTapEnabled.set(true);
    forget();
    unlist(7);
    list(8, "New", "com.new");
    list(9, "Restored", "com.restored");
    tapping->callbackCounts = {{8, 0}, {9, 0}};
    const auto published =
        model->audioApps.observe([&](const auto&) { order.emplace_back("audioApps"); });
    refresh();
    EXPECT_THAT(order,
                ElementsAre("audioApps", "remove com.gone", "removeTap 7", "createTap 9 1009",
                            "setVolume 9 0.3", "createTap 8 1008", "save com.new"));
    EXPECT_EQ(model->volume(9), 0.3F) << "what is stored comes before what is new";
    EXPECT_EQ(model->tapWatch().deadTapPollCounts, (PIDMap<std::int64_t>{{9, 1}}))
        << "restored taps are looked at in the same pass, new ones in the next";
}

// Tapping without being asked.

TEST_F(ARefreshPass, TapsWhatPlaysWhenToldTo) {
    list(7, "Music", "com.music");
    list(8, "Editor", "com.editor", false);
    refresh();
    EXPECT_THAT(tapping->calls, IsEmpty());
    model->autoTapEnabled.set(true);
    settings->calls.clear();
    refresh();
    EXPECT_THAT(tapping->calls, ElementsAre("createTap 7 1007"));
    EXPECT_EQ(model->volumes.get().at(7), 1.0F);
    EXPECT_EQ(model->tappedAppNames().at(7), "Music");
    EXPECT_EQ(model->tappedBundleIDs().at(7), "com.music");
    EXPECT_THAT(settings->calls, ElementsAre("save com.music"));
    EXPECT_EQ(stored("com.music"), defaultRecord());
}

TEST_F(ARefreshPass, LetsNothingNewBreakThroughWhileAllIsMuted) {
    model->autoTapEnabled.set(true);
    model->toggleMuteAll();
    list(7, "Music");
    refresh();
    EXPECT_TRUE(model->isMuted(7));
    EXPECT_THAT(tapping->calls, ElementsAre("createTap 7 1007", "setMuted 7 true"));
    EXPECT_TRUE(stored("Music").isMuted);
}

TEST_F(ARefreshPass, TapsAnewWhatTheUserGaveBackWhileAutoTapIsOn) {
    model->autoTapEnabled.set(true);
    list(7, "Music");
    refresh();
    model->setVolume(7, 0.5F);
    model->toggleTap(discovery->apps.back());
    EXPECT_FALSE(model->isTapped(7));
    EXPECT_EQ(stored("Music").volume, 0.5F);
    refresh();
    EXPECT_TRUE(model->isTapped(7));
    EXPECT_EQ(model->volume(7), 1.0F);
    EXPECT_EQ(stored("Music"), defaultRecord()) << "with nothing of what was stored";
}

TEST_F(ARefreshPass, TriesARefusedAutoTapAgainAtTheNextPass) {
    model->autoTapEnabled.set(true);
    settings->calls.clear();
    tapping->refusedTaps.insert(7);
    list(7, "Music");
    refresh();
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
    EXPECT_THAT(settings->calls, IsEmpty());
    tapping->refusedTaps.clear();
    refresh();
    EXPECT_TRUE(model->isTapped(7));
}

// The timer.

class TheRefreshTimer : public testing::Test, public ModelRig {
protected:
    void passAfter(double seconds) {
        const int before = discovery->passes;
        runLoop.advance(Seconds(seconds) - Seconds(0.001));
        EXPECT_EQ(discovery->passes, before) << "not before " << seconds << " s";
        runLoop.advance(Seconds(0.001));
        EXPECT_EQ(discovery->passes, before + 1);
    }
};

TEST_F(TheRefreshTimer, SlowsDownWhileNothingPlaysAndLagsByOneFiring) {
    startRunning();
    list(7, "Music", std::nullopt, false);
    runLoop.runUntilIdle();
    passAfter(2.0);
    passAfter(10.0);
    discovery->apps = {app(7, "Music", std::nullopt, true)};
    passAfter(10.0);
    EXPECT_TRUE(model->audioApps.get().front().isPlaying);
    passAfter(10.0);
    passAfter(2.0);
    passAfter(2.0);
    discovery->apps = {app(7, "Music", std::nullopt, false)};
    passAfter(2.0);
    passAfter(2.0);
    passAfter(10.0);
}

TEST_F(TheRefreshTimer, LetsPassesQueueUpOneBehindTheOther) {
    startRunning();
    model->refreshApps();
    model->refreshApps();
    EXPECT_EQ(discovery->passes, 0);
    runLoop.runUntilIdle();
    EXPECT_EQ(discovery->passes, 3);
}

} // namespace
} // namespace orvanta::test
