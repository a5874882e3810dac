#include "app/console/StripBallistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanta::test {
namespace {

constexpr Seconds kFrame{1.0 / 60.0};

/// A strip's meter on a screen of sixty frames a second.
class StripMeterMotion : public testing::Test {
protected:
    StripMeterMotion() { meter_.tick(now_, 0.0, 0.0); }

    void tick(double peak, double rms) {
        now_ += kFrame;
        meter_.tick(now_, peak, rms);
    }

    void tickFor(Seconds duration, double peak, double rms) {
        for (const Seconds end = now_ + duration; now_ < end;)
            tick(peak, rms);
    }

    Seconds now_{1000.0};
    StripBallistics meter_;
};

TEST_F(StripMeterMotion, TakesTheFirstTickForTheTimeOnly) {
    StripBallistics fresh;
    fresh.tick(Seconds(5000.0), 1.0, 1.0);
    EXPECT_EQ(fresh.level(), 0.0);
    EXPECT_EQ(fresh.rms(), 0.0);
    EXPECT_EQ(fresh.peak(), 0.0);
}

TEST_F(StripMeterMotion, IsFullAtTheTopAndBeyond) {
    for (const double level : {1.2, 1.5, 40.0}) {
        tickFor(Seconds(2.0), level, level);
        EXPECT_NEAR(meter_.level(), 1.0, 1e-9) << level;
        EXPECT_NEAR(meter_.rms(), 1.0, 1e-6) << level;
    }
}

TEST_F(StripMeterMotion, FillsFiveSixthsAtFullScale) {
    tickFor(Seconds(2.0), 1.0, 1.0);
    EXPECT_NEAR(meter_.level(), 5.0 / 6.0, 1e-9);
    EXPECT_NEAR(meter_.rms(), 5.0 / 6.0, 1e-6);
}

TEST_F(StripMeterMotion, RisesFastAndFallsSlowly) {
    tick(1.2, 0.0);
    EXPECT_NEAR(meter_.level(), 1.0 - std::exp(-kFrame.count() / 0.012), 1e-9);
    tickFor(Seconds(1.0), 1.2, 0.0);
    const double full = meter_.level();
    tick(0.0, 0.0);
    EXPECT_NEAR(meter_.level(), full * std::exp(-kFrame.count() / 0.18), 1e-9);
}

TEST_F(StripMeterMotion, FollowsTheLoudnessAlikeInBothDirections) {
    tick(0.0, 1.2);
    const double up = meter_.rms();
    EXPECT_NEAR(up, 1.0 - std::exp(-kFrame.count() / 0.12), 1e-9);
    tick(0.0, 0.0);
    EXPECT_NEAR(meter_.rms(), up * std::exp(-kFrame.count() / 0.12), 1e-9);
}

TEST_F(StripMeterMotion, HoldsThePeakForItsTimeBeforeItFalls) {
    meter_ = {};
    meter_.tick(Seconds(1.0), 0.0, 0.0);
    meter_.tick(Seconds(1.1), 1.2, 0.0);
    const double peak = meter_.peak();
    EXPECT_GT(peak, 0.99);
    const Seconds held{1.1};
    meter_.tick(held + Seconds(0.6), 0.0, 0.0);
    meter_.tick(held + StripBallistics::peakHold, 0.0, 0.0);
    EXPECT_EQ(meter_.peak(), peak);
    const double level = meter_.level();
    meter_.tick(held + StripBallistics::peakHold + Seconds(0.05), 0.0, 0.0);
    const double below = level * std::exp(-0.05 / 0.18);
    EXPECT_NEAR(meter_.peak(), below + (peak - below) * std::exp(-0.05 / 0.6), 1e-9);
}

TEST_F(StripMeterMotion, LiftsThePeakAtOnceWhenItGetsLouder) {
    tickFor(Seconds(0.3), 0.3, 0.0);
    tickFor(Seconds(0.3), 0.9, 0.0);
    EXPECT_NEAR(meter_.peak(), 0.75, 1e-6);
    tickFor(Seconds(1.0), 0.3, 0.0);
    EXPECT_NEAR(meter_.peak(), 0.75, 1e-6);
}

TEST_F(StripMeterMotion, ComesToRestSoonAfterTheSoundHasGone) {
    tickFor(Seconds(1.0), 1.2, 1.2);
    EXPECT_FALSE(meter_.isAtRest());
    tickFor(StripBallistics::peakHold, 0.0, 0.0);
    EXPECT_FALSE(meter_.isAtRest());
    tickFor(Seconds(4.0), 0.0, 0.0);
    EXPECT_TRUE(meter_.isAtRest());
    EXPECT_EQ(meter_.peak(), 0.0);
    for (int frame = 0; frame < 1000; ++frame) {
        tick(0.0, 0.0);
        ASSERT_TRUE(meter_.isAtRest()) << frame;
    }
}

TEST_F(StripMeterMotion, IsNotAtRestWhileAnyOfItCanBeSeen) {
    tickFor(Seconds(1.0), 0.0, 0.01);
    EXPECT_FALSE(meter_.isAtRest());
    tickFor(Seconds(2.0), 0.0, 0.0);
    EXPECT_TRUE(meter_.isAtRest());
    tickFor(Seconds(1.0), 0.005, 0.0);
    EXPECT_FALSE(meter_.isAtRest());
}

TEST_F(StripMeterMotion, CountsAScreenThatStoodStillAsATenthOfASecond) {
    now_ += Seconds(30.0);
    meter_.tick(now_, 0.0, 1.2);
    EXPECT_NEAR(meter_.rms(), 1.0 - std::exp(-0.1 / 0.12), 1e-9);
}

TEST_F(StripMeterMotion, TakesWhatIsNoNumberForSilence) {
    tickFor(Seconds(0.5), 0.6, 0.6);
    for (const double level : {std::numeric_limits<double>::quiet_NaN(), -1.0})
        tick(level, level);
    EXPECT_LT(meter_.level(), 0.5);
    EXPECT_GT(meter_.level(), 0.0);
    EXPECT_LT(meter_.rms(), 0.5);
}

} // namespace
} // namespace orvanta::test
