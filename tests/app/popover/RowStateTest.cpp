#include "app/popover/RowState.h"

#include "tests/support/model/ModelRig.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

class RowStateTest : public testing::Test {
protected:
    RowStateTest() {
        rig_.devices->devices = {{.id = 7, .uid = "headphones", .name = "Headphones"}};
        rig_.startRunning();
        rig_.tap(10, "Vinyl");
    }

    [[nodiscard]] RowState state() const {
        return rowStateOf(*rig_.model, rig_.model->audioApps.get().front(), rig_.runLoop.now());
    }

    ModelRig rig_;
};

TEST_F(RowStateTest, IsPlainForANewTap) {
    const RowState row = state();
    EXPECT_EQ(row.name, "Vinyl");
    EXPECT_EQ(row.section, AppSection::playing);
    EXPECT_TRUE(row.isTapped);
    EXPECT_FALSE(row.isMuted);
    EXPECT_FALSE(row.isRecording);
    EXPECT_EQ(row.volume, 1.0F);
    EXPECT_EQ(row.balance, 0.0F);
    EXPECT_TRUE(row.eq.isFlat());
    EXPECT_TRUE(row.compressor.isOff());
    EXPECT_FALSE(row.isGateEnabled);
    EXPECT_EQ(row.gateThreshold, -60.0F);
    EXPECT_EQ(row.outputUID, std::nullopt);
}

TEST_F(RowStateTest, FollowsEveryCommand) {
    rig_.model->setVolume(10, 1.5F);
    rig_.model->toggleMute(10);
    rig_.model->setBalance(10, -0.5F);
    rig_.model->setEQ(10, 3, 4.0F);
    rig_.model->setCompressor(10, CompressorPreset::music);
    rig_.model->setNoiseGate(10, true, -40.0F);
    rig_.model->routeApp(10, "headphones");
    const RowState row = state();
    EXPECT_EQ(row.volume, 1.5F);
    EXPECT_TRUE(row.isMuted);
    EXPECT_EQ(row.balance, -0.5F);
    EXPECT_EQ(row.eq.bassGain(), 4.0F);
    EXPECT_EQ(row.compressor, CompressorPreset::music);
    EXPECT_TRUE(row.isGateEnabled);
    EXPECT_EQ(row.gateThreshold, -40.0F);
    EXPECT_EQ(row.outputUID, "headphones");
}

TEST_F(RowStateTest, IsEqualWhileNothingThatItShowsChanges) {
    const RowState before = state();
    rig_.refresh();
    EXPECT_EQ(state(), before);
    rig_.model->setVolume(10, 0.99F);
    EXPECT_NE(state(), before);
}

} // namespace
} // namespace orvanta::test
