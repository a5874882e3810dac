// Taps that never call back, and taps that deliver nothing.

#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// The callback has never run.

class ADeadTap : public testing::Test, public ModelRig {
protected:
    ADeadTap() {
        startPassive();
        tap(7, "Music", "com.music");
        tapping->callbackCounts[7] = 0;
    }

    void refreshTimes(int passes) {
        for (int pass = 0; pass < passes; ++pass)
            refresh();
    }

    static constexpr const char* kFirst =
        "Dead tap detected for PID 7 (Music) — rebuilding (attempt 1)";
    static constexpr const char* kSecond =
        "Dead tap detected for PID 7 (Music) — rebuilding (attempt 2)";
    static constexpr const char* kRebuilt = "Rebuilt dead tap for 'Music' (PID 7)";
};

TEST_F(ADeadTap, IsRebuiltAtTheTenthPassAndTheTwentiethAndNeverAgain) {
    refreshTimes(9);
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_THAT(tapping->calls, IsEmpty());
    refreshTimes(1);
    EXPECT_THAT(log.texts(), ElementsAre(kFirst, kRebuilt));
    EXPECT_TRUE(log.has(LogLevel::error, kFirst));
    EXPECT_TRUE(log.has(LogLevel::info, kRebuilt));
    refreshTimes(9);
    EXPECT_THAT(log.texts(), ElementsAre(kFirst, kRebuilt));
    refreshTimes(1);
    EXPECT_THAT(log.texts(), ElementsAre(kFirst, kRebuilt, kSecond, kRebuilt));
    tapping->calls.clear();
    refreshTimes(100);
    EXPECT_THAT(log.texts(), testing::SizeIs(4));
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_TRUE(model->isTapped(7));
}

TEST_F(ADeadTap, HasTwoNewAttemptsOnceItsCallbackHasRun) {
    refreshTimes(10);
    tapping->callbackCounts[7] = 1;
    refreshTimes(1);
    EXPECT_THAT(model->tapWatch().deadTapPollCounts, IsEmpty());
    EXPECT_THAT(model->tapWatch().deadTapRebuildCount, IsEmpty());
    tapping->callbackCounts[7] = 0;
    log.clear();
    refreshTimes(20);
    EXPECT_THAT(log.texts(), ElementsAre(kFirst, kRebuilt, kSecond, kRebuilt));
}

