#include "tests/e2e/support/Tones.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvanta::test {

namespace {

constexpr std::array pair{1000.0, 125.0};
/// A hundred periods of the lower one.
constexpr std::size_t wholePeriods = 38400;
constexpr double oneStep = 1.0 / 32768;

TEST(Tones, HoldEachFrequencyAtItsAmplitudeAndNothingElse) {
    const auto samples = tones(pair, 0.2, wholePeriods);
    EXPECT_NEAR(amplitudeAt(1000, samples), 0.2, oneStep);
    EXPECT_NEAR(amplitudeAt(125, samples), 0.2, oneStep);
    EXPECT_NEAR(amplitudeAt(500, samples), 0, oneStep);
}

TEST(Tones, AreMeasuredFromAnyPlaceOn) {
    const auto samples = tones(pair, 0.2, 2 * wholePeriods);
    for (const std::size_t start : {1U, 17U, 191U, 12345U})
        EXPECT_NEAR(amplitudeAt(1000, std::span<const float>(samples).subspan(start, wholePeriods)),
                    0.2, oneStep);
}

TEST(Tones, AreWholeStepsAndNeverZero) {
    for (const float sample : tones(pair, 0.2, wholePeriods)) {
        ASSERT_NE(sample, 0.0F);
        ASSERT_EQ(sample * 32768, std::round(sample * 32768));
    }
}

TEST(Tones, HaveNoAmplitudeInSilence) {
    EXPECT_EQ(amplitudeAt(1000, std::vector<float>(wholePeriods)), 0);
    EXPECT_EQ(amplitudeAt(1000, {}), 0);
}

} // namespace

} // namespace orvanta::test
