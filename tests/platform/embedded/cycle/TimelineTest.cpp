#include "platform/embedded/cycle/Timeline.h"

#include <gtest/gtest.h>

namespace orvanta::embedded {
namespace {

TEST(Timeline, DoesNotDriftOverADay) {
    Timeline timeline(1000, 44100);
    const std::uint64_t day = 24ULL * 3600;
    for (std::uint64_t second = 0; second < day; ++second)
        timeline.advance(44100);
    EXPECT_EQ(timeline.nextStart(), 1000 + day * 1'000'000'000);
    EXPECT_EQ(timeline.sampleTime(), day * 44100);
}

TEST(Timeline, KnowsWhenACycleEnds) {
    const Timeline timeline(0, 48000);
    EXPECT_EQ(timeline.nextEnd(480), 10'000'000U);
}

TEST(Timeline, SkipsWholeFramesOnly) {
    Timeline timeline(0, 1000);
    timeline.skipTo(5'500'000);
    EXPECT_EQ(timeline.nextStart(), 5'000'000U);
    timeline.skipTo(1'000'000);
    EXPECT_EQ(timeline.nextStart(), 5'000'000U);
    EXPECT_EQ(timeline.sampleTime(), 5U);
}

TEST(Timeline, ANewRateCountsFromTheNextCycle) {
    Timeline timeline(0, 1000);
    timeline.advance(1000);
    timeline.setSampleRate(2000);
    EXPECT_EQ(timeline.nextStart(), 1'000'000'000U);
    timeline.advance(1000);
    EXPECT_EQ(timeline.nextStart(), 1'500'000'000U);
    EXPECT_EQ(timeline.sampleTime(), 2000U);
}

TEST(Timeline, ANewOriginKeepsTheCountOfFrames) {
    Timeline timeline(0, 1000);
    timeline.advance(10);
    timeline.rebase(7'000'000'000);
    EXPECT_EQ(timeline.nextStart(), 7'000'000'000U);
    EXPECT_EQ(timeline.sampleTime(), 10U);
}

} // namespace
} // namespace orvanta::embedded