TEST_F(ADeadTap, IsCountedAnewAfterASingleCallback) {
    refreshTimes(9);
    tapping->callbackCounts[7] = 1;
    refreshTimes(1);
    tapping->callbackCounts[7] = 0;
    refreshTimes(9);
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(ADeadTap, GetsBackWhatTheModelKnowsOfIt) {
    model->setVolume(7, 1.5F);
    model->toggleMute(7);
    model->routeApp(7, "speakers");
    model->setEQ(7, 9, 2.0F);
    model->setCompressor(7, CompressorPreset::music);
    model->setLimiterEnabled(7, true);
    model->setNormalizationEnabled(7, true);
    model->setBalance(7, 0.5F);
    model->setStereoWidth(7, 2.0F);
    model->setCrossfeed(7, 0.5F);
    model->setNoiseGate(7, true, -30.0F);
    forget();
    refreshTimes(10);
    EXPECT_THAT(tapping->calls,
                ElementsAre("removeTap 7", "createTap 7 1007", "setVolume 7 1.5", "setMuted 7 true",
                            "routeToDevice 7 speakers", "setEQ 7 0 0", "setEQ 7 1 0", "setEQ 7 2 0",
                            "setEQ 7 3 0", "setEQ 7 4 0", "setEQ 7 5 0", "setEQ 7 6 0",
                            "setEQ 7 7 0", "setEQ 7 8 0", "setEQ 7 9 2", "setCompressor 7 on",
                            "setLimiterEnabled 7 true", "setNormalizationEnabled 7 true"));
    EXPECT_EQ(model->balance(7), 0.5F) << "shown, though the tap has none";
    EXPECT_EQ(tapping->taps.at(7).balance, 0.0F);
    EXPECT_TRUE(model->noiseGateEnabled.get().at(7));
    EXPECT_THAT(settings->calls, IsEmpty()) << "nothing is saved";
}

TEST_F(ADeadTap, GetsNothingBackThatIsNeutral) {
    model->setEQ(7, 0, 0.04F);
    model->setCompressor(7, CompressorPreset::off);
    model->setLimiterEnabled(7, false);
    model->setNormalizationEnabled(7, false);
    forget();
    refreshTimes(10);
    EXPECT_THAT(tapping->calls, ElementsAre("removeTap 7", "createTap 7 1007", "setVolume 7 1"));
}

TEST_F(ADeadTap, KeepsTheEntryOfADeviceThatRefusesIt) {
    model->routeApp(7, "headphones");
    tapping->refusedDevices.insert("headphones");
    refreshTimes(10);
    EXPECT_EQ(model->outputDeviceUID(7), "headphones");
    EXPECT_EQ(tapping->taps.at(7).deviceUID, std::nullopt);
}

TEST_F(ADeadTap, IsNoTapAnyMoreWhenItCannotBeRebuilt) {
    tapping->refusedTaps.insert(7);
    model->autoTapEnabled.set(false);
    settings->records.clear();
    refreshTimes(10);
    EXPECT_FALSE(model->isTapped(7));
    EXPECT_EQ(model->tappedAppNames().at(7), "Music");
    EXPECT_EQ(model->tappedBundleIDs().at(7), "com.music");
    EXPECT_EQ(model->volumes.get().at(7), 1.0F);
    EXPECT_THAT(log.texts(), ElementsAre(kFirst));
    refreshTimes(1);
    EXPECT_FALSE(model->isTapped(7));
    unlist(7);
    refreshTimes(1);
    EXPECT_EQ(model->tappedAppNames().at(7), "Music") << "nobody sees it go";
}

TEST_F(ADeadTap, ComesBackFromItsRecordWhenItCouldNotBeRebuilt) {
    model->setVolume(7, 0.5F);
    tapping->refusedTaps.insert(7);
    refreshTimes(10);
    ASSERT_FALSE(model->isTapped(7));
    tapping->refusedTaps.clear();
    refreshTimes(1);
    EXPECT_TRUE(model->isTapped(7));
    EXPECT_EQ(tapping->taps.at(7).volume, 0.5F);
}

TEST_F(ADeadTap, IsNotCountedOnceItsProcessIsListedNoMore) {
    refreshTimes(5);
    EXPECT_EQ(model->tapWatch().deadTapPollCounts.at(7), 5);
    unlist(7);
    refreshTimes(1);
    EXPECT_THAT(model->tapWatch().deadTapPollCounts, IsEmpty());
    EXPECT_THAT(tapping->calls, ElementsAre("removeTap 7"));
}

TEST_F(ADeadTap, IsNotRebuiltWhenAnObserverHasGivenItBack) {
    tapping->callbackCounts.erase(7);
    tap(8, "Video");
    tapping->callbackCounts = {{7, 0}, {8, 0}};
    refreshTimes(9);
    const auto observation = model->tappedPIDs.observe([&](const PIDSet& coming) {
        if (!coming.contains(7) && model->isTapped(8))
            model->toggleTap(discovery->apps.back());
    });
    refreshTimes(1);
    EXPECT_THAT(model->tappedPIDs.get(), ElementsAre(7));
    EXPECT_FALSE(tapping->hasTap(8));
}

TEST_F(ADeadTap, LeavesTheCountOfItsRebuildsBehind) {
    refreshTimes(20);
    unlist(7);
    refreshTimes(1);
    EXPECT_EQ(model->tapWatch().deadTapRebuildCount.at(7), 2);
}

// Nothing is delivered.

class AStalledTap : public testing::Test, public ModelRig {
protected:
    AStalledTap() {
        startPassive();
        model->setDiagnosticSink([this](std::string_view line) { lines.emplace_back(line); });
        tap(7, "Music", "com.music");
        tapping->levels[7] = {.rms = 0.0F, .peak = 0.0F};
        tapping->diagnostics[7] = {.inBufs = 1, .inBytes = 4096, .inPeak = 0.0F, .copyCount = 2};
        model->setPopoverVisible(true);
        lines.clear();
    }

    /// Passes the next so many diagnostic ticks: the level timer runs at 60 Hz.
    void diagnosticTicks(int ticks) {
        for (int tick = 0; tick < ticks; ++tick)
            runLoop.advance(Seconds(480.0 / 60.0));
    }

    [[nodiscard]] std::vector<std::string> retapLines() const {
        std::vector<std::string> found;
        for (const std::string& line : lines)
            if (line.find("RETAP") != std::string::npos)
                found.push_back(line);
        return found;
    }

    void hear(float peak) { tapping->diagnostics[7].inPeak = peak; }

    std::vector<std::string> lines;
};

TEST_F(AStalledTap, IsMadeAnewAtTheSixteenthTick) {
    tapping->callbackCounts[7] = 101;
    diagnosticTicks(15);
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 15);
    diagnosticTicks(1);
    EXPECT_THAT(tapping->calls,
                ElementsAre("removeTap 7", "createTap 7 -", "setVolume 7 1", "setBalance 7 0"));
    EXPECT_THAT(retapLines(),
                ElementsAre("🔄 RETAP pid=7 after 16 stall polls (silent(cb=101,inPeak=0))\n",
                            "🔄 RETAP OK pid=7 vol=1.0 muted=false device=default\n"));
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 0);
    EXPECT_EQ(model->tapWatch().consecutiveRetapCount.at(7), 1);
    EXPECT_TRUE(model->isTapped(7));
    EXPECT_THAT(log.texts(), IsEmpty()) << "diagnostic lines are no log";
    EXPECT_THAT(settings->calls, IsEmpty());
}

