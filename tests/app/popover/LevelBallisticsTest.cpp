#include "app/popover/LevelBallistics.h"

#include "app/popover/LevelColors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanta {
namespace {

constexpr Seconds kFrame{1.0 / 60.0};

/// A meter in view, and the time on its clock.
class Meter {
public:
    Meter() { ballistics_.start(now_); }

    double after(Seconds time, double target) {
        now_ += time;
        ballistics_.tick(now_, target);
        return ballistics_.level();
    }

    void settle(double target) {
        for (int frame = 0; frame < 600; ++frame)
            after(kFrame, target);
    }

private:
    LevelBallistics ballistics_;
    Seconds now_{1000.0};
};

TEST(LevelBallistics, RisesWithItsAttack) {
    Meter meter;
    EXPECT_NEAR(meter.after(kFrame, 0.8), 0.8 * (1.0 - std::exp(-kFrame.count() / 0.012)), 1e-12);
}

TEST(LevelBallistics, FallsWithItsRelease) {
    Meter meter;
    meter.settle(0.8);
    const double once = meter.after(kFrame, 0.0);
    EXPECT_NEAR(once, 0.8 * std::exp(-kFrame.count() / 0.18), 1e-9);
    EXPECT_NEAR(meter.after(kFrame, 0.0), once * std::exp(-kFrame.count() / 0.18), 1e-9);
}

TEST(LevelBallistics, ComesToRestBelowItsFloor) {
    Meter meter;
    meter.settle(0.8);
    double last = 1.0;
    while (last > 0.0) {
        const double level = meter.after(kFrame, 0.0);
        EXPECT_LT(level, last);
        EXPECT_TRUE(level == 0.0 || level >= 0.003);
        last = level;
    }
    EXPECT_EQ(Meter().after(kFrame, 0.0039), 0.0) << "three quarters of it are below the floor";
}

TEST(LevelBallistics, DoesNotJumpAfterAStandstill) {
    Meter meter;
    meter.settle(0.8);
    EXPECT_NEAR(meter.after(Seconds(3600.0), 0.0), 0.8 * std::exp(-0.1 / 0.18), 1e-9);
}

TEST(LevelBallistics, MovesALittleWhenNoTimeHasPassed) {
    Meter meter;
    EXPECT_NEAR(meter.after(Seconds(0.0), 0.8), 0.8 * (1.0 - std::exp(-0.001 / 0.012)), 1e-12);
    Meter turnedBack;
    EXPECT_NEAR(turnedBack.after(Seconds(-5.0), 0.8), 0.8 * (1.0 - std::exp(-0.001 / 0.012)),
                1e-12);
}

TEST(LevelBallistics, StaysOnItsScale) {
    Meter meter;
    meter.settle(7.5);
    EXPECT_NEAR(meter.after(kFrame, 7.5), 1.0, 1e-9);
    meter.settle(-2.0);
    EXPECT_EQ(meter.after(kFrame, -2.0), 0.0);
    EXPECT_EQ(meter.after(kFrame, std::numeric_limits<double>::quiet_NaN()), 0.0);
    EXPECT_GT(meter.after(kFrame, 0.5), 0.3) << "and lives on";
}

TEST(LevelColors, TurnYellowAboveAndRedFromTheirBounds) {
    EXPECT_EQ(levelZone(0.0), LevelZone::green);
    EXPECT_EQ(levelZone(0.6), LevelZone::green);
    EXPECT_EQ(levelZone(0.6001), LevelZone::yellow);
    EXPECT_EQ(levelZone(0.8499), LevelZone::yellow);
    EXPECT_EQ(levelZone(0.85), LevelZone::red);
    EXPECT_EQ(levelZone(1.0), LevelZone::red);
    EXPECT_DOUBLE_EQ(kGreenZone + kYellowZone + kRedZone, 1.0);
}

TEST(LevelColors, WarmAsTheVolumeRises) {
    EXPECT_EQ(volumeColor(0.0F), "green");
    EXPECT_EQ(volumeColor(0.5F), "green");
    EXPECT_EQ(volumeColor(0.51F), "accent");
    EXPECT_EQ(volumeColor(0.8F), "accent");
    EXPECT_EQ(volumeColor(0.81F), "warmOrange");
    EXPECT_EQ(volumeColor(1.0F), "warmOrange");
    EXPECT_EQ(volumeColor(1.01F), "boostAmber");
    EXPECT_EQ(volumeColor(1.5F), "boostAmber");
    EXPECT_EQ(volumeColor(1.51F), "red");
    EXPECT_EQ(volumeColor(2.0F), "red");
}

} // namespace
} // namespace orvanta
