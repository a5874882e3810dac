#include "tests/support/RenderRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvanta::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::FloatEq;

using Samples = std::vector<float>;

TEST(TapRenderCallback, WithoutClientDataReturnsAtOnceAndTouchesNothing) {
    Buffers input;
    Buffers output;
    input.add(1, {1, 2});
    output.add(1, {7, 7});
    EXPECT_EQ(tapRenderCallback(input.list(), output.list(), nullptr), noErr);
    EXPECT_EQ(output[0], (Samples{7, 7}));
}

TEST(TapRenderCallback, ThroughTheIOProcDoesTheSame) {
    RenderRig rig;
    Buffers input;
    Buffers output;
    input.add(1, {1, 2});
    output.add(1, {7, 7});
    EXPECT_EQ(tapIOProc(9, nullptr, input.list(), nullptr, output.list(), nullptr, &rig.ref()),
              noErr);
    EXPECT_EQ(output[0], (Samples{1, 2}));
    EXPECT_EQ(rig.state().callbackCount.load(), 1U);
}

TEST(TapRenderCallback, LeavesTheTailOfALongerOutputAsItWas) {
    RenderRig rig;
    rig.state().volume.store(0.5F);
    Buffers input;
    Buffers output;
    input.add(1, {1, 2, 3});
    output.add(1, {7, 7, 7, 8, 9});
    EXPECT_EQ(rig.render(input, output), noErr);
    EXPECT_EQ(output[0], (Samples{0.5F, 1, 1.5F, 8, 9}));
}

TEST(TapRenderCallback, WithOneInputAndTwoOutputsProcessesThePairAndClearsTheSpareOutput) {
    RenderRig rig;
    Buffers input;
    Buffers output;
    input.add(1, {1, 2});
    output.add(1, {7, 7}).add(1, {7, 7, 7});
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{1, 2}));
    EXPECT_EQ(output[1], (Samples{0, 0, 0}));
}

TEST(TapRenderCallback, WithTwoInputsAndOneOutputOnlyTheFirstPairReachesTheOutput) {
    RenderRig rig;
    Buffers input;
    Buffers output;
    input.add(1, {1, 2}).add(1, {3, 4});
    output.add(1, {7, 7});
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{1, 2}));
    EXPECT_EQ(rig.state().diagInBufCount.load(), 2);
    EXPECT_EQ(rig.state().diagCopyCount.load(), 1);
}

TEST(TapRenderCallback, WithoutInputCountsAndClearsButNeitherMetersNorGates) {
    RenderRig rig;
    rig.state().noiseGateEnabled.store(true);
    rig.state().peakLevel.store(0.5F);
    Buffers input;
    Buffers output;
    output.add(2, {7, 7, 7, 7});
    for (int cycle = 0; cycle < 20; ++cycle)
        rig.render(input, output);
    EXPECT_EQ(rig.state().callbackCount.load(), 20U);
    EXPECT_THAT(output[0], Each(0.0F));
    EXPECT_EQ(rig.state().peakLevel.load(), 0.5F);
    EXPECT_EQ(rig.state().gateSilentCount.load(), 0U);
    EXPECT_EQ(rig.state().silentCallbackCount.load(), 0);
    EXPECT_EQ(rig.state().diagOutBufSamples.load(), 4);
    EXPECT_EQ(rig.state().diagInBufCount.load(), 0);
}

TEST(TapRenderCallback, PassesOverAPairWithANullSideAndLeavesThatOutputAsItStands) {
    RenderRig rig;
    Buffers input;
    Buffers output;
    input.addNull(1, 8).add(1, {3, 4});
    output.add(1, {7, 7}).add(1, {8, 8});
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{7, 7}));
    EXPECT_EQ(output[1], (Samples{3, 4}));

    Buffers nullOutput;
    nullOutput.addNull(1, 8).add(1, {8, 8});
    Buffers both;
    both.add(1, {1, 2}).add(1, {3, 4});
    rig.render(both, nullOutput);
    EXPECT_EQ(nullOutput[1], (Samples{3, 4}));
}

TEST(TapRenderCallback, TakesNullListsForEmptyOnes) {
    RenderRig rig;
    EXPECT_EQ(tapRenderCallback(nullptr, nullptr, &rig.ref()), noErr);
    EXPECT_EQ(rig.state().callbackCount.load(), 1U);
}