TEST_F(AStalledTap, IsMadeAnewOnceOnlyUntilItHasSounded) {
    diagnosticTicks(16);
    tapping->calls.clear();
    diagnosticTicks(100);
    EXPECT_THAT(tapping->calls, IsEmpty());
    hear(0.5F);
    diagnosticTicks(1);
    EXPECT_THAT(model->tapWatch().consecutiveRetapCount, IsEmpty());
    EXPECT_THAT(model->tapWatch().lastRetapTime, IsEmpty());
    EXPECT_THAT(model->tapWatch().stallPollCounts, IsEmpty());
}

TEST_F(AStalledTap, HasNotSoundedYetWhenItIsNew) {
    hear(0.5F);
    diagnosticTicks(1);
    hear(0.0F);
    tapping->callbackCounts[7] = 0;
    diagnosticTicks(15);
    EXPECT_THAT(model->tapWatch().hasReceivedAudio, ElementsAre(7));
    EXPECT_EQ(model->tapWatch().silentSinceAudioCount.at(7), 15);
    diagnosticTicks(1);
    EXPECT_THAT(tapping->calls, testing::Contains("createTap 7 -"));
    EXPECT_THAT(model->tapWatch().hasReceivedAudio, IsEmpty());
    EXPECT_THAT(model->tapWatch().silentSinceAudioCount, IsEmpty());
}

TEST_F(AStalledTap, SaysWhenItsCallbackHasStopped) {
    tapping->callbackCounts[7] = 0;
    diagnosticTicks(16);
    EXPECT_THAT(retapLines(), testing::Contains("🔄 RETAP pid=7 after 16 stall polls (cb=0)\n"));
}

TEST_F(AStalledTap, IsNotSuspectBeforeTheHundredthCallbackIsPast) {
    tapping->callbackCounts[7] = 100;
    diagnosticTicks(1);
    EXPECT_THAT(model->tapWatch().stallPollCounts, IsEmpty());
    tapping->callbackCounts[7] = 101;
    diagnosticTicks(1);
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 1);
}

TEST_F(AStalledTap, IsSuspectAlsoWhenItSaysNothingOfItsInput) {
    tapping->diagnostics.erase(7);
    diagnosticTicks(1);
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 1);
}

