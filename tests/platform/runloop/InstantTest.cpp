#include "platform/runloop/Instant.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta {
namespace {

TEST(Instant, KeepsDecimalFractionsOfASecondWhole) {
    for (int hundredth = 0; hundredth <= 100000; ++hundredth) {
        const Instant instant = wholeNanoseconds(Seconds(hundredth / 100.0));
        ASSERT_EQ(instant.count(), hundredth * 10'000'000LL) << hundredth;
    }
}

TEST(Instant, NeverLetsTheFractionsOfASecondExceedIt) {
    for (int parts = 1; parts <= 1000; ++parts) {
        const Instant part = wholeNanoseconds(Seconds(1.0 / parts));
        ASSERT_LE(part * parts, std::chrono::seconds(1)) << parts;
        ASSERT_GT((part + Instant(1)) * parts, std::chrono::seconds(1)) << parts;
    }
}

TEST(Instant, TakesTimesBeforeNowAsNow) {
    EXPECT_EQ(wholeNanoseconds(Seconds(-1)), Instant::zero());
    EXPECT_EQ(wholeNanoseconds(Seconds(-std::numeric_limits<double>::infinity())), Instant::zero());
    EXPECT_EQ(wholeNanoseconds(Seconds(std::numeric_limits<double>::quiet_NaN())), Instant::zero());
}

TEST(Instant, TakesTimesWithoutEndAsACentury) {
    constexpr Instant century = std::chrono::hours(24) * 36525;
    EXPECT_EQ(wholeNanoseconds(Seconds(1e300)), century);
    EXPECT_EQ(wholeNanoseconds(Seconds(std::numeric_limits<double>::infinity())), century);
}

TEST(Instant, ConvertsBackToSeconds) {
    EXPECT_DOUBLE_EQ(inSeconds(std::chrono::milliseconds(1500)).count(), 1.5);
}

} // namespace
} // namespace orvanta