TEST(TapRenderCallback, AtAVolumeWithinAThousandthOfOnePassesEveryBit) {
    const Samples samples{0.1F, -0.7F, 1e-38F, 0.3333333F};
    for (const float volume : {1.0F, 1.0005F, 0.9995F, 0.999F, 1.001F}) {
        RenderRig rig;
        rig.state().volume.store(volume);
        EXPECT_EQ(rig.render(samples), samples) << volume;
    }
}

TEST(TapRenderCallback, AtAnyOtherVolumeMultiplies) {
    for (const float volume : {1.002F, 0.998F, 0.0F, 2.0F}) {
        RenderRig rig;
        rig.state().volume.store(volume);
        EXPECT_EQ(rig.render({0.1F, -0.7F}), (Samples{0.1F * volume, -0.7F * volume})) << volume;
    }
}

TEST(TapRenderCallback, AVolumeChangeTakesEffectWholeAtTheNextCallback) {
    RenderRig rig;
    rig.render(Samples(8, 1.0F));
    rig.state().volume.store(0.25F);
    EXPECT_THAT(rig.render(Samples(8, 1.0F)), Each(0.25F));
}

TEST(TapRenderCallback, MuteGivesZerosWhateverTheVolumeAndLetsThePublishedPeakFall) {
    RenderRig rig;
    rig.render(Samples(64, 1.0F));
    rig.state().volume.store(2.0F);
    rig.state().isMuted.store(true);
    float expected = 1.0F;
    while (expected * 0.85F >= 0.000001F) {
        EXPECT_THAT(rig.render(Samples(64, 1.0F)), Each(0.0F));
        expected *= 0.85F;
        ASSERT_EQ(rig.state().peakLevel.load(), expected);
    }
    rig.render(Samples(64, 1.0F));
    EXPECT_EQ(rig.state().peakLevel.load(), 0.0F);
}

TEST(TapRenderCallback, LimiterRunsForTenSilentCallbacksAndAgainOneAfterTheFirstAudibleOne) {
    RenderRig rig;
    rig.enableLimiter();
    // The limiter delays by 48 samples, so each block comes out a callback later while it runs.
    // Blocks are told apart by levels too low to count as sound.
    const auto whisper = [](int number) {
        return 1e-8F * static_cast<float>(number);
    };
    rig.render(Samples(48, whisper(0)));
    for (int silent = 1; silent < 10; ++silent) {
        ASSERT_EQ(rig.state().silentCallbackCount.load(), silent);
        ASSERT_THAT(rig.render(Samples(48, whisper(silent))), Each(whisper(silent - 1)));
    }
    ASSERT_EQ(rig.state().silentCallbackCount.load(), 10);
    EXPECT_THAT(rig.render(Samples(48, whisper(20))), Each(whisper(20))) << "the eleventh passes";
    EXPECT_THAT(rig.render(Samples(48, 0.25F)), Each(0.25F)) << "audible again, still undelayed";
    EXPECT_EQ(rig.state().silentCallbackCount.load(), 0);
    EXPECT_THAT(rig.render(Samples(48, 0.75F)), Each(whisper(9)))
        << "limited again, after what stood in the delay line all the while";
}

TEST(TapRenderCallback, APeakOfAMillionthCountsAsSoundAndLessDoesNot) {
    RenderRig rig;
    rig.render(Samples(16, 0.0F));
    rig.render(Samples(16, 0.000001F));
    EXPECT_EQ(rig.state().silentCallbackCount.load(), 0);
    EXPECT_EQ(rig.state().peakLevel.load(), 0.000001F);
    rig.render(Samples(16, 0.0000009F));
    EXPECT_EQ(rig.state().silentCallbackCount.load(), 1);
}

TEST(TapRenderCallback, AnOutputWithoutSamplesIsNeitherMeteredNorGated) {
    RenderRig rig;
    rig.state().noiseGateEnabled.store(true);
    Buffers input;
    Buffers output;
    input.add(1, Samples(4, 0.5F));
    output.add(1, {});
    rig.render(input, output);
    EXPECT_EQ(rig.state().callbackCount.load(), 1U);
    EXPECT_EQ(rig.state().silentCallbackCount.load(), 0);
    EXPECT_EQ(rig.state().gateSilentCount.load(), 0U);
}

