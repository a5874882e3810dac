#include "tests/core/engine/EngineNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orvanta::test {
namespace {

using testing::Each;

embedded::DeviceSettings planarSpeakers() {
    auto speakers = EngineRig::speakersByDefault();
    speakers.layout = embedded::BufferLayout::planar;
    return speakers;
}

/// One buffer a channel, so that the processors hear frequencies as they are.
class TapProcessors : public testing::Test {
protected:
    TapProcessors() { rig.manager->createTap(pid); }

    EngineRig rig{{.tapLayout = embedded::BufferLayout::planar}, planarSpeakers()};
    AudioTapManager& manager = *rig.manager;
};

/// Level of a tone at 440 Hz and half of full scale once everything has settled.
float settledPeak(EngineRig& rig) {
    rig.server.setSource(rig.program, embedded::tone(440, 0.5F));
    rig.server.step(rig.speakers, 100);
    const auto samples = rig.nextCycle();
    return std::abs(*std::max_element(samples.begin(), samples.end()));
}

CompressorPreset withRatios(float low, float mid, float high) {
    CompressorPreset preset = CompressorPreset::off;
    preset.bands[0].ratio = low;
    preset.bands[1].ratio = mid;
    preset.bands[2].ratio = high;
    return preset;
}

TEST_F(TapProcessors, TheLimiterHoldsTheOutputNearFullScale) {
    manager.setVolume(pid, 2.0F);
    rig.server.setSource(rig.program, embedded::tone(440, 1.0F));
    rig.server.step(rig.speakers, 20);
    const auto loud = rig.nextCycle();
    EXPECT_GT(*std::max_element(loud.begin(), loud.end()), 1.9F);
    EXPECT_FALSE(manager.isLimiterEnabled(pid));
    manager.setLimiterEnabled(pid, true);
    EXPECT_TRUE(manager.isLimiterEnabled(pid));
    rig.server.step(rig.speakers, 20);
    const auto limited = rig.nextCycle();
    EXPECT_LT(*std::max_element(limited.begin(), limited.end()), 1.05F);
    EXPECT_GT(*std::max_element(limited.begin(), limited.end()), 0.9F);
    manager.setLimiterEnabled(pid, false);
    EXPECT_FALSE(manager.isLimiterEnabled(pid));
    const auto again = rig.nextCycle();
    EXPECT_GT(*std::max_element(again.begin(), again.end()), 1.9F);
}

TEST_F(TapProcessors, DisablingALimiterThatNeverWasDoesNothing) {
    manager.setLimiterEnabled(pid, false);
    EXPECT_FALSE(manager.isLimiterEnabled(pid));
    EXPECT_EQ(rig.state().limiter.get(), nullptr);
}

TEST_F(TapProcessors, ALimiterIsMadeOnceAndKept) {
    manager.setLimiterEnabled(pid, true);
    const LimiterProcessor* const made = rig.state().limiter.get();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->lookAheadSamples(), 48U);
    manager.setLimiterEnabled(pid, false);
    manager.setLimiterEnabled(pid, true);
    EXPECT_EQ(rig.state().limiter.get(), made);
}

TEST_F(TapProcessors, ThereIsNoEqualiserBeforeItsFirstGain) {
    EXPECT_EQ(manager.getEQ(pid), std::nullopt);
    EXPECT_EQ(rig.state().eqProcessor.get(), nullptr);
}

TEST_F(TapProcessors, AGainOfTheEqualiserIsHeardAndRead) {
    const float flat = settledPeak(rig);
    manager.setEQ(pid, 4, 12.0F); // 500 Hz, so most of it reaches 440 Hz
    ASSERT_TRUE(manager.getEQ(pid));
    EXPECT_EQ(manager.getEQ(pid)->gains[4], 12.0F);
    EXPECT_GT(settledPeak(rig), 2.5F * flat);
    manager.setEQ(pid, 4, 0.0F);
    EXPECT_NEAR(settledPeak(rig), flat, 1e-3F);
}

