#include "app/shell/GlobalMuteKey.h"

#include "tests/support/model/ModelRig.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

constexpr std::uint64_t kCommandShift = 0x120000;

class ScriptedKeyMonitor final : public KeyMonitor {
public:
    void addGlobalMonitor(Handler handler) override { handler_ = std::move(handler); }

    void press(std::uint64_t modifierFlags, const std::string& characters) const {
        handler_({.modifierFlags = modifierFlags, .charactersIgnoringModifiers = characters});
    }

private:
    Handler handler_;
};

class GlobalMuteKeyTest : public testing::Test {
protected:
    GlobalMuteKeyTest() {
        rig_.startPassive();
        installGlobalMuteKey(monitor_, rig_.runLoop, rig_.model);
    }

    /// Whether a press mutes everything.
    bool mutes(std::uint64_t modifierFlags, const std::string& characters) {
        monitor_.press(modifierFlags, characters);
        rig_.runLoop.runUntilIdle();
        const bool isMuted = rig_.model->isMasterMuted.get();
        if (isMuted)
            rig_.model->toggleMuteAll();
        return isMuted;
    }

    ScriptedKeyMonitor monitor_;
    ModelRig rig_;
};

TEST_F(GlobalMuteKeyTest, IsCommandShiftM) {
    EXPECT_TRUE(mutes(kCommandShift, "m"));
}

TEST_F(GlobalMuteKeyTest, IsTheSameWhateverTheDeviceAddsInTheLowBits) {
    EXPECT_TRUE(mutes(kCommandShift | 0x010A, "m"));
    EXPECT_TRUE(mutes(kCommandShift | 0xFFFF, "m"));
}

TEST_F(GlobalMuteKeyTest, IsNoOtherCombination) {
    EXPECT_FALSE(mutes(kCommandShift | NSEventModifierFlagOption, "m"));
    EXPECT_FALSE(mutes(kCommandShift | NSEventModifierFlagControl, "m"));
    EXPECT_FALSE(mutes(kCommandShift | 0x10000, "m")) << "caps lock";
    EXPECT_FALSE(mutes(NSEventModifierFlagCommand, "m"));
    EXPECT_FALSE(mutes(NSEventModifierFlagShift, "m"));
    EXPECT_FALSE(mutes(0, "m"));
    EXPECT_FALSE(mutes(kCommandShift, "M"));
    EXPECT_FALSE(mutes(kCommandShift, "n"));
    EXPECT_FALSE(mutes(kCommandShift, "mm"));
    EXPECT_FALSE(mutes(kCommandShift, ""));
}

TEST_F(GlobalMuteKeyTest, MutesOutsideTheEventsHandling) {
    monitor_.press(kCommandShift, "m");
    EXPECT_FALSE(rig_.model->isMasterMuted.get());
    rig_.runLoop.runUntilIdle();
    EXPECT_TRUE(rig_.model->isMasterMuted.get());
    monitor_.press(kCommandShift, "m");
    rig_.runLoop.runUntilIdle();
    EXPECT_FALSE(rig_.model->isMasterMuted.get());
}

TEST_F(GlobalMuteKeyTest, DoesNothingOnceTheModelHasGone) {
    monitor_.press(kCommandShift, "m");
    rig_.model.reset();
    rig_.runLoop.runUntilIdle();
    monitor_.press(kCommandShift, "m");
    EXPECT_EQ(rig_.runLoop.waiting().posted, 0U);
}

} // namespace
} // namespace orvanta::test
