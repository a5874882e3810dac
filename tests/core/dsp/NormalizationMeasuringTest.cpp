// What level the normaliser measures, over which samples, and when it closes a window.

#include "tests/core/dsp/NormalizationRuns.h"
#include "tests/support/reference/Normalization.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <optional>
#include <vector>

namespace orvanta {
namespace {

using test::decibels;
using test::fromDecibels;
using test::levelOf;
using test::makeTelling;
using test::processed;
using test::rate;
using test::run;
using test::sine;
using test::toldLevel;
using test::whiteNoise;
using test::window;

/// What both sections together do to a frequency, given as a part of the sample rate.
double weightingAt(double cycles) {
    const std::complex<double> z1 = std::polar(1.0, -2.0 * std::numbers::pi * cycles);
    const std::complex<double> z2 = z1 * z1;
    const auto section = [&](float b0, float b1, float b2, float a1, float a2) {
        return (double(b0) + double(b1) * z1 + double(b2) * z2) /
               (1.0 + double(a1) * z1 + double(a2) * z2);
    };
    return std::abs(section(1.5351249F, -2.6916962F, 1.1983929F, -1.6906593F, 0.73248076F) *
                    section(1.0F, -2.0F, 1.0F, -1.9900475F, 0.99007225F));
}

TEST(NormalizationProcessor, MeasuresOverWindowsOfFourTenthsOfASecond) {
    EXPECT_EQ(NormalizationProcessor(44100.0).windowSizeInSamples(), 17640U);
    EXPECT_EQ(NormalizationProcessor(48000.0).windowSizeInSamples(), 19200U);
}

TEST(NormalizationProcessor, ClosesAWindowWithTheFirstBlockThatFillsItAndDividesByAllItMeasured) {
    NormalizationProcessor normalizer(rate);
    makeTelling(normalizer);
    const auto noise = whiteNoise(38 * std::size_t{512}, 0.5F, 1);
    run(normalizer, {noise.begin(), noise.begin() + 37 * 512}, 512);
    EXPECT_EQ(normalizer.targetGainLinear(), 1.0F);
    run(normalizer, {noise.begin() + 37 * 512, noise.end()}, 512);

    reference::WeightingSection first{1.5351249F, -2.6916962F, 1.1983929F, -1.6906593F,
                                      0.73248076F};
    reference::WeightingSection second{1.0F, -2.0F, 1.0F, -1.9900475F, 0.99007225F};
    double sum = 0.0;
    for (const float sample : noise) {
        const auto weighted = static_cast<double>(second.next(first.next(sample)));
        sum += weighted * weighted;
    }
    // Divided by 19200 the level would come out 0.057 dB higher.
    EXPECT_NEAR(toldLevel(normalizer), 10.0 * std::log10(sum / 19456.0), 1e-4);
}

TEST(NormalizationProcessor, MeasuresSinesAtTheirLevelTimesTheWeighting) {
    for (const double hertz : {40.0, 100.0, 500.0, 997.0, 1000.0, 4000.0, 10000.0, 18000.0})
        for (const double peak : {-60.0, -23.0, 0.0}) {
            const double expected =
                peak - decibels(std::numbers::sqrt2) + decibels(weightingAt(hertz / rate));
            EXPECT_NEAR(levelOf(sine(3 * window, hertz, fromDecibels(peak), rate)), expected, 0.01)
                << hertz << " Hz at " << peak << " dB";
        }
}

TEST(NormalizationProcessor, TellsTheLevelOfASineOf997HertzWithoutAnyOffset) {
    // The weighting lifts this frequency by 0.69 dB, and nothing takes that off again.
    EXPECT_NEAR(decibels(weightingAt(997.0 / rate)), 0.691, 0.01);
    EXPECT_NEAR(levelOf(sine(3 * window, 997.0, fromDecibels(-23.0), rate)), -23.0 - 3.0103 + 0.691,
                0.01);
}

TEST(NormalizationProcessor, MeasuresWhiteNoiseAtItsLevelTimesTheMeanWeighting) {
    double meanSquare = 0.0;
    constexpr int steps = 20000;
    for (int k = 0; k < steps; ++k) {
        const double weight = weightingAt(0.5 * (k + 0.5) / steps);
        meanSquare += weight * weight / steps;
    }
    // Evenly spread amplitudes up to 0.3 have a mean square of 0.3 squared by 3.
    const double expected = 10.0 * std::log10(0.09 / 3.0 * meanSquare);
    EXPECT_NEAR(levelOf(whiteNoise(3 * window, 0.3F, 1)), expected, 0.15);
}

TEST(NormalizationProcessor, UsesTheSameWeightingAtEveryRate) {
    const std::size_t threeWindows = 3 * std::size_t{38400};
    EXPECT_NEAR(levelOf(sine(threeWindows, 2000.0, 0.1, 96000.0), 96000.0),
                levelOf(sine(3 * window, 1000.0, 0.1, 48000.0)), 0.01);
}

TEST(NormalizationProcessor, HearsAlmostNothingOfAConstant) {
    NormalizationProcessor normalizer(rate);
    makeTelling(normalizer);
    const std::vector<float> constant(window, 1.0F);
    run(normalizer, constant, 480);
    EXPECT_LT(toldLevel(normalizer), -10.0);
    run(normalizer, constant, 480);
    EXPECT_LT(toldLevel(normalizer), -60.0);
}

TEST(NormalizationProcessor, TakesSilenceForMinus200AndGoesAsFarUpAsItMay) {
    NormalizationProcessor normalizer(rate);
    run(normalizer, std::vector<float>(window), 480);
    EXPECT_FLOAT_EQ(normalizer.targetGainLinear(), std::pow(10.0F, 12.0F / 20.0F));
    makeTelling(normalizer);
    run(normalizer, std::vector<float>(window), 480);
    EXPECT_NEAR(toldLevel(normalizer), -200.0, 1e-4);
}

TEST(NormalizationProcessor, MeasuresOnly8192SamplesOfALongBlockButMovesAndScalesAllOfIt) {
    NormalizationProcessor normalizer(rate);
    NormalizationProcessor sameButForTheTails(rate);
    auto block = whiteNoise(10000, 0.001F, 1);
    auto louderTail = block;
    std::fill(louderTail.begin() + 8192, louderTail.end(), 0.9F);
    for (int k = 0; k < 2; ++k) {
        ASSERT_EQ(processed(normalizer, block), block);
        processed(sameButForTheTails, louderTail);
    }
    // 16384 are measured, so the window is open still.
    ASSERT_EQ(normalizer.targetGainLinear(), 1.0F);
    const auto output = processed(normalizer, block);
    processed(sameButForTheTails, louderTail);
    EXPECT_NE(normalizer.targetGainLinear(), 1.0F);
    EXPECT_EQ(sameButForTheTails.targetGainLinear(), normalizer.targetGainLinear());
    const float step = std::pow(10.0F, 2.0F * (10000.0F / 48000.0F) / 20.0F);
    EXPECT_EQ(normalizer.currentGainLinear(), step);
    for (std::size_t k = 0; k < output.size(); ++k)
        ASSERT_EQ(output[k], block[k] * step);
}

TEST(NormalizationProcessor, MeasuresTheFirstChannelAndGivesAllTheSameGain) {
    NormalizationProcessor normalizer(rate);
    const auto loud = whiteNoise(480, 1.0F, 1);
    for (std::size_t block = 0; block < 200; ++block)
        for (std::size_t channel = 1; channel < 4; ++channel)
            ASSERT_EQ(processed(normalizer, loud, channel), loud);
    run(normalizer, whiteNoise(window, 0.001F, 1), 480);
    const float gain = normalizer.currentGainLinear();
    EXPECT_GT(gain, 1.0F);
    EXPECT_GT(processed(normalizer, loud, 3)[0] / loud[0], gain);
}

TEST(NormalizationProcessor, MeasuresTheSameInBlocksOfAnyLengthThatFillsTheWindow) {
    // Beyond the length: the roundings of the sum, which is made block by block.
    const auto signal = whiteNoise(window, 0.2F, 1);
    std::optional<double> expected;
    for (const std::size_t length : {1U, 64U, 100U, 480U, 1920U, 6400U}) {
        NormalizationProcessor normalizer(rate);
        makeTelling(normalizer);
        run(normalizer, signal, length);
        ASSERT_NE(normalizer.targetGainLinear(), 1.0F) << length;
        expected = expected.value_or(toldLevel(normalizer));
        EXPECT_NEAR(toldLevel(normalizer), *expected, 2e-3) << length;
    }
}

} // namespace
} // namespace orvanta