TEST_F(TapProcessors, TheEqualiserLimitsItsGainsAndIgnoresBandsItDoesNotHave) {
    manager.setEQ(pid, 0, 40.0F);
    manager.setEQ(pid, 1, nan);
    manager.setEQ(pid, 10, 3.0F);
    manager.setEQ(pid, -1, 3.0F);
    EXPECT_EQ(manager.getEQ(pid), EQPreset(std::array{12.0F, 12.0F}));
}

TEST_F(TapProcessors, ABandTheEqualiserDoesNotHaveStillMakesOne) {
    manager.setEQ(pid, 10, 3.0F);
    EXPECT_EQ(manager.getEQ(pid), EQPreset());
}

TEST_F(TapProcessors, ACompressorIsThereOnlyWhileABandIsActive) {
    EXPECT_EQ(manager.getCompressor(pid), std::nullopt);
    EXPECT_EQ(manager.getCompressorGainReduction(pid), std::nullopt);
    manager.setCompressor(pid, CompressorPreset::vocal);
    EXPECT_EQ(manager.getCompressor(pid), CompressorPreset::vocal);
    EXPECT_THAT(*manager.getCompressorGainReduction(pid), testing::ElementsAre(0.0F, 0.0F, 0.0F));
    manager.setCompressor(pid, CompressorPreset::off);
    EXPECT_EQ(manager.getCompressor(pid), std::nullopt) << "though a preset was just set";
    EXPECT_EQ(manager.getCompressorGainReduction(pid), std::nullopt);
}

TEST_F(TapProcessors, ARatioOfExactly1Point05KeepsACompressor) {
    manager.setCompressor(pid, withRatios(1.0F, 1.05F, 1.0F));
    EXPECT_TRUE(manager.getCompressor(pid));
    manager.setCompressor(pid, withRatios(1.0F, 1.0499F, nan));
    EXPECT_FALSE(manager.getCompressor(pid));
}

TEST_F(TapProcessors, ActiveBandsOfAnotherCountThanThreeLeaveTheCompressorItsOwnSettings) {
    CompressorPreset four = CompressorPreset::vocal;
    four.bands.push_back(four.bands.front());
    manager.setCompressor(pid, four);
    EXPECT_EQ(manager.getCompressor(pid), CompressorPreset::off);
    manager.setCompressor(pid, CompressorPreset::music);
    manager.setCompressor(pid, four);
    EXPECT_EQ(manager.getCompressor(pid), CompressorPreset::music);
}

TEST_F(TapProcessors, AnotherPresetReachesTheSameCompressor) {
    manager.setCompressor(pid, CompressorPreset::vocal);
    const auto* const made = rig.state().compressor.get();
    manager.setCompressor(pid, CompressorPreset::broadcast);
    EXPECT_EQ(rig.state().compressor.get(), made);
    EXPECT_EQ(manager.getCompressor(pid), CompressorPreset::broadcast);
}

TEST_F(TapProcessors, TheCompressorReportsWhatItTakesAway) {
    manager.setCompressor(pid, CompressorPreset::broadcast);
    settledPeak(rig);
    const auto reduction = *manager.getCompressorGainReduction(pid);
    EXPECT_GT(reduction[1], 3.0F) << "440 Hz belongs to the middle band";
}

TEST_F(TapProcessors, NormalisationRaisesQuietSoundAndEndsAtUnity) {
    EXPECT_EQ(manager.getNormalizationGain(pid), std::nullopt);
    EXPECT_FALSE(manager.isNormalizationEnabled(pid));
    manager.setNormalizationEnabled(pid, true);
    EXPECT_TRUE(manager.isNormalizationEnabled(pid));
    EXPECT_EQ(manager.getNormalizationGain(pid), 0.0F);
    rig.server.setSource(rig.program, embedded::tone(440, 0.05F));
    rig.server.step(rig.speakers, 400);
    EXPECT_GT(*manager.getNormalizationGain(pid), 1.0F);
    manager.setNormalizationEnabled(pid, false);
    EXPECT_FALSE(manager.isNormalizationEnabled(pid));
    EXPECT_EQ(manager.getNormalizationGain(pid), 0.0F);
}

