#include "core/dsp/NormalizationProcessor.h"

#include "core/dsp/FlushDenormals.h"
#include "tests/core/dsp/LevelSignals.h"
#include "tests/support/reference/Normalization.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <atomic>
#include <cfloat>
#include <complex>
#include <optional>
#include <random>
#include <thread>

namespace orvanta {
namespace {

using test::bitsOf;
using test::blockLengths;
using test::decibels;
using test::everyKernels;
using test::fromDecibels;
using test::randomBlockEnds;
using test::roughNoise;
using test::sine;
using test::whiteNoise;

constexpr double rate = 48000.0;
constexpr std::size_t window = 19200;

std::vector<float> processed(NormalizationProcessor& normalizer, std::vector<float> samples,
                             std::size_t channel = 0) {
    normalizer.process(samples.data(), samples.size(), channel);
    return samples;
}

/// In blocks, through channel 0 only.
void run(NormalizationProcessor& normalizer, const std::vector<float>& signal,
         std::size_t blockLength) {
    for (std::size_t begin = 0; begin < signal.size(); begin += blockLength) {
        const std::size_t end = std::min(begin + blockLength, signal.size());
        std::vector<float> block(signal.begin() + static_cast<std::ptrdiff_t>(begin),
                                 signal.begin() + static_cast<std::ptrdiff_t>(end));
        normalizer.process(block.data(), block.size(), 0);
    }
}

/// One that tells every level by the gain it wants: minus the level, in dB.
void makeTelling(NormalizationProcessor& normalizer) {
    normalizer.setTargetLUFS(0.0F);
    normalizer.setMaxCorrectionDB(1000.0F);
}

double toldLevel(const NormalizationProcessor& normalizer) {
    return -decibels(static_cast<double>(normalizer.targetGainLinear()));
}

/// The level of the last of three windows, when the weighting has settled.
double levelOf(const std::vector<float>& threeWindows, double sampleRate = rate) {
    NormalizationProcessor normalizer(sampleRate);
    makeTelling(normalizer);
    run(normalizer, threeWindows, 480);
    return toldLevel(normalizer);
}

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

/// Sends blocks to a fast one, to one by pairs and to the plain one, and compares all they show.
void expectEqualToThePlainOne(double sampleRate, const Kernels& kernels, float target,
                              unsigned seed) {
    NormalizationProcessor single(sampleRate, kernels);
    NormalizationProcessor pair(sampleRate, kernels);
    reference::Normalization plain(sampleRate);
    single.setTargetLUFS(target);
    pair.setTargetLUFS(target);
    plain.targetLUFS = target;
    auto lengths = blockLengths();
    std::mt19937 random(seed);
    lengths.insert(lengths.end(), {9000, 512, 512, 512, 20000});
    for (const std::size_t length : lengths) {
        auto left = whiteNoise(length, 0.5F, seed++);
        auto right = whiteNoise(length, 0.5F, seed++);
        if (random() % 10 == 0)
            left[length / 2] = NAN;
        if (random() % 10 == 0)
            left[length / 3] = 1e30F;
        auto singleLeft = left;
        auto singleRight = right;
        auto pairLeft = left;
        auto pairRight = right;

        plain.process(left.data(), length, 0);
        single.process(singleLeft.data(), length, 0);
        ASSERT_EQ(single.currentGainDB(), plain.currentGainDB) << length;
        ASSERT_EQ(single.currentGainLinear(), plain.currentGainLinear) << length;
        ASSERT_EQ(single.targetGainLinear(), plain.targetGainLinear) << length;
        plain.process(right.data(), length, 1);
        single.process(singleRight.data(), length, 1);
        pair.processPair(pairLeft.data(), pairRight.data(), length);

        ASSERT_EQ(bitsOf(singleLeft), bitsOf(left)) << length;
        ASSERT_EQ(bitsOf(singleRight), bitsOf(right)) << length;
        ASSERT_EQ(bitsOf(pairLeft), bitsOf(left)) << length;
        ASSERT_EQ(bitsOf(pairRight), bitsOf(right)) << length;
        ASSERT_EQ(pair.currentGainDB(), plain.currentGainDB) << length;
        ASSERT_EQ(pair.currentGainLinear(), plain.currentGainLinear) << length;
        ASSERT_EQ(pair.targetGainLinear(), plain.targetGainLinear) << length;
    }
    ASSERT_GT(plain.closedWindows, 0U);
}

TEST(NormalizationProcessor, ComputesTheBitsOfThePlainLoopsInEveryInstructionSet) {
    for (const Kernels* const kernels : everyKernels())
        for (const double each : {8000.0, 44100.0, 48000.0})
            for (const float target : {-30.0F, -14.0F, 0.0F}) {
                SCOPED_TRACE(testing::Message() << each << " Hz, target " << target << ", set "
                                                << int(kernels->instructionSet));
                ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(each, *kernels, target, 1));
            }
}

TEST(NormalizationProcessor, ComputesTheBitsOfThePlainLoopsWhileDenormalsAreFlushed) {
    const FlushDenormals flushed;
    for (const Kernels* const kernels : everyKernels())
        ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(48000.0, *kernels, -14.0F, 2));
}

