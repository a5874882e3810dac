#include "platform/pipewire/VolumeLaw.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta::pipewire {
namespace {

TEST(VolumeLaw, ShowsTheCubeRootOfTheFactor) {
    EXPECT_FLOAT_EQ(scalarFromLinear(0.125F), 0.5F);
    EXPECT_FLOAT_EQ(scalarFromLinear(0.0F), 0.0F);
    EXPECT_FLOAT_EQ(scalarFromLinear(1.0F), 1.0F);
    EXPECT_FLOAT_EQ(linearFromScalar(0.5F), 0.125F);
}

TEST(VolumeLaw, ComesBackToWhatWasSet) {
    for (int step = 0; step <= 100; ++step) {
        const float scalar = static_cast<float>(step) / 100.0F;
        EXPECT_NEAR(scalarFromLinear(linearFromScalar(scalar)), scalar, 1e-6F);
    }
}

TEST(VolumeLaw, StaysBetweenZeroAndOne) {
    EXPECT_EQ(scalarFromLinear(3.0F), 1.0F);
    EXPECT_EQ(scalarFromLinear(-1.0F), 0.0F);
    EXPECT_EQ(scalarFromLinear(std::numeric_limits<float>::quiet_NaN()), 0.0F);
    EXPECT_EQ(linearFromScalar(2.0F), 1.0F);
    EXPECT_EQ(linearFromScalar(-2.0F), 0.0F);
}

TEST(VolumeLaw, OfTheWholeDeviceKeepsTheBalance) {
    const std::vector<float> volumes = withMainScalar({0.8F, 0.2F}, 0.5F);
    ASSERT_EQ(volumes.size(), 2U);
    EXPECT_FLOAT_EQ(volumes[0], 0.125F);
    EXPECT_FLOAT_EQ(volumes[1], 0.125F / 4);
}

TEST(VolumeLaw, OfASilentDeviceHasNoBalanceToKeep) {
    EXPECT_EQ(withMainScalar({0.0F, 0.0F}, 1.0F), (std::vector<float>{1.0F, 1.0F}));
    EXPECT_TRUE(withMainScalar({}, 1.0F).empty());
}

} // namespace
} // namespace orvanta::pipewire
