#include "core/dsp/FlushDenormals.h"

#include <gtest/gtest.h>

#include <cfloat>

namespace orvanta {
namespace {

float half(float value) {
    volatile float input = value;
    return input * 0.5F;
}

TEST(FlushDenormals, ComputesWithSubnormalNumbersAsZeroAndPutsTheModeBack) {
    ASSERT_GT(half(FLT_MIN), 0.0F);
    {
        const FlushDenormals flush;
        EXPECT_EQ(half(FLT_MIN), 0.0F);
        volatile float subnormal = FLT_MIN;
        subnormal = FLT_TRUE_MIN * 1000.0F;
        EXPECT_EQ(subnormal * 1e30F, 0.0F);
        { const FlushDenormals inner; }
        EXPECT_EQ(half(FLT_MIN), 0.0F);
    }
    EXPECT_GT(half(FLT_MIN), 0.0F);
}

} // namespace
} // namespace orvanta