TEST(TapRenderCallback, ALimiterSwitchedOnAgainFirstGivesWhatItHeldBefore) {
    RenderRig rig;
    rig.enableLimiter();
    rig.render(Samples(48, 0.5F));
    rig.state().limiterEnabled.store(false);
    EXPECT_THAT(rig.render(Samples(48, 0.25F)), Each(0.25F));
    rig.state().limiterEnabled.store(true);
    EXPECT_THAT(rig.render(Samples(48, 0.25F)), Each(0.5F));
}

TEST(TapRenderCallback, SamplesThatAreNoNumbersBecomeSilenceForGood) {
    for (const float poison :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity()})
        for (const bool isLimited : {false, true})
            for (const bool isMuted : {false, true}) {
                RenderRig rig;
                if (isLimited)
                    rig.enableLimiter();
                rig.state().isMuted.store(isMuted);
                for (int cycle = 0; cycle < 30; ++cycle)
                    ASSERT_THAT(rig.render(Samples(48, poison)), Each(0.0F)) << "cycle " << cycle;
                EXPECT_EQ(rig.state().peakLevel.load(), 0.0F);
            }
}

TEST(TapRenderCallback, SilentCountStopsAtTwenty) {
    RenderRig rig;
    for (int cycle = 1; cycle <= 30; ++cycle) {
        rig.render(Samples(16, 0.0F));
        ASSERT_EQ(rig.state().silentCallbackCount.load(), std::min(cycle, 20));
    }
}

TEST(TapRenderCallback, LimiterGetsTheBufferIndexAsItsChannel) {
    RenderRig rig;
    rig.enableLimiter();
    Buffers input;
    Buffers output;
    input.add(1, Samples(100, 0.5F)).add(1, Samples(100, 0.25F)).add(1, Samples(100, 0.125F));
    output.add(1, Samples(100)).add(1, Samples(100)).add(1, Samples(100));
    rig.render(input, output);
    EXPECT_EQ(output[0][47], 0.0F);
    EXPECT_EQ(output[0][48], 0.5F);
    EXPECT_EQ(output[1][48], 0.25F);
    EXPECT_EQ(output[2][0], 0.125F) << "a third channel has no state and passes";
}

TEST(TapRenderCallback, LimiterIsPassedOverWhileItsFlagIsOff) {
    RenderRig rig;
    rig.enableLimiter();
    rig.state().limiterEnabled.store(false);
    EXPECT_THAT(rig.render(Samples(10, 3.0F)), Each(3.0F));
}

TEST(TapRenderCallback, BalanceOnInterleavedStereoAttenuatesTheFarSideOnly) {
    RenderRig rig;
    rig.state().balance.store(0.5F);
    Buffers input;
    Buffers output;
    input.add(2, {1, 1, -1, -1});
    output.add(2, Samples(4));
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{0.5F, 1, -0.5F, -1}));

    rig.state().balance.store(-1.0F);
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{1, 0, -1, 0}));
}

TEST(TapRenderCallback, BalanceLeavesInterleavedChannelsBeyondTheSecondAlone) {
    RenderRig rig;
    rig.state().balance.store(0.5F);
    Buffers input;
    Buffers output;
    input.add(3, {1, 1, 1, 1, 1, 1, 1});
    output.add(3, Samples(7));
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{0.5F, 1, 1, 0.5F, 1, 1, 1})) << "the odd sample is no frame";
}

TEST(TapRenderCallback, BalanceOnPlanarStereoAttenuatesOneBuffer) {
    RenderRig rig;
    Buffers input;
    Buffers output;
    input.add(1, {1, 1}).add(1, {1, 1});
    output.add(1, Samples(2)).add(1, Samples(2));
    rig.state().balance.store(0.25F);
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{0.75F, 0.75F}));
    EXPECT_EQ(output[1], (Samples{1, 1}));
    rig.state().balance.store(-0.25F);
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{1, 1}));
    EXPECT_EQ(output[1], (Samples{0.75F, 0.75F}));
}

