#include "app/popover/MeterLayout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace orvanta {
namespace {

constexpr double kWidth = 250.0;

class MeterOnAScreen : public testing::TestWithParam<double> {
protected:
    static std::vector<double> boundsOf(const MeterLayout& layout) {
        std::vector<double> bounds{layout.yellowStart, layout.redStart, layout.line};
        bounds.insert(bounds.end(), layout.stepEnds.begin(), layout.stepEnds.end());
        return bounds;
    }
};

TEST_P(MeterOnAScreen, HasEveryBoundOnAPixel) {
    const double ratio = GetParam();
    for (const double fill : {0.0, 1.0, 33.3, 162.5, kWidth})
        for (const double bound : boundsOf(meterLayout(kWidth, fill, ratio)))
            EXPECT_NEAR(bound * ratio, std::round(bound * ratio), 1e-9) << fill;
}

TEST_P(MeterOnAScreen, MovesNoBoundByMoreThanHalfAPixel) {
    const double ratio = GetParam();
    const double half = 0.5 / ratio + 1e-9;
    const MeterLayout layout = meterLayout(kWidth, 100.0, ratio);
    EXPECT_NEAR(layout.yellowStart, 162.5, half);
    EXPECT_NEAR(layout.redStart, 212.5, half);
    EXPECT_NEAR(layout.line, 1.0, half);
    for (std::size_t step = 0; step < MeterLayout::stepCount; ++step)
        EXPECT_NEAR(layout.stepEnds.at(step), 100.0 * static_cast<double>(step + 1) / 12.0, half);
}

INSTANTIATE_TEST_SUITE_P(All, MeterOnAScreen, testing::Values(1.0, 1.25, 1.5, 2.0, 3.0));

TEST(MeterLayout, UsesThePixelsBetweenLogicalOnes) {
    const MeterLayout layout = meterLayout(kWidth, 25.0, 2.0);
    EXPECT_EQ(layout.yellowStart, 162.5);
    EXPECT_EQ(layout.redStart, 212.5);
    EXPECT_EQ(layout.stepEnds.front(), 2.0);
    EXPECT_EQ(layout.stepEnds.at(2), 6.5);
}

TEST(MeterLayout, KeepsALineOnACoarseScreen) {
    EXPECT_EQ(meterLayout(kWidth, 0.0, 0.4).line, 2.5);
}

TEST(MeterLayout, FillsUpToItsFill) {
    EXPECT_EQ(meterLayout(kWidth, 161.0, 1.0).stepEnds.back(), 161.0);
    EXPECT_EQ(meterLayout(kWidth, 161.5, 2.0).stepEnds.back(), 161.5);
}

} // namespace
} // namespace orvanta
