#include "tests/core/engine/EngineNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <thread>

namespace orvanta::test {
namespace {

using testing::Each;

class TapControls : public testing::Test {
protected:
    TapControls() { rig.manager->createTap(pid); }

    EngineRig rig;
    AudioTapManager& manager = *rig.manager;
};

TEST_F(TapControls, VolumeIsLimitedFromZeroToTwo) {
    EXPECT_EQ(manager.getVolume(pid), 1.0F);
    manager.setVolume(pid, 3.0F);
    EXPECT_EQ(manager.getVolume(pid), 2.0F);
    manager.setVolume(pid, -1.0F);
    EXPECT_EQ(manager.getVolume(pid), 0.0F);
    manager.setVolume(pid, nan);
    EXPECT_EQ(manager.getVolume(pid), 2.0F);
}

TEST_F(TapControls, SettingTheVolumeOfAMutedTapMakesItAudible) {
    manager.setMuted(pid, true);
    EXPECT_TRUE(manager.isMuted(pid));
    manager.setVolume(pid, 0.5F);
    EXPECT_FALSE(manager.isMuted(pid));
    EXPECT_THAT(rig.nextCycle(), Each(0.25F));
}

TEST_F(TapControls, MutingKeepsTheVolume) {
    manager.setVolume(pid, 0.75F);
    manager.setMuted(pid, true);
    EXPECT_EQ(manager.getVolume(pid), 0.75F);
    manager.setMuted(pid, false);
    EXPECT_THAT(rig.nextCycle(), Each(0.375F));
}

TEST_F(TapControls, BalanceIsLimitedFromMinusOneToOne) {
    EXPECT_EQ(manager.getBalance(pid), 0.0F);
    manager.setBalance(pid, 7.0F);
    EXPECT_EQ(manager.getBalance(pid), 1.0F);
    manager.setBalance(pid, -7.0F);
    EXPECT_EQ(manager.getBalance(pid), -1.0F);
    manager.setBalance(pid, nan);
    EXPECT_EQ(manager.getBalance(pid), 1.0F);
}

TEST_F(TapControls, AFreshTapReadsSilence) {
    EXPECT_EQ(manager.getAudioLevel(pid), (AudioLevel{0.0F, 0.0F}));
    EXPECT_EQ(manager.getCallbackCount(pid), 0U);
    EXPECT_EQ(manager.getDiagnostics(pid), TapDiagnostics{});
    EXPECT_EQ(manager.getOutputDeviceUID(pid), std::nullopt);
}

TEST_F(TapControls, LevelsAndDiagnosticsComeFromTheCallback) {
    rig.server.step(rig.speakers, 100);
    EXPECT_EQ(manager.getAudioLevel(pid)->peak, 0.5F);
    EXPECT_NEAR(manager.getAudioLevel(pid)->rms, 0.5F, 1e-5F);
    EXPECT_EQ(manager.getCallbackCount(pid), 100U);
    EXPECT_EQ(manager.getDiagnostics(pid), (TapDiagnostics{.inBufs = 1,
                                                           .inBytes = EngineRig::frames * 2 * 4,
                                                           .inPeak = 0.5F,
                                                           .copyCount = 1,
                                                           .outPeakPre = 0.0F}));
}

TEST_F(TapControls, TheGateClosesOnQuietSoundAndLeavesNothingBehindWhenItIsDisabled) {
    EXPECT_EQ(manager.isNoiseGateOpen(pid), true);
    manager.setNoiseGate(pid, true, 0.0F); // the program plays at -6 dB
    rig.server.step(rig.speakers, 100);
    EXPECT_EQ(manager.isNoiseGateOpen(pid), false);
    EXPECT_THAT(rig.nextCycle(), Each(0.0F));
    manager.setNoiseGate(pid, false, -20.0F);
    EXPECT_EQ(manager.isNoiseGateOpen(pid), true);
    EXPECT_THAT(rig.nextCycle(), Each(0.5F));
    EXPECT_TRUE(rig.state().gateOpen.load());
    EXPECT_EQ(rig.state().gateSilentCount.load(), 0U);
    EXPECT_EQ(rig.state().gateFadeGain.load(), 1.0F);
}

TEST_F(TapControls, AGateThatIsEnabledOnATapAtRestWakesItAndCloses) {
    rig.server.pauseProgram(rig.program);
    rig.server.startClock();
    while (!rig.state().isAtRest() || manager.getCallbackCount(pid) == 0)
        std::this_thread::yield();
    manager.setNoiseGate(pid, true, -40.0F);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!rig.state().isAtRest() && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    EXPECT_EQ(manager.isNoiseGateOpen(pid), false);
    EXPECT_EQ(rig.state().gateFadeGain.load(), 0.0F);
    rig.server.stopClock();
}

TEST_F(TapControls, SettingsThatLeaveATapAsItIsAskTheAudioSystemForNothing) {
    rig.server.journal().clear();
    manager.setNoiseGate(pid, false, -40.0F);
    manager.setVolume(pid, 0.5F);
    rig.server.step(rig.speakers);
    manager.setNoiseGate(pid, true, -40.0F);
    EXPECT_TRUE(rig.server.journal().entries().empty());
}

TEST_F(TapControls, EnablingTheGateResetsNothing) {
    rig.state().gateOpen.store(false);
    rig.state().gateSilentCount.store(77);
    rig.state().gateFadeGain.store(0.5F);
    manager.setNoiseGate(pid, true, -20.0F);
    EXPECT_FALSE(rig.state().gateOpen.load());
    EXPECT_EQ(rig.state().gateSilentCount.load(), 77U);
    EXPECT_EQ(rig.state().gateFadeGain.load(), 0.5F);
}

TEST_F(TapControls, TheGatesThresholdIsStoredWithoutLimitsAlsoWhileItIsDisabled) {
    manager.setNoiseGate(pid, false, -20.0F);
    EXPECT_EQ(rig.state().noiseGateThreshold, -20.0F);
    EXPECT_FLOAT_EQ(rig.state().noiseGateThresholdLinear.load(), 0.1F);
    manager.setNoiseGate(pid, true, 40.0F);
    EXPECT_EQ(rig.state().noiseGateThreshold, 40.0F);
    EXPECT_FLOAT_EQ(rig.state().noiseGateThresholdLinear.load(), 100.0F);
    EXPECT_EQ(rig.state().gateHoldSamples, 9600U);
}

TEST_F(TapControls, WidthIsLimitedFromZeroToTwoAndAHalf) {
    EXPECT_EQ(manager.getStereoWidth(pid), 1.0F);
    manager.setStereoWidth(pid, 3.0F);
    EXPECT_EQ(manager.getStereoWidth(pid), 2.5F);
    manager.setStereoWidth(pid, -1.0F);
    EXPECT_EQ(manager.getStereoWidth(pid), 0.0F);
    manager.setStereoWidth(pid, nan);
    EXPECT_EQ(manager.getStereoWidth(pid), 2.5F);
}

TEST(TapControlsOfAnUnknownProcess, ReadAsAbsentAndChangeNothing) {
    EngineRig rig;
    AudioTapManager& manager = *rig.manager;
    manager.setVolume(7, 0.5F);
    manager.setMuted(7, true);
    manager.setBalance(7, 1.0F);
    manager.setNoiseGate(7, true, -10.0F);
    manager.setLimiterEnabled(7, true);
    manager.setEQ(7, 0, 3.0F);
    manager.setCompressor(7, CompressorPreset::vocal);
    manager.setNormalizationEnabled(7, true);
    manager.setStereoWidth(7, 2.0F);
    manager.setCrossfeed(7, 0.5F);
    EXPECT_FALSE(manager.hasTap(7));
    EXPECT_EQ(manager.getVolume(7), std::nullopt);
    EXPECT_FALSE(manager.isMuted(7));
    EXPECT_EQ(manager.getBalance(7), std::nullopt);
    EXPECT_EQ(manager.isNoiseGateOpen(7), std::nullopt);
    EXPECT_FALSE(manager.isLimiterEnabled(7));
    EXPECT_EQ(manager.getEQ(7), std::nullopt);
    EXPECT_EQ(manager.getCompressor(7), std::nullopt);
    EXPECT_EQ(manager.getCompressorGainReduction(7), std::nullopt);
    EXPECT_FALSE(manager.isNormalizationEnabled(7));
    EXPECT_EQ(manager.getNormalizationGain(7), std::nullopt);
    EXPECT_EQ(manager.getStereoWidth(7), std::nullopt);
    EXPECT_EQ(manager.getCrossfeed(7), 0.0F) << "present, unlike its neighbours";
    EXPECT_EQ(manager.getOutputDeviceUID(7), std::nullopt);
    EXPECT_EQ(manager.getAudioLevel(7), std::nullopt);
    EXPECT_EQ(manager.getCallbackCount(7), 0U);
    EXPECT_EQ(manager.getDiagnostics(7), std::nullopt);
    EXPECT_TRUE(rig.server.journal().entries().empty());
    EXPECT_TRUE(rig.log.texts().empty());
}

} // namespace
} // namespace orvanta::test
