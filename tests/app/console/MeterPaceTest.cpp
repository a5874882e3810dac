#include "app/console/MeterPace.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(MeterPace, SlowsDownAfterThirtyTicksOfSilence) {
    MeterPace pace;
    for (int tick = 1; tick < 30; ++tick) {
        EXPECT_FALSE(pace.ticked(true));
        EXPECT_EQ(pace.interval(), MeterPace::fast) << tick;
    }
    EXPECT_TRUE(pace.ticked(true));
    EXPECT_EQ(pace.interval(), Seconds(0.1));
    EXPECT_FALSE(pace.ticked(true));
    EXPECT_EQ(pace.interval(), Seconds(0.1));
}

TEST(MeterPace, IsBackWithTheFirstSound) {
    MeterPace pace;
    for (int tick = 0; tick < 100; ++tick)
        pace.ticked(true);
    EXPECT_TRUE(pace.ticked(false));
    EXPECT_EQ(pace.interval(), Seconds(1.0 / 60.0));
    EXPECT_EQ(pace.idleFrames(), 0);
}

TEST(MeterPace, CountsSilenceWithoutABreakOnly) {
    MeterPace pace;
    for (int tick = 0; tick < 29; ++tick)
        pace.ticked(true);
    EXPECT_FALSE(pace.ticked(false));
    for (int tick = 0; tick < 29; ++tick)
        EXPECT_FALSE(pace.ticked(true));
    EXPECT_TRUE(pace.ticked(true));
}

} // namespace
} // namespace orvanta::test