TEST_F(TapProcessors, DisablingANormaliserThatNeverWasMakesNone) {
    manager.setNormalizationEnabled(pid, false);
    EXPECT_EQ(rig.state().normalizer.get(), nullptr);
}

TEST_F(TapProcessors, LoudnessIsMeasuredBeforeTheFader) {
    manager.setNormalizationEnabled(pid, true);
    manager.setVolume(pid, 0.1F);
    rig.server.setSource(rig.program, embedded::tone(997, 1.0F));
    rig.server.step(rig.speakers, 400);
    EXPECT_LT(*manager.getNormalizationGain(pid), -1.0F) << "loud, whatever the fader says";
}

TEST_F(TapProcessors, ALowAmountMakesNoCrossfeedButAnExistingOneTakesIt) {
    manager.setCrossfeed(pid, 0.005F);
    manager.setCrossfeed(pid, 0.01F);
    EXPECT_EQ(rig.state().crossfeed.get(), nullptr);
    EXPECT_EQ(manager.getCrossfeed(pid), 0.0F);
    manager.setCrossfeed(pid, 0.5F);
    const auto* const made = rig.state().crossfeed.get();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(manager.getCrossfeed(pid), 0.5F);
    manager.setCrossfeed(pid, 0.005F);
    EXPECT_EQ(rig.state().crossfeed.get(), made);
    EXPECT_EQ(manager.getCrossfeed(pid), 0.005F);
    rig.server.setSource(rig.program, embedded::constant(0.25F));
    EXPECT_THAT(rig.nextCycle(), Each(0.25F)) << "off for the callback";
}

TEST_F(TapProcessors, TheAmountOfCrossfeedIsLimitedFromZeroToOne) {
    manager.setCrossfeed(pid, 7.0F);
    EXPECT_EQ(manager.getCrossfeed(pid), 1.0F);
    manager.setCrossfeed(pid, -7.0F);
    EXPECT_EQ(manager.getCrossfeed(pid), 0.0F);
    manager.setCrossfeed(pid, nan);
    EXPECT_EQ(manager.getCrossfeed(pid), 1.0F);
}

TEST(TapProcessorsAt96kHz, TakeTheRateOfTheTap) {
    auto speakers = planarSpeakers();
    speakers.sampleRate = 96000.0;
    EngineRig rig({.tapLayout = embedded::BufferLayout::planar}, speakers);
    AudioTapManager& manager = *rig.manager;
    ASSERT_TRUE(manager.createTap(pid));
    ASSERT_EQ(rig.state().sampleRate, 96000.0);
    manager.setEQ(pid, 0, 3.0F);
    manager.setLimiterEnabled(pid, true);
    manager.setNormalizationEnabled(pid, true);
    manager.setCrossfeed(pid, 0.5F);
    EXPECT_EQ(rig.state().eqProcessor.get()->sampleRate(), 96000.0);
    EXPECT_EQ(rig.state().limiter.get()->lookAheadSamples(), 96U);
    EXPECT_EQ(rig.state().normalizer.get()->windowSizeInSamples(), 38400U);
    EXPECT_EQ(rig.state().crossfeed.get()->delaySamples(), 28U);

    manager.setCompressor(pid, CompressorPreset::cinema); // looks ahead for 3 ms
    std::vector<float> block(600, 0.0F);
    block[0] = 0.5F;
    rig.state().compressor.get()->process(block.data(), block.size(), 0);
    const auto heard =
        std::find_if(block.begin(), block.end(), [](float sample) { return sample != 0.0F; });
    EXPECT_EQ(heard - block.begin(), 288);
}

} // namespace
} // namespace orvanta::test
