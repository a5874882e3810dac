// The fast clock: meters, statistics, and how often anybody is told.

#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds kView{1.0 / 60.0};

class TheLevelTimer : public testing::Test, public ModelRig {
protected:
    TheLevelTimer() { startPassive(); }

    /// Until the next tick, in whole microseconds; 0 where the timer stands.
    [[nodiscard]] std::chrono::microseconds untilTick() const {
        return std::chrono::round<std::chrono::microseconds>(
            runLoop.timeToNextTask().value_or(Seconds(0.0)));
    }

    void tick(int ticks = 1) {
        for (int each = 0; each < ticks; ++each)
            runLoop.advance(runLoop.timeToNextTask().value());
    }
};

TEST_F(TheLevelTimer, StartsWithTheFirstTapAndEndsWithTheLast) {
    EXPECT_EQ(untilTick(), 0us);
    tap(7, "Music");
    EXPECT_EQ(untilTick(), 125ms);
    unlist(7);
    refresh();
    EXPECT_EQ(untilTick(), 0us);
    settings->records["Music"] = defaultRecord();
    list(7, "Music");
    refresh();
    EXPECT_EQ(untilTick(), 125ms) << "the pass starts it as well";
}

TEST_F(TheLevelTimer, RunsAtSixtyHertzWhileAViewIsOpen) {
    tap(7, "Music");
    model->setPopoverVisible(true);
    EXPECT_EQ(untilTick(), 16667us);
    runLoop.advance(kView / 2);
    model->setConsoleVisible(true);
    model->setPopoverVisible(true);
    EXPECT_EQ(untilTick(), 8333us) << "the timer is not replaced";
    model->setPopoverVisible(false);
    EXPECT_EQ(untilTick(), 8333us);
    model->setConsoleVisible(false);
    EXPECT_EQ(untilTick(), 125ms);
}

TEST_F(TheLevelTimer, IsLookedAtWheneverAViewSaysWhetherItIsOpen) {
    tap(7, "Music");
    model->tappedPIDs.set({});
    model->setPopoverVisible(false);
    EXPECT_EQ(untilTick(), 0us) << "also when it says nothing new";
    model->tappedPIDs.set({7});
    model->setConsoleVisible(false);
    EXPECT_EQ(untilTick(), 125ms);
}

TEST_F(TheLevelTimer, WaitsForATapWhileAViewIsOpen) {
    model->setPopoverVisible(true);
    EXPECT_EQ(untilTick(), 0us);
    tap(7, "Music");
    EXPECT_EQ(untilTick(), 16667us);
}

TEST_F(TheLevelTimer, TellsADiagnosticSinkOfItsRate) {
    std::vector<std::string> lines;
    model->setDiagnosticSink([&](std::string_view line) { lines.emplace_back(line); });
    tap(7, "Music");
    tap(8, "Video");
    model->setConsoleVisible(true);
    EXPECT_THAT(lines, ElementsAre("⏱ timer: 8Hz-bg tapped=1\n", "⏱ timer: 60Hz tapped=2\n"));
}

TEST_F(TheLevelTimer, TellsADiagnosticSinkOfEveryTapEveryEightSeconds) {
    tap(7, "Music");
    tap(8, "Video");
    tapping->levels[7] = {.rms = 0.25F, .peak = 0.5F};
    tapping->diagnostics[7] = {.inBufs = 1, .inBytes = 4096, .inPeak = 0.75F, .copyCount = 2};
    tapping->callbackCounts[7] = 1234;
    tapping->levels[8] = {.rms = 0.1F, .peak = 1.0F};
    model->setPopoverVisible(true);
    tick();
    std::vector<std::string> lines;
    model->setDiagnosticSink([&](std::string_view line) { lines.emplace_back(line); });
    tick(478);
    EXPECT_THAT(lines, IsEmpty());
    tick();
    EXPECT_THAT(lines,
                ElementsAre("POLL 480 tapped=2 pids=[7, 8] apps=[Music:7,Video:8]\n",
                            "VU pid=7 peak=0.5 rms=0.25 old=0.5 cb=1234 inBufs=1 inBytes=4096 "
                            "inPeak=0.75 copy=2 outPre=0.0\n"))
        << "nothing of a tap that says nothing of itself";
    tick(480);
    EXPECT_THAT(lines, testing::SizeIs(4));
}

// What is published, and how often.

class APoll : public TheLevelTimer {
protected:
    APoll() {
        tap(7, "Music");
        tapping->levels[7] = {.rms = 0.0F, .peak = 0.0F};
        peaks_ = model->audioLevels.observe([this](const auto&) { ++peaksTold; });
        rms_ = model->audioRmsLevels.observe([this](const auto&) { ++rmsTold; });
    }

    int peaksTold = 0;
    int rmsTold = 0;

private:
    Observation peaks_;
    Observation rms_;
};