TEST(NormalizationKernels, SumTheBitsOfTheSectionsOneAfterTheOtherAtEveryCount) {
    for (const Kernels* const kernels : everyKernels())
        for (std::size_t count = 0; count < 70; ++count) {
            const auto samples = whiteNoise(count, 1.0F, 3);
            Weighting weighting{
                {{1.5F, -2.5F, 1.25F, -1.75F, 0.8F}, {1.0F, -2.0F, 1.0F, -1.9F, 0.95F}},
                {{0.1F, 0.2F, 0.3F, 0.4F}, {0.5F, 0.6F, 0.7F, 0.8F}}};
            reference::WeightingSection first{1.5F, -2.5F, 1.25F, -1.75F, 0.8F,
                                              0.1F, 0.2F,  0.3F,  0.4F};
            reference::WeightingSection second{1.0F, -2.0F, 1.0F, -1.9F, 0.95F,
                                               0.5F, 0.6F,  0.7F, 0.8F};
            std::array<float, 4> sums{};
            for (std::size_t k = 0; k < count; ++k) {
                const float weighted = second.next(first.next(samples[k]));
                sums[k % 4] += weighted * weighted;
            }
            const float sum = kernels->level.weightedSquares(samples.data(), count, weighting);
            ASSERT_EQ(sum, (sums[0] + sums[1]) + (sums[2] + sums[3])) << count;
            ASSERT_EQ(weighting.delay[0].x1, first.x1);
            ASSERT_EQ(weighting.delay[0].x2, first.x2);
            ASSERT_EQ(weighting.delay[0].y1, first.y1);
            ASSERT_EQ(weighting.delay[0].y2, first.y2);
            ASSERT_EQ(weighting.delay[1].x1, second.x1);
            ASSERT_EQ(weighting.delay[1].x2, second.x2);
            ASSERT_EQ(weighting.delay[1].y1, second.y1);
            ASSERT_EQ(weighting.delay[1].y2, second.y2);
        }
}

