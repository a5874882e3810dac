// How far and how fast the gain moves to where the level wants it.

#include "tests/core/dsp/NormalizationRuns.h"
#include "tests/support/reference/Normalization.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanta {
namespace {

using test::decibels;
using test::fromDecibels;
using test::processed;
using test::randomBlockEnds;
using test::rate;
using test::run;
using test::sine;
using test::whiteNoise;
using test::window;

TEST(NormalizationProcessor, CorrectsByNoMoreThanItMayEitherWay) {
    for (const float most : {3.0F, 12.0F, 20.0F}) {
        NormalizationProcessor normalizer(rate);
        normalizer.setMaxCorrectionDB(most);
        normalizer.setTargetLUFS(-70.0F);
        run(normalizer, whiteNoise(window, 1.0F, 1), 480);
        EXPECT_FLOAT_EQ(normalizer.targetGainLinear(), std::pow(10.0F, -most / 20.0F));
    }
}

TEST(NormalizationProcessor, NeverCorrectsWhenItMustNot) {
    NormalizationProcessor normalizer(rate);
    normalizer.setMaxCorrectionDB(0.0F);
    for (const float amplitude : {0.0F, 0.001F, 1.0F}) {
        const auto noise = whiteNoise(window, amplitude, 1);
        EXPECT_EQ(processed(normalizer, noise), noise);
        run(normalizer, noise, 480);
        EXPECT_EQ(normalizer.targetGainLinear(), 1.0F);
        EXPECT_EQ(normalizer.currentGainDB(), 0.0F);
    }
}

TEST(NormalizationProcessor, LeavesTheAudioAloneAtACorrectionOfExactlyZero) {
    const auto noise = whiteNoise(8000, 0.5F, 1);
    reference::Normalization plain(rate);
    auto copy = noise;
    for (int block = 0; block < 3; ++block)
        plain.process(copy.data(), copy.size(), 0), copy = noise;
    ASSERT_EQ(plain.closedWindows, 1U);

    NormalizationProcessor normalizer(rate);
    normalizer.setTargetLUFS(plain.level);
    for (int block = 0; block < 3; ++block)
        EXPECT_EQ(processed(normalizer, noise), noise);
    EXPECT_EQ(normalizer.targetGainLinear(), 1.0F);
    EXPECT_EQ(normalizer.currentGainLinear(), 1.0F);
    EXPECT_EQ(normalizer.currentGainDB(), 0.0F);
}

TEST(NormalizationProcessor, StaysAtUnityUntilTheFirstWindowIsFull) {
    NormalizationProcessor normalizer(rate);
    const auto quiet = sine(480, 1000.0, 0.01, rate);
    for (std::size_t block = 0; block < 39; ++block)
        ASSERT_EQ(processed(normalizer, quiet), quiet);
    EXPECT_EQ(normalizer.currentGainLinear(), 1.0F);
    // The 40th block closes the window and takes the first step already.
    const auto output = processed(normalizer, quiet);
    const float step = std::pow(10.0F, 2.0F * (480.0F / 48000.0F) / 20.0F);
    EXPECT_EQ(normalizer.currentGainLinear(), step);
    EXPECT_EQ(output[100], quiet[100] * step);
}

TEST(NormalizationProcessor, MovesByTwoDecibelsASecondOfOneChannel) {
    NormalizationProcessor normalizer(rate);
    const std::vector<float> silence(480);
    // A window of silence, of which the last block took one step.
    for (int block = 0; block < 40; ++block)
        processed(normalizer, silence);
    const float before = normalizer.currentGainDB();
    for (int block = 0; block < 300; ++block)
        processed(normalizer, silence);
    EXPECT_NEAR(normalizer.currentGainDB() - before, 3.0F * 2.0F, 1e-3F);
}

TEST(NormalizationProcessor, MovesByFourDecibelsASecondOfStereoAndItsSecondChannelIsAStepAhead) {
    NormalizationProcessor normalizer(rate);
    std::vector<float> left(480);
    std::vector<float> right(480);
    for (int block = 0; block < 40; ++block)
        normalizer.processPair(left.data(), right.data(), left.size());
    const float before = normalizer.currentGainDB();
    for (int block = 0; block < 200; ++block)
        normalizer.processPair(left.data(), right.data(), left.size());
    EXPECT_NEAR(normalizer.currentGainDB() - before, 2.0F * 4.0F, 1e-3F);

    std::fill(left.begin(), left.end(), 0.5F);
    std::fill(right.begin(), right.end(), 0.5F);
    normalizer.processPair(left.data(), right.data(), left.size());
    const float step = std::pow(10.0F, 2.0F * (480.0F / 48000.0F) / 20.0F);
    EXPECT_FLOAT_EQ(right[0] / left[0], step);
    // The gain in dB is that of the first channel.
    EXPECT_FLOAT_EQ(normalizer.currentGainDB(), 20.0F * std::log10(left[0] / 0.5F));
    EXPECT_FLOAT_EQ(normalizer.currentGainLinear(), right[0] / 0.5F);
}

TEST(NormalizationProcessor, MovesDownAsFastAsUp) {
    NormalizationProcessor normalizer(rate);
    normalizer.setTargetLUFS(-60.0F);
    const auto loud = sine(480, 1000.0, 1.0, rate);
    for (int block = 0; block < 40 + 100; ++block)
        processed(normalizer, loud);
    EXPECT_NEAR(normalizer.currentGainDB(), -2.02F, 1e-3F);
}

TEST(NormalizationProcessor, ReachesItsTargetExactly) {
    NormalizationProcessor normalizer(rate);
    normalizer.setMaxCorrectionDB(1.0F);
    const std::vector<float> silence(480);
    for (int block = 0; block < 100; ++block)
        processed(normalizer, silence);
    EXPECT_EQ(normalizer.currentGainLinear(), normalizer.targetGainLinear());
    EXPECT_NEAR(normalizer.currentGainDB(), 1.0F, 1e-5F);
}

TEST(NormalizationProcessor, StaysWhereItIsWithinAThousandthOfItsTarget) {
    NormalizationProcessor normalizer(rate);
    normalizer.setMaxCorrectionDB(1.0F);
    const std::vector<float> silence(480);
    for (int block = 0; block < 100; ++block)
        processed(normalizer, silence);
    const float reached = normalizer.currentGainLinear();
    ASSERT_EQ(reached, normalizer.targetGainLinear());
    // 0.005 dB more are less than a thousandth of the gain.
    normalizer.setMaxCorrectionDB(1.005F);
    for (int block = 0; block < 80; ++block)
        processed(normalizer, silence);
    EXPECT_GT(normalizer.targetGainLinear(), reached);
    EXPECT_EQ(normalizer.currentGainLinear(), reached);
}

TEST(NormalizationProcessor, DoesNotTouchTheAudioWithinAThousandthOfUnity) {
    NormalizationProcessor normalizer(rate);
    normalizer.setMaxCorrectionDB(0.02F);
    const std::vector<float> silence(480);
    const std::vector<float> samples(480, 0.3F);
    for (int block = 0; block < 39; ++block)
        processed(normalizer, silence);
    // 48 frames move the gain by 0.002 dB a call.
    for (int block = 0; block < 10; ++block)
        processed(normalizer, std::vector<float>(48));
    for (int block = 0; block < 3; ++block)
        EXPECT_EQ(processed(normalizer, std::vector<float>(48, 0.3F), 1),
                  std::vector<float>(48, 0.3F));
    EXPECT_GT(normalizer.currentGainLinear(), 1.0F);
    for (int block = 0; block < 10; ++block)
        processed(normalizer, silence, 1);
    EXPECT_NE(processed(normalizer, samples, 1), samples);
}

RC_GTEST_PROP(NormalizationProperty, MovesWithTheLengthOfTheAudioAndNotWithTheNumberOfBlocks, ()) {
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto longest = *rc::gen::inRange<std::size_t>(1, 4000);
    NormalizationProcessor normalizer(rate);
    run(normalizer, std::vector<float>(window), 480);
    const float before = normalizer.currentGainDB();
    std::size_t begin = 0;
    for (const std::size_t end : randomBlockEnds(48000, longest, seed)) {
        processed(normalizer, std::vector<float>(end - begin));
        begin = end;
    }
    // Each step is rounded once.
    RC_ASSERT(std::fabs(normalizer.currentGainDB() - before - 2.0F) < 0.03F);
}

RC_GTEST_PROP(NormalizationProperty, StaysWithinItsCorrectionAtEveryRateAndLevel, ()) {
    const auto anyRate = static_cast<double>(*rc::gen::inRange(8000, 192001));
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto level = static_cast<double>(*rc::gen::inRange(-120, 41));
    NormalizationProcessor normalizer(anyRate);
    const auto noise = whiteNoise(4000, static_cast<float>(fromDecibels(level)), seed);
    for (int block = 0; block < 60; ++block) {
        processed(normalizer, noise);
        RC_ASSERT(std::fabs(normalizer.currentGainDB()) <= 12.0001F);
        RC_ASSERT(std::fabs(decibels(static_cast<double>(normalizer.currentGainLinear()))) <=
                  12.0001);
    }
}

} // namespace
} // namespace orvanta
