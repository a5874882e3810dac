#include "core/dsp/CrossfeedProcessor.h"

#include "core/dsp/FlushDenormals.h"
#include "tests/core/dsp/LevelSignals.h"
#include "tests/support/reference/Stereo.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cfloat>
#include <random>

namespace orvanta {
namespace {

using test::bitsOf;
using test::blockLengths;
using test::everyKernels;
using test::randomBlockEnds;
using test::roughNoise;
using test::whiteNoise;

struct Stereo {
    std::vector<float> left;
    std::vector<float> right;

    bool operator==(const Stereo&) const = default;
};

Stereo processed(CrossfeedProcessor& crossfeed, Stereo audio) {
    crossfeed.processPlanar(audio.left.data(), audio.right.data(), audio.left.size());
    return audio;
}

std::vector<float> interleaved(const Stereo& audio) {
    std::vector<float> frames;
    for (std::size_t k = 0; k < audio.left.size(); ++k)
        frames.insert(frames.end(), {audio.left[k], audio.right[k]});
    return frames;
}

float largest(const std::vector<float>& samples) {
    float largest = 0.0F;
    for (const float sample : samples)
        largest = std::max(largest, std::fabs(sample));
    return largest;
}

void expectEqualToThePlainOne(double rate, const Kernels& kernels, float amount) {
    CrossfeedProcessor planar(rate, kernels);
    CrossfeedProcessor alternating(rate, kernels);
    reference::Crossfeed plain(rate);
    planar.setAmount(amount);
    alternating.setAmount(amount);
    plain.amount = amount;
    unsigned seed = 1;
    for (const std::size_t length : blockLengths()) {
        Stereo audio{roughNoise(length, 1.0F, seed++), whiteNoise(length, 1.0F, seed++)};
        auto frames = interleaved(audio);
        const Stereo actual = processed(planar, audio);
        plain.process(audio.left, audio.right);
        alternating.processInterleaved(frames.data(), length);
        ASSERT_EQ(bitsOf(actual.left), bitsOf(audio.left)) << length;
        ASSERT_EQ(bitsOf(actual.right), bitsOf(audio.right)) << length;
        ASSERT_EQ(bitsOf(frames), bitsOf(interleaved(audio))) << length;
    }
}

TEST(CrossfeedProcessor, ComputesTheBitsOfThePlainLoopInEveryInstructionSetAndBothLayouts) {
    for (const Kernels* const kernels : everyKernels())
        // 1, 2 and 3 samples of delay, then usual ones, then more than the line's room.
        for (const double rate : {3000.0, 7000.0, 11025.0, 44100.0, 48000.0, 192000.0, 2e6})
            for (const float amount : {0.01F, 0.37F, 1.0F}) {
                SCOPED_TRACE(testing::Message() << rate << " Hz, amount " << amount << ", set "
                                                << int(kernels->instructionSet));
                ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(rate, *kernels, amount));
            }
}

TEST(CrossfeedProcessor, ComputesTheBitsOfThePlainLoopWhileDenormalsAreFlushed) {
    const FlushDenormals flushed;
    for (const Kernels* const kernels : everyKernels())
        ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(48000.0, *kernels, 0.5F));
}

TEST(CrossfeedProcessor, DelaysTheCrossPathByThreeTenthsOfAMillisecondInWholeSamples) {
    EXPECT_EQ(CrossfeedProcessor(44100.0).delaySamples(), 13U);
    EXPECT_EQ(CrossfeedProcessor(48000.0).delaySamples(), 14U);
    EXPECT_EQ(CrossfeedProcessor(96000.0).delaySamples(), 28U);
    EXPECT_EQ(CrossfeedProcessor(3333.0).delaySamples(), 1U);
    EXPECT_EQ(CrossfeedProcessor(100.0).delaySamples(), 1U);
}