TEST_F(AStalledTap, IsNotWatchedWhileItHasNoLevel) {
    tapping->levels.erase(7);
    diagnosticTicks(20);
    EXPECT_THAT(model->tapWatch().stallPollCounts, IsEmpty());
}

TEST_F(AStalledTap, CountsStalledTicksThatAreNotInARow) {
    diagnosticTicks(10);
    tapping->callbackCounts[7] = 50;
    diagnosticTicks(3);
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 10);
    tapping->callbackCounts[7] = 500;
    diagnosticTicks(6);
    EXPECT_EQ(model->tapWatch().consecutiveRetapCount.at(7), 1);
}

TEST_F(AStalledTap, IsForgivenByTheFirstSound) {
    diagnosticTicks(15);
    hear(1e-6F);
    diagnosticTicks(1);
    EXPECT_THAT(model->tapWatch().stallPollCounts, IsEmpty());
    EXPECT_THAT(model->tapWatch().hasReceivedAudio, ElementsAre(7));
}

TEST_F(AStalledTap, MayPauseForFortyTicksAfterASound) {
    hear(0.5F);
    diagnosticTicks(1);
    hear(0.0F);
    diagnosticTicks(39);
    EXPECT_THAT(model->tapWatch().hasReceivedAudio, ElementsAre(7));
    EXPECT_EQ(model->tapWatch().silentSinceAudioCount.at(7), 39);
    EXPECT_THAT(model->tapWatch().stallPollCounts, IsEmpty());
    diagnosticTicks(1);
    EXPECT_THAT(model->tapWatch().hasReceivedAudio, IsEmpty());
    EXPECT_THAT(model->tapWatch().silentSinceAudioCount, IsEmpty());
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 1) << "suspect on the same tick";
    diagnosticTicks(15);
    EXPECT_THAT(tapping->calls, testing::Contains("createTap 7 -")) << "although nothing was wrong";
    hear(0.5F);
    diagnosticTicks(1);
    EXPECT_THAT(model->tapWatch().consecutiveRetapCount, IsEmpty());
}

TEST_F(AStalledTap, IsNotWatchedWhileNoViewIsOpen) {
    model->setPopoverVisible(false);
    runLoop.advance(Seconds(24.0 * 3600.0));
    EXPECT_THAT(model->tapWatch().stallPollCounts, IsEmpty());
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_THAT(lines, ElementsAre("⏱ timer: 8Hz-bg tapped=1\n"));
}

TEST_F(AStalledTap, IsLookedAtUpToEightSecondsAfterAViewOpens) {
    model->setPopoverVisible(false);
    runLoop.advance(Seconds(479 * 0.125));
    model->setConsoleVisible(true);
    runLoop.advance(Seconds(1.0 / 60.0));
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 1) << "ticks are counted all the time";
}

TEST_F(AStalledTap, GetsBackWhatTheTapItselfKnew) {
    model->setVolume(7, 0.75F);
    model->toggleMute(7);
    model->routeApp(7, "speakers");
    tapping->setEQ(7, 2, 0.01F);
    tapping->setBalance(7, -0.25F);
    tapping->setCompressor(7, CompressorPreset::vocal);
    model->setLimiterEnabled(7, true);
    model->setNormalizationEnabled(7, true);
    model->setStereoWidth(7, 2.0F);
    model->setCrossfeed(7, 0.5F);
    model->setNoiseGate(7, true, -30.0F);
    forget();
    diagnosticTicks(16);
    EXPECT_THAT(tapping->calls,
                ElementsAre("removeTap 7", "createTap 7 -", "setVolume 7 0.75", "setMuted 7 true",
                            "routeToDevice 7 speakers", "setEQ 7 0 0", "setEQ 7 1 0",
                            "setEQ 7 2 0.01", "setEQ 7 3 0", "setEQ 7 4 0", "setEQ 7 5 0",
                            "setEQ 7 6 0", "setEQ 7 7 0", "setEQ 7 8 0", "setEQ 7 9 0",
                            "setBalance 7 -0.25", "setCompressor 7 on"));
    EXPECT_THAT(retapLines().back(), "🔄 RETAP OK pid=7 vol=0.75 muted=true device=speakers\n");
    EXPECT_TRUE(model->limiterEnabled.get().at(7)) << "shown, though the tap has none";
    EXPECT_FALSE(tapping->isLimiterEnabled(7));
    EXPECT_FALSE(tapping->isNormalizationEnabled(7));
    EXPECT_FALSE(tapping->taps.at(7).isGateEnabled);
}