TEST_F(APoll, PublishesBothLevelsOnceHoweverManyHaveChanged) {
    tap(8, "Video");
    tapping->levels[7] = {.rms = 0.1F, .peak = 0.2F};
    tapping->levels[8] = {.rms = 0.3F, .peak = 0.4F};
    tick();
    EXPECT_EQ(model->audioLevel(7), 0.2F);
    EXPECT_EQ(model->audioRmsLevels.get().at(7), 0.1F);
    EXPECT_EQ(model->audioLevel(8), 0.4F);
    EXPECT_EQ(peaksTold, 1);
    EXPECT_EQ(rmsTold, 1);
}

TEST_F(APoll, PublishesNothingWhileThePeaksStayTheSame) {
    tapping->levels[7] = {.rms = 0.1F, .peak = 0.2F};
    tick();
    tapping->levels[7].rms = 0.15F;
    tick(100);
    EXPECT_EQ(peaksTold, 1);
    EXPECT_EQ(rmsTold, 1);
    EXPECT_EQ(model->audioRmsLevels.get().at(7), 0.1F) << "the new one is dropped";
}

TEST_F(APoll, PublishesNothingOfASilentProcess) {
    tapping->levels[7] = {.rms = 0.1F, .peak = 0.0F};
    tick(10);
    EXPECT_EQ(rmsTold, 0);
    EXPECT_THAT(model->audioRmsLevels.get(), IsEmpty());
}

TEST_F(APoll, NotesWhenAProcessWasLastHeard) {
    tapping->levels[7].peak = 0.005F;
    tick();
    EXPECT_THAT(model->lastActiveTime(), IsEmpty());
    tapping->levels[7].peak = 0.0051F;
    tick();
    EXPECT_EQ(model->lastActiveTime().at(7), runLoop.now());
    const Seconds heard = runLoop.now();
    tapping->levels[7].peak = 0.0F;
    tick();
    EXPECT_EQ(model->lastActiveTime().at(7), heard);
}

TEST_F(APoll, LetsAMeterFallOnceWhenItsTapSaysNothing) {
    tapping->levels[7] = {.rms = 0.1F, .peak = 0.2F};
    tick();
    tapping->levels.erase(7);
    tick(10);
    EXPECT_EQ(model->audioLevels.get().at(7), 0.0F);
    EXPECT_EQ(model->audioRmsLevels.get().at(7), 0.0F);
    EXPECT_EQ(peaksTold, 2);
}

TEST_F(APoll, LeavesAMeterThatIsAsGoodAsSilentWhenItsTapSaysNothing) {
    tapping->levels[7] = {.rms = 0.001F, .peak = 0.004F};
    tick();
    tapping->levels.erase(7);
    tick(10);
    EXPECT_EQ(model->audioLevels.get().at(7), 0.004F);
    EXPECT_EQ(peaksTold, 1);
}

// Compressor meters.

class TheGainReduction : public TheLevelTimer {
protected:
    TheGainReduction() {
        tap(7, "Music");
        model->setCompressor(7, CompressorPreset::music);
        observation_ = model->compressorGainReduction.observe([this](const auto&) { ++told; });
        model->setConsoleVisible(true);
    }

    [[nodiscard]] const PIDMap<std::vector<float>>& shown() const {
        return model->compressorGainReduction.get();
    }

    int told = 0;

private:
    Observation observation_;
};

TEST_F(TheGainReduction, ComesAtEveryFourthTick) {
    tapping->gainReductions[7] = {1.0F, 2.0F, 3.0F};
    tick(3);
    EXPECT_EQ(told, 0);
    tick();
    EXPECT_EQ(told, 1);
    EXPECT_THAT(shown().at(7), ElementsAre(1.0F, 2.0F, 3.0F));
    tick(40);
    EXPECT_EQ(told, 1) << "not while it stays the same";
    tapping->gainReductions[7] = {1.0F, 2.0F, 4.0F};
    tick(4);
    EXPECT_EQ(told, 2);
}

TEST_F(TheGainReduction, IsNotAskedForWhileNoViewIsOpen) {
    model->setConsoleVisible(false);
    tapping->gainReductions[7] = {1.0F, 2.0F, 3.0F};
    tick(100);
    EXPECT_EQ(told, 0);
}

TEST_F(TheGainReduction, IsNotPublishedWhileATapHasNone) {
    tick(8);
    EXPECT_EQ(told, 0) << "three zeros are what nobody shows";
}

TEST_F(TheGainReduction, KeepsTheEntryOfACompressorThatGoesOffUntilAnotherChanges) {
    tap(8, "Video");
    model->setCompressor(8, CompressorPreset::music);
    tapping->gainReductions[7] = {1.0F, 1.0F, 1.0F};
    tapping->gainReductions[8] = {2.0F, 2.0F, 2.0F};
    tick(4);
    model->setCompressor(7, CompressorPreset::off);
    tick(8);
    EXPECT_TRUE(shown().contains(7));
    tapping->gainReductions[8] = {2.0F, 2.0F, 2.5F};
    tick(4);
    EXPECT_FALSE(shown().contains(7));
    EXPECT_TRUE(shown().contains(8));
}