TEST(CrossfeedProcessor, TakesARateThatIsNoneForTheShortestDelayAndStaysFinite) {
    for (const double odd : {0.0, -48000.0, double(NAN), -double(INFINITY)}) {
        CrossfeedProcessor crossfeed(odd);
        EXPECT_EQ(crossfeed.delaySamples(), 1U);
        crossfeed.setAmount(1.0F);
        const auto noise = whiteNoise(100, 1.0F, 1);
        const Stereo output = processed(crossfeed, {noise, noise});
        EXPECT_LE(largest(output.left), 1.4F);
    }
    EXPECT_EQ(CrossfeedProcessor(double(INFINITY)).delaySamples(), 300000U);
}

TEST(CrossfeedProcessor, IsOffBelowAHundredth) {
    CrossfeedProcessor crossfeed(48000.0);
    EXPECT_EQ(crossfeed.amount(), 0.0F);
    EXPECT_TRUE(crossfeed.isOff());
    crossfeed.setAmount(0.005F);
    EXPECT_TRUE(crossfeed.isOff());
    crossfeed.setAmount(0.01F);
    EXPECT_FALSE(crossfeed.isOff());
    const auto noise = whiteNoise(100, 1.0F, 1);
    EXPECT_NE(processed(crossfeed, {noise, noise}), (Stereo{noise, noise}));
}

TEST(CrossfeedProcessor, TouchesNeitherAudioNorStateWhileOff) {
    CrossfeedProcessor paused(48000.0);
    CrossfeedProcessor steady(48000.0);
    paused.setAmount(0.8F);
    steady.setAmount(0.8F);
    const Stereo first{whiteNoise(50, 1.0F, 1), whiteNoise(50, 1.0F, 2)};
    const Stereo second{whiteNoise(50, 1.0F, 3), whiteNoise(50, 1.0F, 4)};
    ASSERT_EQ(processed(paused, first), processed(steady, first));
    paused.setAmount(0.005F);
    EXPECT_EQ(processed(paused, second), second);
    auto frames = interleaved(second);
    paused.processInterleaved(frames.data(), 50);
    EXPECT_EQ(frames, interleaved(second));
    paused.setAmount(0.8F);
    EXPECT_EQ(processed(paused, second), processed(steady, second));
}

TEST(CrossfeedProcessor, IgnoresAmountsThatAreNoFiniteNumber) {
    CrossfeedProcessor crossfeed(48000.0);
    crossfeed.setAmount(0.5F);
    for (const float odd : {NAN, INFINITY, -INFINITY}) {
        crossfeed.setAmount(odd);
        EXPECT_EQ(crossfeed.amount(), 0.5F);
    }
}

TEST(CrossfeedProcessor, TouchesNothingWithoutFrames) {
    CrossfeedProcessor crossfeed(48000.0);
    crossfeed.setAmount(1.0F);
    crossfeed.processPlanar(nullptr, nullptr, 0);
    crossfeed.processInterleaved(nullptr, 0);
}

TEST(CrossfeedProcessor, ScalesTheDirectPathAtOnceAndFeedsAcrossOnlyAfterTheDelay) {
    CrossfeedProcessor crossfeed(48000.0);
    crossfeed.setAmount(1.0F);
    const Stereo input{whiteNoise(14, 1.0F, 1), whiteNoise(14, 1.0F, 2)};
    const Stereo output = processed(crossfeed, input);
    const float norm = 1.0F / 1.5F;
    for (std::size_t k = 0; k < 14; ++k) {
        ASSERT_EQ(output.left[k], norm * input.left[k]);
        ASSERT_EQ(output.right[k], norm * input.right[k]);
    }
}