TEST_F(AStalledTap, LooksTappedWhenItCannotBeMadeAnewUntilTheDeadAreRebuilt) {
    tapping->refusedTaps.insert(7);
    diagnosticTicks(16);
    EXPECT_THAT(retapLines().back(), "🔄 RETAP FAILED for pid=7\n");
    EXPECT_TRUE(model->isTapped(7));
    EXPECT_EQ(model->volume(7), 1.0F);
    EXPECT_FALSE(tapping->hasTap(7));
    tapping->refusedTaps.clear();
    for (int pass = 0; pass < 10; ++pass)
        refresh();
    EXPECT_TRUE(tapping->hasTap(7));
}

TEST_F(AStalledTap, PlaysOnTheDefaultOutputWhenItsDeviceIsGone) {
    model->routeApp(7, "headphones");
    forget();
    diagnosticTicks(16);
    EXPECT_EQ(model->outputDeviceUID(7), std::nullopt);
    EXPECT_THAT(tapping->calls, Not(testing::Contains(StartsWith("routeToDevice"))));
    EXPECT_THAT(retapLines(),
                testing::Contains(
                    "⚠️ RETAP: saved device headphones not found, using default output\n"));
    EXPECT_THAT(retapLines().back(), "🔄 RETAP OK pid=7 vol=1.0 muted=false device=headphones\n")
        << "the device it was meant for";
}

TEST_F(AStalledTap, PlaysOnTheDefaultOutputWhenItsDeviceGoesBetweenTwoLooks) {
    model->routeApp(7, "speakers");
    forget();
    diagnosticTicks(15);
    server.faults().add({.operation = embedded::Operation::getPropertyData,
                         .skip = 1,
                         .selector = kAudioHardwarePropertyDevices});
    diagnosticTicks(1);
    EXPECT_EQ(model->outputDeviceUID(7), std::nullopt);
    EXPECT_THAT(tapping->calls, Not(testing::Contains(StartsWith("routeToDevice"))));
    EXPECT_THAT(
        retapLines(),
        testing::Contains("⚠️ RETAP: saved device speakers gone, using default output\n"));
}

TEST_F(AStalledTap, IgnoresThatItsDeviceRefusesIt) {
    model->routeApp(7, "speakers");
    tapping->refusedDevices.insert("speakers");
    diagnosticTicks(16);
    EXPECT_EQ(model->outputDeviceUID(7), "speakers");
}

TEST_F(AStalledTap, IsCountedButNotMadeAnewWhileItsProcessIsListedNoMore) {
    model->audioApps.set({});
    diagnosticTicks(16);
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 0);
    EXPECT_THAT(model->tapWatch().consecutiveRetapCount, IsEmpty());
    EXPECT_THAT(retapLines(), testing::SizeIs(1));
}

TEST_F(AStalledTap, LeavesItsRetapBehindWhenItIsGivenBack) {
    diagnosticTicks(16);
    const AudioApp music = model->audioApps.get().front();
    model->toggleTap(music);
    EXPECT_THAT(model->tapWatch().stallPollCounts, IsEmpty());
    EXPECT_THAT(model->tapWatch().lastRetapTime, IsEmpty());
    EXPECT_EQ(model->tapWatch().consecutiveRetapCount.at(7), 1);
    model->toggleTap(music);
    tapping->calls.clear();
    diagnosticTicks(100);
    EXPECT_THAT(tapping->calls, IsEmpty()) << "not again before it has sounded";
}

} // namespace
} // namespace orvanta::test