TEST(TapRenderCallback, BalanceWithinAHundredthOfTheCentreChangesNothing) {
    RenderRig rig;
    for (const float balance : {0.005F, -0.005F, 0.01F, -0.01F}) {
        rig.state().balance.store(balance);
        Buffers input;
        Buffers output;
        input.add(2, {1, 1});
        output.add(2, Samples(2));
        rig.render(input, output);
        EXPECT_EQ(output[0], (Samples{1, 1})) << balance;
    }
}

TEST(TapRenderCallback, ALoneMonoBufferHasNoBalance) {
    RenderRig rig;
    rig.state().balance.store(-1.0F);
    EXPECT_EQ(rig.render({1, 2}), (Samples{1, 2}));
}

TEST(TapRenderCallback, BalanceGoesOnWhileSilenceBypassesTheChain) {
    RenderRig rig;
    for (int cycle = 0; cycle < 15; ++cycle)
        rig.render(Samples(4, 0.0F));
    rig.state().balance.store(1.0F);
    Buffers input;
    Buffers output;
    input.add(2, {1, 1});
    output.add(2, Samples(2));
    rig.render(input, output);
    EXPECT_EQ(output[0], (Samples{0, 1}));
}

TEST(TapRenderCallback, MetersFollowTheirBallisticsBlockByBlock) {
    RenderRig rig;
    rig.render({0.5F, -1.0F, 0.5F, 1.0F});
    const float rms = std::sqrt((0.25F + 1.0F + 0.25F + 1.0F) / 4.0F);
    EXPECT_EQ(rig.state().peakLevel.load(), 1.0F);
    EXPECT_FLOAT_EQ(rig.state().rmsLevel.load(), rms * 0.3F);
    rig.render({0.1F, 0.1F});
    EXPECT_EQ(rig.state().peakLevel.load(), 0.85F);
    EXPECT_FLOAT_EQ(rig.state().rmsLevel.load(), rms * 0.3F * 0.7F + 0.1F * 0.3F);
}

TEST(TapRenderCallback, MetersLookAtTheFirstBufferAndAtNoMoreThan4096Samples) {
    RenderRig rig;
    Samples samples(5000, 0.25F);
    samples[4096] = 1.0F;
    Buffers input;
    Buffers output;
    input.add(1, samples).add(1, Samples(5000, 0.9F));
    output.add(1, Samples(5000)).add(1, Samples(5000));
    rig.render(input, output);
    EXPECT_EQ(rig.state().peakLevel.load(), 0.25F);
}

TEST(TapRenderCallback, RmsBelowItsFloorReadsExactlyZero) {
    RenderRig rig;
    rig.render(Samples(16, 0.5F));
    for (int cycle = 0; cycle < 200; ++cycle)
        rig.render(Samples(16, 0.0F));
    EXPECT_EQ(rig.state().rmsLevel.load(), 0.0F);
    EXPECT_EQ(rig.state().peakLevel.load(), 0.0F);
}

TEST(TapRenderCallback, OneBadSampleDoesNotLiveOnInTheMeters) {
    for (const float poison :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 3e38F}) {
        RenderRig rig;
        Samples bad(64, 0.5F);
        bad[3] = poison;
        rig.render(bad);
        for (int cycle = 0; cycle < 800; ++cycle)
            rig.render(Samples(64, 0.5F));
        EXPECT_EQ(rig.state().peakLevel.load(), 0.5F);
        EXPECT_FLOAT_EQ(rig.state().rmsLevel.load(), 0.5F);
    }
}

TEST(TapRenderCallback, CountersDescribeTheLastCallback) {
    RenderRig rig;
    Buffers input;
    Buffers output;
    input.add(2, Samples(6, 0.5F));
    output.add(2, Samples(8));
    rig.render(input, output);
    EXPECT_EQ(rig.state().diagInBufCount.load(), 1);
    EXPECT_EQ(rig.state().diagInBufBytes.load(), 24);
    EXPECT_EQ(rig.state().diagInBufSamples.load(), 6);
    EXPECT_EQ(rig.state().diagOutBufSamples.load(), 8);
    EXPECT_EQ(rig.state().diagCopyCount.load(), 1);
}