TEST(CrossfeedProcessor, LowPassesWhatItFeedsAcross) {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        CrossfeedProcessor crossfeed(rate);
        crossfeed.setAmount(1.0F);
        const std::size_t delay = crossfeed.delaySamples();
        std::vector<float> impulse(delay + 200, 0.0F);
        impulse[0] = 1.0F;
        const Stereo output =
            processed(crossfeed, {impulse, std::vector<float>(impulse.size(), 0.0F)});
        const double pole = std::exp(-2.0 * std::numbers::pi * 700.0 / rate);
        for (std::size_t k = 0; k < impulse.size(); ++k) {
            const double expected =
                k < delay ? 0.0
                          : (1.0 - pole) * std::pow(pole, static_cast<double>(k - delay)) / 1.5;
            ASSERT_NEAR(static_cast<double>(output.right[k]), expected, 1e-7) << k;
        }
    }
}

TEST(CrossfeedProcessor, SettlesAMonoConstantAtTheSumOfItsPaths) {
    for (const float amount : {0.01F, 0.3F, 1.0F}) {
        CrossfeedProcessor crossfeed(48000.0);
        crossfeed.setAmount(amount);
        const std::vector<float> constant(2000, 0.5F);
        const Stereo output = processed(crossfeed, {constant, constant});
        const float expected = 0.5F * (1.0F + amount) / (1.0F + amount / 2.0F);
        EXPECT_NEAR(output.left.back(), expected, 1e-6F);
        EXPECT_EQ(output.left, output.right);
    }
}

TEST(CrossfeedProcessor, HearsBadSamplesAsSilenceAndLeavesNothingOfThem) {
    for (const float poison : {NAN, INFINITY, -INFINITY}) {
        CrossfeedProcessor poisoned(48000.0);
        CrossfeedProcessor silenced(48000.0);
        poisoned.setAmount(1.0F);
        silenced.setAmount(1.0F);
        Stereo bad{whiteNoise(300, 1.0F, 1), whiteNoise(300, 1.0F, 2)};
        Stereo quiet = bad;
        for (std::size_t k = 100; k < 110; ++k) {
            bad.left[k] = poison;
            quiet.left[k] = 0.0F;
        }
        EXPECT_EQ(processed(poisoned, bad), processed(silenced, quiet));
    }
}

TEST(CrossfeedProcessor, ComesBackFromHugeSamplesAsItsFiltersRelease) {
    for (const float huge : {1e30F, FLT_MAX}) {
        CrossfeedProcessor crossfeed(48000.0);
        crossfeed.setAmount(1.0F);
        const std::vector<float> loud(100, huge);
        processed(crossfeed, {loud, loud});
        const std::vector<float> calm(4800, 0.25F);
        const Stereo output = processed(crossfeed, {calm, calm});
        EXPECT_NEAR(output.left.back(), 0.25F * 2.0F / 1.5F, 1e-6F) << huge;
        EXPECT_EQ(output.left, output.right);
    }
}

TEST(CrossfeedProcessor, KeepsItsFiltersFiniteOnTheLargestNumbersAtEveryRate) {
    std::mt19937 random(1);
    for (int hertz = 100; hertz < 200000; hertz += 1 + hertz / 100) {
        const double rate = hertz;
        CrossfeedProcessor crossfeed(rate);
        crossfeed.setAmount(0.5F);
        std::vector<float> loud(2000, FLT_MAX);
        for (std::size_t k = 1000; k < loud.size(); ++k)
            loud[k] = random() % 2 == 0 ? FLT_MAX : -FLT_MAX;
        processed(crossfeed, {loud, loud});
        const std::vector<float> calm(static_cast<std::size_t>(rate / 10.0) + 100, 0.25F);
        const Stereo after = processed(crossfeed, {calm, calm});
        ASSERT_NEAR(after.left.back(), 0.25F * 1.5F / 1.25F, 1e-6F) << rate;
    }
}

TEST(CrossfeedProcessor, StaysFiniteOnFullScaleSquares) {
    CrossfeedProcessor crossfeed(48000.0);
    crossfeed.setAmount(1.0F);
    std::vector<float> square(4800);
    for (std::size_t k = 0; k < square.size(); ++k)
        square[k] = k / 50 % 2 == 0 ? 1.0F : -1.0F;
    const Stereo output = processed(crossfeed, {square, square});
    EXPECT_LE(largest(output.left), 2.0F / 1.5F + 1e-6F);
}

