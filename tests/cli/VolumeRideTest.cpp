#include "cli/VolumeRide.h"

#include <gtest/gtest.h>

namespace orvanta::cli {
namespace {

TEST(VolumeRide, MovesFromPointToPointInStraightLines) {
    const VolumeRide ride({{2.0, 1.0F}, {4.0, 0.0F}, {5.0, 2.0F}});
    EXPECT_FLOAT_EQ(ride.volumeAt(2.0), 1.0F);
    EXPECT_FLOAT_EQ(ride.volumeAt(2.5), 0.75F);
    EXPECT_FLOAT_EQ(ride.volumeAt(4.0), 0.0F);
    EXPECT_FLOAT_EQ(ride.volumeAt(4.25), 0.5F);
}

TEST(VolumeRide, StaysAtItsFirstPointBeforeAndAtItsLastAfter) {
    const VolumeRide ride({{2.0, 0.5F}, {4.0, 1.5F}});
    EXPECT_FLOAT_EQ(ride.volumeAt(0.0), 0.5F);
    EXPECT_FLOAT_EQ(ride.volumeAt(100.0), 1.5F);
}

TEST(VolumeRide, TakesItsPointsInAnyOrder) {
    const VolumeRide ride({{4.0, 1.0F}, {0.0, 0.0F}, {2.0, 2.0F}});
    EXPECT_FLOAT_EQ(ride.volumeAt(1.0), 1.0F);
    EXPECT_FLOAT_EQ(ride.volumeAt(3.0), 1.5F);
}

TEST(VolumeRide, JumpsWhereTwoPointsShareATime) {
    const VolumeRide ride({{0.0, 1.0F}, {1.0, 1.0F}, {1.0, 0.25F}});
    EXPECT_FLOAT_EQ(ride.volumeAt(0.999), 1.0F);
    EXPECT_FLOAT_EQ(ride.volumeAt(1.0), 0.25F);
}

TEST(VolumeRide, IsEmptyWithoutPoints) {
    EXPECT_TRUE(VolumeRide({}).isEmpty());
    EXPECT_FALSE(VolumeRide({{0.0, 1.0F}}).isEmpty());
}

TEST(VolumePoint, IsReadFromATimeAndAVolume) {
    VolumePoint point;
    EXPECT_EQ(readVolumePoint("2.5:0.25", point), "");
    EXPECT_EQ(point, (VolumePoint{2.5, 0.25F}));
    EXPECT_EQ(readVolumePoint("0:2", point), "");
    EXPECT_EQ(point, (VolumePoint{0.0, 2.0F}));
}

TEST(VolumePoint, IsNotReadFromAnythingElse) {
    VolumePoint point{7.0, 0.5F};
    for (const char* text : {"", ":", "1", "1:", ":1", "a:1", "1:b", "1:1x", "1:1:1", "-1:1",
                             "1:-0.1", "1:2.1", "inf:1", "1:nan"})
        EXPECT_NE(readVolumePoint(text, point), "") << text;
    EXPECT_EQ(point, (VolumePoint{7.0, 0.5F}));
}

} // namespace
} // namespace orvanta::cli