TEST(TapRenderCallback, InputPeakIsRefreshedAtEveryHundredthCallbackFromTheRawInput) {
    RenderRig rig;
    rig.state().isMuted.store(true);
    for (int cycle = 1; cycle < 100; ++cycle)
        rig.render({0.5F, -0.75F});
    EXPECT_EQ(rig.state().diagInPeak.load(), 0.0F);
    rig.render({0.5F, -0.75F});
    EXPECT_EQ(rig.state().diagInPeak.load(), 0.75F);
    for (int cycle = 101; cycle < 200; ++cycle)
        rig.render({0.1F});
    EXPECT_EQ(rig.state().diagInPeak.load(), 0.75F);
    Samples samples(5000, 0.1F);
    samples[4096] = 1.0F;
    rig.render(samples);
    EXPECT_EQ(rig.state().diagInPeak.load(), 0.1F) << "of the first 4096 samples";
    EXPECT_EQ(rig.state().diagOutPeak.load(), 0.0F);
}

TEST(TapRenderCallback, LogsTheShapeOfTheFirstCallbackAndNothingElse) {
    RenderRig rig;
    Buffers input;
    Buffers output;
    input.add(2, Samples(6));
    output.add(1, Samples(3)).add(1, Samples(3));
    rig.render(input, output);
    rig.render(input, output);
    EXPECT_THAT(rig.logTexts(),
                ElementsAre("Audio buffers: in=6samp/2ch out=3samp/1ch bufs=1in/2out"));

    rig.state().callbackCount.store(0); // as a re-route does
    Buffers empty;
    Buffers none;
    rig.render(empty, none);
    EXPECT_THAT(rig.logTexts(),
                ElementsAre("Audio buffers: in=6samp/2ch out=3samp/1ch bufs=1in/2out",
                            "Audio buffers: in=0samp/0ch out=0samp/0ch bufs=0in/0out"));
}

TEST(TapRenderCallback, PutsTheThreadsFloatModeBack) {
    RenderRig rig;
    rig.render(Samples(8, 1.0F));
    volatile float smallest = std::numeric_limits<float>::min();
    EXPECT_GT(smallest * 0.5F, 0.0F);
}

// ---- the gate

class TapRenderCallbackGate : public testing::Test {
protected:
    static constexpr std::size_t block = 1024;

    TapRenderCallbackGate() { rig.state().noiseGateEnabled.store(true); }

    Samples renderBlocks(int count, float value) {
        Samples last;
        for (int cycle = 0; cycle < count; ++cycle)
            last = rig.render(Samples(block, value));
        return last;
    }

    RenderRig rig;
};

TEST_F(TapRenderCallbackGate, ClosesWhenTheHoldHasRunOutAndFadesOverFiftyOneCallbacks) {
    const float quiet = 0.0005F; // -66 dB
    renderBlocks(9, quiet);
    EXPECT_TRUE(rig.state().gateOpen.load());
    EXPECT_EQ(rig.state().gateSilentCount.load(), 9U * block);
    EXPECT_EQ(rig.state().gateFadeGain.load(), 1.0F);
    EXPECT_THAT(renderBlocks(1, quiet), Each(FloatEq(quiet * (1.0F - 0.02F))));
    EXPECT_FALSE(rig.state().gateOpen.load());
    renderBlocks(49, quiet);
    EXPECT_GT(rig.state().gateFadeGain.load(), 0.0F);
    EXPECT_LT(rig.state().gateFadeGain.load(), 0.001F) << "the residue of fifty float steps";
    EXPECT_THAT(renderBlocks(1, quiet), Each(0.0F));
    EXPECT_EQ(rig.state().gateFadeGain.load(), 0.0F);
}

TEST_F(TapRenderCallbackGate, MetersShowTheSoundBeforeTheGate) {
    renderBlocks(100, 0.0005F);
    EXPECT_EQ(rig.state().gateFadeGain.load(), 0.0F);
    EXPECT_EQ(rig.state().peakLevel.load(), 0.0005F);
    EXPECT_EQ(rig.state().silentCallbackCount.load(), 0);
}