TEST(CrossfeedKernels, LeaveNoSubnormalStateWhileDenormalsAreFlushed) {
    for (const Kernels* const kernels : everyKernels()) {
        CrossfeedRun run{.lpStateL = 1.0F, .lpStateR = -1.0F};
        {
            const FlushDenormals flushed;
            const CrossfeedSettings settings{
                .amount = 1.0F, .norm = 1.0F / 1.5F, .lpCoeff = 0.9124F, .delay = 14};
            for (int block = 0; block < 20; ++block) {
                std::vector<float> left(512);
                std::vector<float> right(512);
                std::vector<float> lines(2 * (14 + 512));
                run.lineL = lines.data();
                run.lineR = lines.data() + 14 + 512;
                kernels->stereo.crossfeedPlanar(left.data(), right.data(), 512, settings, run);
            }
        }
        EXPECT_EQ(run.lpStateL, 0.0F);
        EXPECT_EQ(run.lpStateR, 0.0F);
    }
}

RC_GTEST_PROP(CrossfeedProperty, AnySplitIntoBlocksGivesTheSamplesOfOneBlock, ()) {
    const double rate = *rc::gen::elementOf(std::vector<double>{1000.0, 44100.0, 192000.0, 2e6});
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto longest = *rc::gen::inRange<std::size_t>(1, 900);
    const auto* const kernels = *rc::gen::elementOf(everyKernels());
    const Stereo audio{roughNoise(3000, 1.0F, seed), whiteNoise(3000, 1.0F, seed + 1)};
    CrossfeedProcessor whole(rate, *kernels);
    CrossfeedProcessor cut(rate, *kernels);
    whole.setAmount(0.7F);
    cut.setAmount(0.7F);
    const Stereo expected = processed(whole, audio);
    Stereo actual = audio;
    std::size_t begin = 0;
    for (const std::size_t end : randomBlockEnds(3000, longest, seed)) {
        cut.processPlanar(actual.left.data() + begin, actual.right.data() + begin, end - begin);
        begin = end;
    }
    RC_ASSERT(bitsOf(actual.left) == bitsOf(expected.left));
    RC_ASSERT(bitsOf(actual.right) == bitsOf(expected.right));
}

RC_GTEST_PROP(CrossfeedProperty, ResetEqualsAFreshInstance, ()) {
    const double rate = *rc::gen::elementOf(std::vector<double>{1000.0, 44100.0, 96000.0});
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto before = *rc::gen::inRange<std::size_t>(1, 2000);
    CrossfeedProcessor used(rate);
    CrossfeedProcessor fresh(rate);
    used.setAmount(0.5F);
    fresh.setAmount(0.5F);
    processed(used, {roughNoise(before, 1.0F, seed), roughNoise(before, 1.0F, seed + 1)});
    used.reset();
    RC_ASSERT(used.amount() == 0.5F);
    const Stereo audio{whiteNoise(500, 1.0F, seed + 2), whiteNoise(500, 1.0F, seed + 3)};
    RC_ASSERT(processed(used, audio) == processed(fresh, audio));
}

RC_GTEST_PROP(CrossfeedProperty, MonoStaysMonoAndNeverGetsLouderThanItsPathsTogether, ()) {
    const float amount = static_cast<float>(*rc::gen::inRange(10, 1001)) / 1000.0F;
    const auto seed = *rc::gen::arbitrary<unsigned>();
    CrossfeedProcessor crossfeed(48000.0);
    crossfeed.setAmount(amount);
    const auto mono = whiteNoise(1000, 1.0F, seed);
    const Stereo output = processed(crossfeed, {mono, mono});
    RC_ASSERT(output.left == output.right);
    RC_ASSERT(largest(output.left) <= (1.0F + amount) / (1.0F + amount / 2.0F) * 1.000001F);
}

} // namespace
} // namespace orvanta
