#include "app/drawing/VisualizerBars.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace orvanta {
namespace {

using testing::DoubleEq;
using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;

TEST(VisualizerBars, BeginDown) {
    const VisualizerBars bars;
    EXPECT_THAT(bars.heights(), Each(0.0));
    EXPECT_EQ(bars.previousLevel(), 0.0F);
    EXPECT_TRUE(bars.areDown());
}

TEST(VisualizerBars, HearOnlyWhatIsAboveSilence) {
    EXPECT_FALSE(VisualizerBars::isAudible(0.0F));
    EXPECT_FALSE(VisualizerBars::isAudible(-1.0F));
    EXPECT_FALSE(VisualizerBars::isAudible(0.001F));
    EXPECT_TRUE(VisualizerBars::isAudible(0.0011F));
    EXPECT_FALSE(VisualizerBars::isAudible(std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FALSE(VisualizerBars::isAudible(std::numeric_limits<float>::infinity()));
}

TEST(VisualizerBars, RiseAtOnceToTheirWeights) {
    VisualizerBars bars;
    bars.follow(0.5F);
    EXPECT_THAT(bars.heights(), ElementsAre(DoubleEq(0.35), DoubleEq(0.5), DoubleEq(0.425),
                                            DoubleEq(0.475), DoubleEq(0.3)));
    EXPECT_FALSE(bars.areDown());
}

TEST(VisualizerBars, FallAFifthOfTheWayInAFrame) {
    VisualizerBars bars;
    bars.follow(1.0F);
    bars.follow(0.01F);
    // The peak is held at 0.85 of what it was, and that is what they fall to.
    EXPECT_THAT(bars.heights()[1], DoubleNear(0.2 * 0.85 + 0.8, 1e-6));
    EXPECT_THAT(bars.heights()[0], DoubleNear(0.2 * 0.7 * 0.85 + 0.8 * 0.7, 1e-6));
}

TEST(VisualizerBars, HoldThePeakUntilALouderLevelComes) {
    VisualizerBars bars;
    bars.follow(0.8F);
    bars.follow(0.1F);
    EXPECT_FLOAT_EQ(bars.previousLevel(), 0.8F * 0.85F);
    bars.follow(0.7F);
    EXPECT_EQ(bars.previousLevel(), 0.7F);
}

TEST(VisualizerBars, GoNoHigherThanTheirWeightsButRememberALevelBeyondFullScale) {
    VisualizerBars bars;
    bars.follow(2.0F);
    EXPECT_EQ(bars.heights(), VisualizerBars::weights);
    EXPECT_EQ(bars.previousLevel(), 2.0F);
    bars.follow(0.1F);
    EXPECT_FLOAT_EQ(bars.previousLevel(), 1.7F);
    // Still beyond full scale, so nothing falls yet.
    for (std::size_t bar = 0; bar < VisualizerBars::weights.size(); ++bar)
        EXPECT_DOUBLE_EQ(bars.heights().at(bar), VisualizerBars::weights.at(bar));
}

TEST(VisualizerBars, FadeByATenthAndKeepWhatWasHeard) {
    VisualizerBars bars;
    bars.follow(1.0F);
    bars.fade();
    EXPECT_THAT(bars.heights(), ElementsAre(DoubleEq(0.63), DoubleEq(0.9), DoubleEq(0.765),
                                            DoubleEq(0.855), DoubleEq(0.54)));
    EXPECT_EQ(bars.previousLevel(), 1.0F);
}

TEST(VisualizerBars, AreDownOnceNoneIsAboveAHundredth) {
    VisualizerBars bars;
    bars.follow(1.0F);
    int frames = 0;
    while (!bars.areDown() && frames < 1000) {
        bars.fade();
        ++frames;
    }
    // 0.9 to the power of 43 is 0.0108, to that of 44 it is 0.0097.
    EXPECT_EQ(frames, 44);
}

} // namespace
} // namespace orvanta
