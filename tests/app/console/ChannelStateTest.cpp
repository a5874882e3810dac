#include "app/console/ChannelState.h"

#include "tests/support/model/ModelRig.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

class ChannelStateTest : public testing::Test {
protected:
    ChannelStateTest() {
        rig_.startRunning();
        rig_.tap(10, "Vinyl");
    }

    [[nodiscard]] ChannelState state() const {
        const MixerViewModel& model = *rig_.model;
        return channelStateOf(model, 10,
                              rowStateOf(model, model.audioApps.get().front(), rig_.runLoop.now()));
    }

    ModelRig rig_;
};

TEST_F(ChannelStateTest, IsPlainForANewTap) {
    const ChannelState channel = state();
    EXPECT_EQ(channel.row.name, "Vinyl");
    EXPECT_FALSE(channel.isSoloed);
    EXPECT_FALSE(channel.isLimiting);
    EXPECT_FALSE(channel.isNormalizing);
    EXPECT_EQ(channel.stereoWidth, 1.0F);
    EXPECT_EQ(channel.crossfeed, 0.0F);
}

TEST_F(ChannelStateTest, FollowsEveryCommand) {
    rig_.model->toggleSolo(10);
    rig_.model->setLimiterEnabled(10, true);
    rig_.model->setNormalizationEnabled(10, true);
    rig_.model->setStereoWidth(10, 1.5F);
    rig_.model->setCrossfeed(10, 0.3F);
    rig_.model->setBalance(10, 0.25F);
    const ChannelState channel = state();
    EXPECT_TRUE(channel.isSoloed);
    EXPECT_TRUE(channel.isLimiting);
    EXPECT_TRUE(channel.isNormalizing);
    EXPECT_EQ(channel.stereoWidth, 1.5F);
    EXPECT_EQ(channel.crossfeed, 0.3F);
    EXPECT_EQ(channel.row.balance, 0.25F);
}

TEST_F(ChannelStateTest, DiffersWhereTheConsoleLooksDifferent) {
    const ChannelState before = state();
    EXPECT_EQ(state(), before);
    rig_.model->toggleSolo(10);
    EXPECT_NE(state(), before);
}

} // namespace
} // namespace orvanta::test
