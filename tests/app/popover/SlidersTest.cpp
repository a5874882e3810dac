#include "app/popover/MasterSlider.h"
#include "app/popover/VolumeSlider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace orvanta {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MasterSliderTest : public testing::Test {
protected:
    std::vector<float> toDevices_;
    std::vector<float> toModel_;
    MasterSlider slider_{{.applyToDevices = [this](float volume) { toDevices_.push_back(volume); },
                          .setMasterVolume =
                              [this](float volume) {
                                  toModel_.push_back(volume);
                              }}};
};

TEST_F(MasterSliderTest, FollowsTheModelWhileNobodyDrags) {
    slider_.follow(0.4F);
    EXPECT_EQ(slider_.volume(), 0.4F);
    slider_.beginDrag();
    slider_.move(0.7F, Seconds(10.0));
    slider_.follow(0.1F);
    EXPECT_EQ(slider_.volume(), 0.7F);
    slider_.endDrag();
    slider_.follow(0.2F);
    EXPECT_EQ(slider_.volume(), 0.2F);
}

TEST_F(MasterSliderTest, WritesTheModelOnceWhenTheDragEnds) {
    slider_.beginDrag();
    for (int move = 1; move <= 100; ++move)
        slider_.move(static_cast<float>(move) / 100.0F, Seconds(10.0 + move * 0.01));
    EXPECT_THAT(toModel_, IsEmpty());
    slider_.endDrag();
    EXPECT_THAT(toModel_, ElementsAre(1.0F));
}

TEST_F(MasterSliderTest, WritesTheDevicesAtMostThirtyTimesASecond) {
    slider_.beginDrag();
    for (int move = 0; move < 1000; ++move)
        slider_.move(0.5F, Seconds(10.0 + move * 0.001));
    EXPECT_GE(toDevices_.size(), 29U);
    EXPECT_LE(toDevices_.size(), 30U);
}

TEST_F(MasterSliderTest, WaitsForMoreThanTheIntervalBetweenTwoWrites) {
    slider_.beginDrag();
    slider_.move(0.1F, Seconds(10.0));
    slider_.move(0.2F, Seconds(10.0 + 0.032));
    slider_.move(0.3F, Seconds(10.0 + 0.034));
    EXPECT_THAT(toDevices_, ElementsAre(0.1F, 0.3F));
}

TEST_F(MasterSliderTest, WritesNothingForAChangeThatIsNoDrag) {
    slider_.move(0.6F, Seconds(10.0));
    EXPECT_THAT(toDevices_, IsEmpty());
    EXPECT_THAT(toModel_, IsEmpty());
}

class VolumeSliderTest : public testing::Test {
protected:
    std::vector<float> toModel_;
    VolumeSlider slider_{[this](float volume) {
        toModel_.push_back(volume);
    }};
};

TEST_F(VolumeSliderTest, WritesEveryMoveOfADragAndItsEndOnceMore) {
    slider_.beginDrag();
    slider_.move(1.2F);
    slider_.move(1.3F);
    slider_.endDrag();
    EXPECT_THAT(toModel_, ElementsAre(1.2F, 1.3F, 1.3F));
}

TEST_F(VolumeSliderTest, FollowsTheModelWhileNobodyDrags) {
    slider_.follow(0.5F);
    slider_.beginDrag();
    slider_.move(1.5F);
    slider_.follow(0.1F);
    EXPECT_EQ(slider_.volume(), 1.5F);
    slider_.endDrag();
    slider_.follow(0.1F);
    EXPECT_EQ(slider_.volume(), 0.1F);
}

} // namespace
} // namespace orvanta
