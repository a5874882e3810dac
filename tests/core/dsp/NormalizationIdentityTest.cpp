// The normaliser against the same thing done one sample after the other: equal to the last bit in
// every instruction set.

#include "core/dsp/FlushDenormals.h"
#include "tests/core/dsp/NormalizationRuns.h"
#include "tests/support/reference/Normalization.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

namespace orvanta {
namespace {

using test::bitsOf;
using test::blockLengths;
using test::everyKernels;
using test::whiteNoise;

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

} // namespace
} // namespace orvanta
