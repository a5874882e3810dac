#include "core/dsp/kernels/LaneGroup.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace orvanta {
namespace {

/// Every thousandth of all normal numbers above 0, and the neighbours of 1.
template <class Function>
void forEachPositiveNumber(Function function) {
    for (std::int32_t bits = 0x00800000; bits < 0x7f800000; bits += 1009)
        function(asFloats(bits));
    for (std::int32_t bits = 0x3f800000 - 5000; bits < 0x3f800000 + 5000; ++bits)
        function(asFloats(bits));
}

TEST(Log2Exp2, LogarithmStaysWithinAMillionthOfTheCLibrarys) {
    double worst = 0.0;
    forEachPositiveNumber([&](float x) {
        const double exact = std::log2(static_cast<double>(x));
        const auto found = static_cast<double>(log2Of(x));
        worst = std::max(worst, std::abs(found - exact) / std::max(std::abs(exact), 1e-30));
        ASSERT_NEAR(found, static_cast<double>(std::log2(x)), 1e-6 * std::abs(exact)) << x;
    });
    EXPECT_LT(worst, 5e-7);
}

TEST(Log2Exp2, PowerStaysWithinAMillionthOfTheCLibrarys) {
    double worst = 0.0;
    for (int k = -1260000; k <= 1260000; ++k) {
        const auto x = static_cast<float>(k) * 1e-4F;
        const double exact = std::exp2(static_cast<double>(x));
        const auto found = static_cast<double>(exp2Of(x));
        worst = std::max(worst, std::abs(found - exact) / exact);
        ASSERT_NEAR(found, static_cast<double>(std::exp2(x)), 1e-6 * exact) << x;
    }
    EXPECT_LT(worst, 3e-7);
}

TEST(Log2Exp2, PowersOfTwoAreExactBothWays) {
    for (int k = -126; k <= 126; ++k) {
        const auto exponent = static_cast<float>(k);
        EXPECT_EQ(exp2Of(exponent), std::ldexp(1.0F, k));
        EXPECT_EQ(log2Of(std::ldexp(1.0F, k)), exponent);
    }
    EXPECT_EQ(exp2Of(0.0F), 1.0F);
    EXPECT_EQ(exp2Of(-0.0F), 1.0F);
    EXPECT_EQ(log2Of(1.0F), 0.0F);
}

TEST(Log2Exp2, InfinityIsTheNextPowerOfTwoAndNothingFallsBelowTheSmallest) {
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(log2Of(infinity), 128.0F);
    for (const float below : {-126.0F, -127.0F, -1e30F, -infinity, std::nanf("")})
        EXPECT_EQ(exp2Of(below), std::ldexp(1.0F, -126));
}

TEST(Log2Exp2, LanesAndGroupsGiveTheBitsOfSingleNumbers) {
    constexpr std::size_t count = 3;
    for (std::int32_t bits = 0x00800000; bits < 0x7f000000; bits += 999'983) {
        FloatGroup<count> x;
        FloatGroup<count> exponent;
        for (std::size_t k = 0; k < count * kLanes; ++k) {
            x.of[k / kLanes][k % kLanes] = asFloats(bits + 71 * static_cast<std::int32_t>(k));
            exponent.of[k / kLanes][k % kLanes] =
                static_cast<float>(bits) * 2e-8F - 140.0F + static_cast<float>(k);
        }
        const auto logarithm = log2Of(x);
        const auto power = exp2Of(choose(exponent < 126.0F, exponent, 126.0F));
        for (std::size_t k = 0; k < count * kLanes; ++k) {
            const float single = x.of[k / kLanes][k % kLanes];
            ASSERT_EQ(logarithm.of[k / kLanes][k % kLanes], log2Of(single));
            ASSERT_EQ(power.of[k / kLanes][k % kLanes],
                      exp2Of(std::min(exponent.of[k / kLanes][k % kLanes], 126.0F)));
        }
    }
}

} // namespace
} // namespace orvanta