TEST(NormalizationKernels, LeaveNoSubnormalStateWhileDenormalsAreFlushed) {
    for (const Kernels* const kernels : everyKernels()) {
        Weighting weighting{{{1.5351249F, -2.6916962F, 1.1983929F, -1.6906593F, 0.73248076F},
                             {1.0F, -2.0F, 1.0F, -1.9900475F, 0.99007225F}},
                            {{1.0F, -1.0F, 1.0F, -1.0F}, {1.0F, -1.0F, 1.0F, -1.0F}}};
        const std::vector<float> silence(4800);
        {
            const FlushDenormals flushed;
            for (int tenths = 0; tenths < 600; ++tenths)
                kernels->level.weightedSquares(silence.data(), silence.size(), weighting);
        }
        for (const WeightingDelay& delay : weighting.delay)
            for (const float state : {delay.x1, delay.x2, delay.y1, delay.y2})
                EXPECT_TRUE(state == 0.0F || std::isnormal(state)) << state;
    }
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

TEST(NormalizationProcessor, LeavesEverythingAloneWhileDisabledOrWithoutSamples) {
    NormalizationProcessor normalizer(rate);
    normalizer.setEnabled(false);
    EXPECT_FALSE(normalizer.enabled());
    const auto quiet = whiteNoise(480, 0.001F, 1);
    for (int block = 0; block < 100; ++block)
        ASSERT_EQ(processed(normalizer, quiet), quiet);
    normalizer.setEnabled(true);
    normalizer.process(nullptr, 0, 0);
    normalizer.processPair(nullptr, nullptr, 0);
    for (int block = 0; block < 39; ++block)
        ASSERT_EQ(processed(normalizer, quiet), quiet);
}

TEST(NormalizationProcessor, TakesNewSettingsIntoAccountWhenTheWindowCloses) {
    NormalizationProcessor normalizer(rate);
    EXPECT_EQ(normalizer.targetLUFS(), -14.0F);
    EXPECT_EQ(normalizer.maxCorrectionDB(), 12.0F);
    run(normalizer, std::vector<float>(window), 480);
    const float target = normalizer.targetGainLinear();
    normalizer.setMaxCorrectionDB(6.0F);
    run(normalizer, std::vector<float>(window - 480), 480);
    EXPECT_EQ(normalizer.targetGainLinear(), target);
    run(normalizer, std::vector<float>(480), 480);
    EXPECT_FLOAT_EQ(normalizer.targetGainLinear(), std::pow(10.0F, 6.0F / 20.0F));
}

TEST(NormalizationProcessor, IgnoresSettingsThatAreNoFiniteNumber) {
    NormalizationProcessor normalizer(rate);
    for (const float odd : {NAN, INFINITY, -INFINITY}) {
        normalizer.setTargetLUFS(odd);
        normalizer.setMaxCorrectionDB(odd);
        EXPECT_EQ(normalizer.targetLUFS(), -14.0F);
        EXPECT_EQ(normalizer.maxCorrectionDB(), 12.0F);
    }
}

TEST(NormalizationProcessor, ComesBackFromSettingsBeyondAllSense) {
    NormalizationProcessor normalizer(1.0);
    normalizer.setTargetLUFS(FLT_MAX);
    normalizer.setMaxCorrectionDB(FLT_MAX);
    for (int block = 0; block < 100; ++block)
        processed(normalizer, std::vector<float>(100));
    EXPECT_TRUE(std::isfinite(normalizer.currentGainLinear()));
    normalizer.setTargetLUFS(-14.0F);
    normalizer.setMaxCorrectionDB(0.0F);
    for (int block = 0; block < 100; ++block)
        processed(normalizer, std::vector<float>(100));
    EXPECT_EQ(normalizer.currentGainLinear(), 1.0F);
}

TEST(NormalizationProcessor, TakesARateThatIsNoneForOneWithoutWindowsAndSlew) {
    for (const double odd : {0.0, -48000.0, double(NAN), -double(INFINITY)}) {
        NormalizationProcessor normalizer(odd);
        EXPECT_EQ(normalizer.windowSizeInSamples(), 0U);
        processed(normalizer, std::vector<float>(10));
        EXPECT_FLOAT_EQ(normalizer.currentGainLinear(), std::pow(10.0F, 12.0F / 20.0F));
    }
}

void expectUnity(const NormalizationProcessor& normalizer) {
    EXPECT_EQ(normalizer.currentGainDB(), 0.0F);
    EXPECT_EQ(normalizer.currentGainLinear(), 1.0F);
    EXPECT_EQ(normalizer.targetGainLinear(), 1.0F);
}

TEST(NormalizationProcessor, ReadsAsUnityAtOnceAfterAResetWhetherABlockFollowsOrNot) {
    NormalizationProcessor normalizer(rate);
    expectUnity(normalizer);
    normalizer.setTargetLUFS(-20.0F);
    normalizer.setMaxCorrectionDB(9.0F);
    run(normalizer, std::vector<float>(2 * window), 480);
    ASSERT_GT(normalizer.currentGainDB(), 0.0F);
    normalizer.reset();
    expectUnity(normalizer);
    normalizer.setEnabled(false);
    processed(normalizer, std::vector<float>(480));
    expectUnity(normalizer);
    normalizer.setEnabled(true);
    const auto noise = whiteNoise(480, 0.1F, 1);
    EXPECT_EQ(processed(normalizer, noise), noise);
    expectUnity(normalizer);
    EXPECT_EQ(normalizer.targetLUFS(), -20.0F);
    EXPECT_EQ(normalizer.maxCorrectionDB(), 9.0F);
}

TEST(NormalizationProcessor, ReadsAsUnityAfterAResetInTheMiddleOfABlock) {
    // Windows of no length, so that every block changes the published gains.
    NormalizationProcessor normalizer(0.0);
    std::atomic<bool> isOver{false};
    std::atomic<int> blocks{0};
    std::thread io([&] {
        std::vector<float> samples(64);
        while (!isOver.load()) {
            std::fill(samples.begin(), samples.end(), 0.1F);
            normalizer.process(samples.data(), samples.size(), 0);
            ++blocks;
        }
    });
    for (int k = 0; k < 2000 || blocks < 100; ++k) {
        normalizer.reset();
        const float gain = normalizer.currentGainLinear();
        EXPECT_TRUE(gain >= 1.0F && gain < 4.0F) << gain;
        normalizer.setTargetLUFS(-14.0F - static_cast<float>(k % 3));
    }
    isOver = true;
    io.join();
    normalizer.reset();
    expectUnity(normalizer);
}

TEST(NormalizationProcessor, LeavesBlocksWithBadSamplesOutOfTheMeasurement) {
    const auto signal = sine(4 * window, 1000.0, 0.1, rate);
    const double expected = levelOf({signal.begin(), signal.begin() + 3 * window});
    for (const float poison : {NAN, INFINITY, -INFINITY, FLT_MAX})
        for (const std::size_t place : {0U, 100U, 478U, 479U}) {
            NormalizationProcessor normalizer(rate);
            makeTelling(normalizer);
            run(normalizer, {signal.begin(), signal.begin() + 480 * 20}, 480);
            std::vector<float> block(480, 0.1F);
            block[place] = poison;
            if (poison == FLT_MAX)
                std::fill(block.begin(), block.end(), poison);
            processed(normalizer, block);
            run(normalizer, {signal.begin() + 480 * 20, signal.begin() + 480 * 39}, 480);
            ASSERT_EQ(normalizer.targetGainLinear(), 1.0F) << poison << " at " << place;
            run(normalizer, {signal.begin() + 480 * 39, signal.begin() + 480 * 40}, 480);
            // The weighting starts anew in the middle of the window.
            EXPECT_NEAR(toldLevel(normalizer), expected, 0.1) << poison << " at " << place;
            run(normalizer, {signal.begin() + 480 * 40, signal.begin() + 480 * 80}, 480);
            EXPECT_NEAR(toldLevel(normalizer), expected, 0.01) << poison << " at " << place;
        }
}

TEST(NormalizationProcessor, ScalesCleanAudioAsEverAroundBadSamples) {
    NormalizationProcessor normalizer(rate);
    run(normalizer, std::vector<float>(window), 480);
    std::vector<float> block(480, 0.1F);
    block[7] = NAN;
    const auto output = processed(normalizer, block);
    const float gain = normalizer.currentGainLinear();
    for (std::size_t k = 0; k < block.size(); ++k)
        ASSERT_TRUE(k == 7 || output[k] == 0.1F * gain) << k;
}

TEST(NormalizationProcessor, TakesHugeSamplesForLoudAndForgetsThemWithTheirWindow) {
    NormalizationProcessor normalizer(rate);
    const auto signal = sine(window, 1000.0, 0.1, rate);
    run(normalizer, std::vector<float>(480, 1e30F), 480);
    run(normalizer, signal, 480);
    EXPECT_FLOAT_EQ(normalizer.targetGainLinear(), std::pow(10.0F, -12.0F / 20.0F));
    EXPECT_TRUE(std::isfinite(normalizer.currentGainDB()));
    // The weighting needs two windows more to fall from there to the level of the signal.
    run(normalizer, signal, 480);
    run(normalizer, signal, 480);
    run(normalizer, signal, 480);
    const double correction = decibels(static_cast<double>(normalizer.targetGainLinear()));
    EXPECT_NEAR(correction, -14.0 - levelOf(sine(3 * window, 1000.0, 0.1, rate)), 0.01);
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

RC_GTEST_PROP(NormalizationProperty, ResetEqualsAFreshInstance, ()) {
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto before = *rc::gen::inRange<std::size_t>(1, 30000);
    NormalizationProcessor used(rate);
    NormalizationProcessor fresh(rate);
    run(used, roughNoise(before, 1.0F, seed), 512);
    used.reset();
    for (unsigned block = 0; block < 60; ++block) {
        auto left = whiteNoise(500, 0.1F, seed + block);
        auto right = left;
        auto expectedLeft = left;
        auto expectedRight = left;
        used.processPair(left.data(), right.data(), left.size());
        fresh.processPair(expectedLeft.data(), expectedRight.data(), left.size());
        RC_ASSERT(left == expectedLeft);
        RC_ASSERT(right == expectedRight);
        RC_ASSERT(used.currentGainDB() == fresh.currentGainDB());
        RC_ASSERT(used.currentGainLinear() == fresh.currentGainLinear());
        RC_ASSERT(used.targetGainLinear() == fresh.targetGainLinear());
    }
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
