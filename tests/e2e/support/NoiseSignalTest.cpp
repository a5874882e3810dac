#include "tests/e2e/support/NoiseSignal.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvanta::test {

namespace {

TEST(NoiseSignal, StaysAwayFromSilenceAndFromClipping) {
    for (const float sample : NoiseSignal(9).channel(0, 10000)) {
        ASSERT_GE(std::abs(sample), 0.1F - 1.0F / 32768.0F);
        ASSERT_LE(std::abs(sample), 0.45F);
    }
}

TEST(NoiseSignal, DiffersBetweenSeedsAndChannels) {
    EXPECT_NE(NoiseSignal(1).channel(0, 8), NoiseSignal(1).channel(1, 8));
    EXPECT_NE(NoiseSignal(1).channel(0, 8), NoiseSignal(2).channel(0, 8));
}

} // namespace

} // namespace orvanta::test
