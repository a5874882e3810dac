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
    const ThemePalette& palette = ThemePalette::classic();
    EXPECT_EQ(&levelColor(palette, 0.0), &palette.green);
    EXPECT_EQ(&levelColor(palette, 0.6), &palette.green);
    EXPECT_EQ(&levelColor(palette, 0.6001), &palette.yellow);
    EXPECT_EQ(&levelColor(palette, 0.8499), &palette.yellow);
    EXPECT_EQ(&levelColor(palette, 0.85), &palette.red);
    EXPECT_EQ(&levelColor(palette, 1.0), &palette.red);
    EXPECT_DOUBLE_EQ(kGreenZone + kYellowZone + kRedZone, 1.0);
}

TEST(LevelColors, WarmAsTheVolumeRises) {
    const ThemePalette& palette = ThemePalette::meridane();
    EXPECT_EQ(&volumeColor(palette, 0.0F), &palette.green);
    EXPECT_EQ(&volumeColor(palette, 0.5F), &palette.green);
    EXPECT_EQ(&volumeColor(palette, 0.51F), &palette.accent);
    EXPECT_EQ(&volumeColor(palette, 0.8F), &palette.accent);
    EXPECT_EQ(&volumeColor(palette, 0.81F), &palette.warmOrange);
    EXPECT_EQ(&volumeColor(palette, 1.0F), &palette.warmOrange);
    EXPECT_EQ(&volumeColor(palette, 1.01F), &palette.boostAmber);
    EXPECT_EQ(&volumeColor(palette, 1.5F), &palette.boostAmber);
    EXPECT_EQ(&volumeColor(palette, 1.51F), &palette.red);
    EXPECT_EQ(&volumeColor(palette, 2.0F), &palette.red);
}

} // namespace
} // namespace orvanta