TEST_F(TheGainReduction, ComesOnADiagnosticTickToo) {
    tick(479);
    tapping->gainReductions[7] = {1.0F, 1.0F, 1.0F};
    tapping->levels[7] = {};
    tick();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(model->tapWatch().stallPollCounts.at(7), 1);
}

// Statistics.

class TheProcessStatistics : public TheLevelTimer {
protected:
    TheProcessStatistics() {
        tap(7, "Music");
        processTable.tasks[7] = {.virtualSize = 3U << 20U,
                                 .residentSize = 1U << 19U,
                                 .totalUser = 1'000'000'000,
                                 .totalSystem = 500'000'000,
                                 .threadCount = 4};
        model->setPopoverVisible(true);
    }

    void use(double seconds) {
        processTable.tasks[7].totalUser += static_cast<std::uint64_t>(seconds * 1e9);
    }

    [[nodiscard]] ProcessStats shown() const { return model->processStats.get().at(7); }
};

TEST_F(TheProcessStatistics, ComeOnceASecondWhileAViewIsOpen) {
    tick(59);
    EXPECT_THAT(model->processStats.get(), IsEmpty());
    tick();
    EXPECT_EQ(shown(), (ProcessStats{0.0, 0.5, 4, 3.0})) << "no share at the first reading";
    use(0.25);
    tick(60);
    EXPECT_NEAR(shown().cpuPercent, 25.0, 1e-4);
    processTable.tasks[7].totalSystem += 2'000'000'000;
    tick(60);
    EXPECT_NEAR(shown().cpuPercent, 200.0, 1e-4) << "two cores";
    tick(60);
    EXPECT_EQ(shown().cpuPercent, 0.0);
}

TEST_F(TheProcessStatistics, StandStillWhileNoViewIsOpen) {
    tick(30);
    model->setPopoverVisible(false);
    tick(1000);
    EXPECT_THAT(model->processStats.get(), IsEmpty());
    model->setPopoverVisible(true);
    tick(30);
    ASSERT_TRUE(model->processStats.get().contains(7)) << "the count goes on where it was";
    const ProcessStats last = shown();
    model->setPopoverVisible(false);
    use(5.0);
    tick(1000);
    EXPECT_EQ(shown(), last);
}

TEST_F(TheProcessStatistics, KeepWhatTheyHadOfAProcessThatCannotBeRead) {
    tick(60);
    const ProcessStats before = shown();
    processTable.tasks.clear();
    tick(60);
    EXPECT_EQ(shown(), before);
}

TEST_F(TheProcessStatistics, AreNotAnnouncedWhileNothingCanBeRead) {
    processTable.tasks.clear();
    int told = 0;
    const auto observation = model->processStats.observe([&](const auto&) { ++told; });
    tick(180);
    EXPECT_EQ(told, 0);
}

TEST_F(TheProcessStatistics, StartAnewWithAProcessThatHasGone) {
    tick(60);
    unlist(7);
    refresh();
    EXPECT_THAT(model->processStats.get(), IsEmpty());
    tap(7, "Music");
    use(3.0);
    tick(60);
    EXPECT_EQ(shown().cpuPercent, 0.0) << "nothing of its first life";
}

TEST(CollectProcessStats, HoldsTheShareOfACoreBetweenNothingAndEightCores) {
    ScriptedProcessTable processes;
    processes.tasks[7] = {.totalUser = 10'000'000'000, .totalSystem = 0};
    const PIDMap<CPUTimes> last{{7, {.user = 0, .system = 0, .timestamp = Seconds(1.0)}}};
    const auto share = [&](double now) {
        return collectProcessStats(processes, {7}, last, Seconds(now)).stats.at(7).cpuPercent;
    };
    EXPECT_EQ(share(2.0), 800.0);
    EXPECT_EQ(share(3.0), 500.0);
    EXPECT_EQ(share(1.0), 0.0) << "the same time stamp";
    EXPECT_EQ(share(0.5), 0.0);
}

TEST(CollectProcessStats, LeavesOutWhatCannotBeRead) {
    ScriptedProcessTable processes;
    processes.tasks[7] = {.totalUser = 5, .totalSystem = 6, .threadCount = 1};
    const auto readings = collectProcessStats(processes, {7, 8}, {}, Seconds(3.0));
    EXPECT_THAT(readings.stats, testing::SizeIs(1));
    EXPECT_EQ(readings.cpuTimes.at(7).user, 5U);
    EXPECT_EQ(readings.cpuTimes.at(7).system, 6U);
    EXPECT_EQ(readings.cpuTimes.at(7).timestamp, Seconds(3.0));
}

} // namespace
} // namespace orvanta::test