TEST_F(TapRenderCallbackGate, OpensWithTheFirstCallbackThatReachesTheThreshold) {
    renderBlocks(100, 0.0F);
    ASSERT_FALSE(rig.state().gateOpen.load());
    EXPECT_THAT(renderBlocks(1, 0.5F), Each(0.5F * 0.02F));
    EXPECT_TRUE(rig.state().gateOpen.load());
    EXPECT_EQ(rig.state().gateSilentCount.load(), 0U);
    renderBlocks(50, 0.5F);
    EXPECT_EQ(rig.state().gateFadeGain.load(), 1.0F);
    EXPECT_THAT(renderBlocks(1, 0.5F), Each(0.5F));
}

TEST_F(TapRenderCallbackGate, ALevelThatEqualsTheThresholdKeepsItOpen) {
    rig.state().noiseGateThresholdLinear.store(0.25F);
    renderBlocks(100, 0.25F);
    EXPECT_TRUE(rig.state().gateOpen.load());
    EXPECT_EQ(rig.state().gateSilentCount.load(), 0U);
}

TEST_F(TapRenderCallbackGate, HoldCountsAtMost4096SamplesACallback) {
    rig.render(Samples(10000, 0.0F));
    EXPECT_EQ(rig.state().gateSilentCount.load(), 4096U);
    rig.render(Samples(10000, 0.0F));
    EXPECT_TRUE(rig.state().gateOpen.load());
    rig.render(Samples(10000, 0.0F));
    EXPECT_FALSE(rig.state().gateOpen.load());
}

TEST_F(TapRenderCallbackGate, AttenuatesEveryPairedOutputOverItsWholeLength) {
    rig.state().gateOpen.store(false);
    rig.state().gateFadeGain.store(0.5F);
    Buffers input;
    Buffers output;
    input.add(1, {0, 0}).add(1, {1, 1});
    output.add(1, {0, 0}).add(1, {1, 1, 1, 1}).add(1, {5, 5});
    rig.render(input, output);
    EXPECT_THAT(output[1], Each(0.48F)) << "also beyond what was copied";
    EXPECT_THAT(output[2], Each(0.0F));
}

TEST_F(TapRenderCallbackGate, StaysOutOfTheWayWhileDisabled) {
    rig.state().noiseGateEnabled.store(false);
    rig.state().gateFadeGain.store(0.5F);
    EXPECT_THAT(renderBlocks(20, 0.0001F), Each(0.0001F));
    EXPECT_EQ(rig.state().gateSilentCount.load(), 0U);
}

// ---- rest

TEST(TapState, IsNotAtRestBeforeSilencePassesTheCostlyStagesOver) {
    RenderRig rig;
    for (int silent = 0; silent < 10; ++silent) {
        EXPECT_FALSE(tapIsAtRest(&rig.ref())) << "after " << silent;
        rig.render(Samples(64, 0.0F));
    }
    EXPECT_TRUE(tapIsAtRest(&rig.ref()));
}

TEST(TapState, IsAtRestOnceSilenceHasEmptiedTheMeters) {
    RenderRig rig;
    rig.render(Samples(64, 0.5F));
    int silent = 0;
    while (!tapIsAtRest(&rig.ref()) && silent < 1000) {
        rig.render(Samples(64, 0.0F));
        ++silent;
    }
    EXPECT_EQ(rig.state().peakLevel.load(), 0.0F);
    EXPECT_EQ(rig.state().rmsLevel.load(), 0.0F);
    EXPECT_LT(silent, 1000);
}

TEST(TapState, IsNotAtRestBeforeItsGateStandsWhereSilenceLeavesIt) {
    RenderRig rig;
    rig.state().noiseGateEnabled.store(true);
    EXPECT_FALSE(rig.state().isAtRest());
    int silent = 0;
    while (!rig.state().isAtRest() && silent < 1000) {
        rig.render(Samples(1024, 0.0F));
        ++silent;
    }
    EXPECT_EQ(silent, 9 + 51);

    rig.state().noiseGateThresholdLinear.store(0.0F); // silence opens this one
    EXPECT_FALSE(rig.state().isAtRest());
    for (int cycle = 0; cycle < 51; ++cycle)
        rig.render(Samples(1024, 0.0F));
    EXPECT_TRUE(rig.state().isAtRest());
}

TEST(TapState, WithoutClientDataThereIsNothingToWaitFor) {
    EXPECT_TRUE(tapIsAtRest(nullptr));
}

} // namespace
} // namespace orvanta::test
