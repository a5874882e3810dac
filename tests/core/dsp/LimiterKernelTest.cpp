#include "core/dsp/FlushDenormals.h"
#include "core/dsp/LimiterProcessor.h"
#include "tests/core/dsp/LevelSignals.h"
#include "tests/support/reference/Limiter.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace orvanta {
namespace {

using test::bitsOf;
using test::blockLengths;
using test::everyKernels;
using test::randomBlockEnds;
using test::roughNoise;
using test::whiteNoise;

struct Fast {
    Fast(double rate, const Kernels& kernels, float ceiling)
        : single(rate, 2, kernels), pair(rate, 2, kernels) {
        single.setCeiling(ceiling);
        pair.setCeiling(ceiling);
    }

    LimiterProcessor single;
    LimiterProcessor pair;
};

/// Runs blocks of many lengths through all versions and compares every sample and reduction.
void expectEqualToThePlainOne(double rate, const Kernels& kernels, float ceiling, unsigned seed) {
    Fast fast(rate, kernels, ceiling);
    reference::Limiter plain(rate, 2);
    plain.setCeiling(ceiling);
    for (const std::size_t length : blockLengths()) {
        auto left = roughNoise(length, 3.0F, seed++);
        auto right = whiteNoise(length, 1.5F, seed++);
        auto singleLeft = left;
        auto singleRight = right;
        auto pairLeft = left;
        auto pairRight = right;

        plain.process(left.data(), length, 0);
        fast.single.process(singleLeft.data(), length, 0);
        ASSERT_EQ(fast.single.gainReductionDB(), plain.gainReductionDB) << length;
        plain.process(right.data(), length, 1);
        fast.single.process(singleRight.data(), length, 1);
        fast.pair.processPair(pairLeft.data(), pairRight.data(), length);

        ASSERT_EQ(bitsOf(singleLeft), bitsOf(left)) << length;
        ASSERT_EQ(bitsOf(singleRight), bitsOf(right)) << length;
        ASSERT_EQ(bitsOf(pairLeft), bitsOf(left)) << length;
        ASSERT_EQ(bitsOf(pairRight), bitsOf(right)) << length;
        ASSERT_EQ(fast.single.gainReductionDB(), plain.gainReductionDB) << length;
        ASSERT_EQ(fast.pair.gainReductionDB(), plain.gainReductionDB) << length;
    }
}

TEST(LimiterKernels, ComputeTheBitsOfThePlainLoopInEveryInstructionSet) {
    for (const Kernels* const kernels : everyKernels())
        // 1, 2, 3 and 5 samples of look-ahead, then usual ones, then more than the line's room.
        for (const double rate : {500.0, 2000.0, 3000.0, 5500.0, 8000.0, 44100.0, 192000.0, 9e5})
            for (const float ceiling : {0.0F, -6.0F, 3.0F}) {
                SCOPED_TRACE(testing::Message() << rate << " Hz, " << ceiling << " dB, set "
                                                << int(kernels->instructionSet));
                ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(rate, *kernels, ceiling, 1));
            }
}

TEST(LimiterKernels, ComputeTheBitsOfThePlainLoopWhileDenormalsAreFlushed) {
    const FlushDenormals flushed;
    for (const Kernels* const kernels : everyKernels())
        for (const float ceiling : {0.0F, -780.0F})
            ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(48000.0, *kernels, ceiling, 2));
}

TEST(LimiterKernels, TakeACeilingOfNothingOrOfNoNumberLikeThePlainLoop) {
    for (const Kernels* const kernels : everyKernels())
        for (const float ceiling : {-INFINITY, INFINITY, NAN, -2000.0F, 2000.0F})
            ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(48000.0, *kernels, ceiling, 3))
                << ceiling;
}

TEST(LimiterKernels, LeaveNoSubnormalEnvelopeWhileDenormalsAreFlushed) {
    for (const Kernels* const kernels : everyKernels()) {
        std::vector<float> line(1024 + 48);
        std::vector<float> samples(1024);
        LimiterRun single{.envelope = 1.0F, .line = line.data()};
        LimiterRun left{.envelope = 1.0F, .line = line.data()};
        LimiterRun right{.envelope = 2.0F, .line = line.data()};
        {
            const FlushDenormals flushed;
            const LimiterSettings settings{.ceiling = 1.0F, .release = 0.9995834F, .lookAhead = 48};
            for (int seconds = 0; seconds < 6 * 47; ++seconds) {
                kernels->level.limit(samples.data(), samples.size(), settings, single);
                kernels->level.limitPair(samples.data(), samples.data(), samples.size(), settings,
                                         left, right);
            }
        }
        EXPECT_EQ(single.envelope, 0.0F);
        EXPECT_EQ(left.envelope, 0.0F);
        EXPECT_EQ(right.envelope, 0.0F);
    }
}

TEST(LimiterPair, EqualsOneChannelAfterTheOtherWhateverCameBefore) {
    for (const Kernels* const kernels : everyKernels()) {
        LimiterProcessor apart(48000.0, 2, *kernels);
        LimiterProcessor together(48000.0, 2, *kernels);
        // One channel is ahead of the other, so their delay lines stand at different places.
        auto before = whiteNoise(777, 2.0F, 1);
        auto same = before;
        apart.process(before.data(), before.size(), 1);
        together.process(same.data(), same.size(), 1);
        for (unsigned block = 0; block < 20; ++block) {
            auto left = whiteNoise(300, 2.0F, 10 + block);
            auto right = whiteNoise(300, 2.0F, 40 + block);
            auto pairLeft = left;
            auto pairRight = right;
            apart.process(left.data(), left.size(), 0);
            apart.process(right.data(), right.size(), 1);
            together.processPair(pairLeft.data(), pairRight.data(), pairLeft.size());
            ASSERT_EQ(pairLeft, left);
            ASSERT_EQ(pairRight, right);
            ASSERT_EQ(together.gainReductionDB(), apart.gainReductionDB());
        }
    }
}

TEST(LimiterPair, OfALimiterForOneChannelLeavesTheSecondAlone) {
    LimiterProcessor limiter(48000.0, 1);
    std::vector<float> left(100, 2.0F);
    std::vector<float> right(100, 2.0F);
    limiter.processPair(left.data(), right.data(), left.size());
    EXPECT_EQ(left[0], 0.0F);
    EXPECT_EQ(right, std::vector<float>(100, 2.0F));
    LimiterProcessor none(48000.0, 0);
    none.processPair(right.data(), right.data(), right.size());
    EXPECT_EQ(right, std::vector<float>(100, 2.0F));
}

TEST(LimiterPair, LeavesEverythingAloneWhileDisabledOrWithoutSamples) {
    LimiterProcessor limiter(48000.0, 2);
    limiter.processPair(nullptr, nullptr, 0);
    limiter.setEnabled(false);
    std::vector<float> left(100, 2.0F);
    std::vector<float> right(100, 3.0F);
    limiter.processPair(left.data(), right.data(), left.size());
    EXPECT_EQ(left, std::vector<float>(100, 2.0F));
    EXPECT_EQ(right, std::vector<float>(100, 3.0F));
}

TEST(LimiterPair, PublishesTheReductionOfTheFirstChannelAndThenOfTheSecond) {
    for (const Kernels* const kernels : everyKernels())
        for (std::size_t place = 0; place < 20; ++place) {
            LimiterProcessor limiter(48000.0, 2, *kernels);
            std::vector<float> left(20, 0.0F);
            std::vector<float> right(20, 0.0F);
            left[place] = 4.0F;
            right[19 - place] = 2.0F;
            limiter.processPair(left.data(), right.data(), left.size());
            // The second channel's 6 dB are below what is left of the first one's 12.
            const float first = -20.0F * std::log10(0.25F);
            ASSERT_EQ(limiter.gainReductionDB(), 0.9F * first) << place;
        }
}

TEST(LimiterProcessor, OvershootsByWhatItsEnvelopeFallsDuringTheLookAhead) {
    for (const double rate : {8000.0, 44100.0, 48000.0, 96000.0, 192000.0}) {
        LimiterProcessor limiter(rate, 1);
        const auto lookAhead = static_cast<double>(limiter.lookAheadSamples());
        // Peaks that come too seldom to meet each other.
        std::vector<float> samples(40000, 0.0F);
        for (std::size_t k = 0; k < samples.size(); k += 2000)
            samples[k] = k % 4000 == 0 ? 8.0F : -8.0F;
        limiter.process(samples.data(), samples.size(), 0);
        float highest = 0.0F;
        for (const float sample : samples)
            highest = std::max(highest, std::fabs(sample));
        const double expected = std::exp(lookAhead / (rate * 0.05));
        EXPECT_NEAR(static_cast<double>(highest), expected, 1e-4) << rate;
        // About 2 %, whatever the rate.
        EXPECT_NEAR(static_cast<double>(highest), 1.02, 0.001) << rate;
    }
}

TEST(LimiterProcessor, BringsFullScaleSquaresOfAnyLoudnessNearTheCeiling) {
    for (const float loudness : {1.0F, 2.0F, 1000.0F}) {
        LimiterProcessor limiter(48000.0, 2);
        std::vector<float> left(48000);
        for (std::size_t k = 0; k < left.size(); ++k)
            left[k] = k / 24 % 2 == 0 ? loudness : -loudness;
        auto right = left;
        limiter.processPair(left.data(), right.data(), left.size());
        for (std::size_t k = 48; k < left.size(); ++k) {
            ASSERT_GE(std::fabs(left[k]), 0.999F);
            ASSERT_LE(std::fabs(left[k]), 1.001F);
        }
        EXPECT_EQ(left, right);
    }
}

TEST(LimiterProcessor, KeepsThePublishedReductionAtZeroAfterAResetThatNoBlockFollows) {
    LimiterProcessor limiter(48000.0, 1);
    std::vector<float> loud(100, 4.0F);
    limiter.process(loud.data(), loud.size(), 0);
    ASSERT_GT(limiter.gainReductionDB(), 0.0F);
    limiter.reset();
    EXPECT_EQ(limiter.gainReductionDB(), 0.0F);
    limiter.setEnabled(false);
    limiter.process(loud.data(), loud.size(), 0);
    EXPECT_EQ(limiter.gainReductionDB(), 0.0F);
}

RC_GTEST_PROP(LimiterProperty, AnySplitIntoBlocksGivesTheSamplesOfOneBlock, ()) {
    const double rate = *rc::gen::elementOf(std::vector<double>{500.0, 8000.0, 44100.0, 192000.0});
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto longest = *rc::gen::inRange<std::size_t>(1, 900);
    const auto& kernels = *rc::gen::elementOf(everyKernels());
    auto left = roughNoise(3000, 3.0F, seed);
    auto right = whiteNoise(3000, 3.0F, seed + 1);
    auto cutLeft = left;
    auto cutRight = right;
    LimiterProcessor whole(rate, 2, *kernels);
    LimiterProcessor cut(rate, 2, *kernels);
    whole.processPair(left.data(), right.data(), left.size());
    std::size_t begin = 0;
    for (const std::size_t end : randomBlockEnds(left.size(), longest, seed)) {
        cut.processPair(cutLeft.data() + begin, cutRight.data() + begin, end - begin);
        begin = end;
    }
    RC_ASSERT(bitsOf(cutLeft) == bitsOf(left));
    RC_ASSERT(bitsOf(cutRight) == bitsOf(right));
}

RC_GTEST_PROP(LimiterProperty, ResetEqualsAFreshInstance, ()) {
    const double rate = *rc::gen::elementOf(std::vector<double>{500.0, 44100.0, 96000.0});
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto before = *rc::gen::inRange<std::size_t>(1, 2000);
    LimiterProcessor used(rate, 2);
    auto left = roughNoise(before, 4.0F, seed);
    auto right = roughNoise(before, 4.0F, seed + 1);
    used.processPair(left.data(), right.data(), before);
    used.reset();
    LimiterProcessor fresh(rate, 2);
    left = whiteNoise(1000, 2.0F, seed + 2);
    auto expected = left;
    used.process(left.data(), left.size(), 1);
    fresh.process(expected.data(), expected.size(), 1);
    RC_ASSERT(left == expected);
    RC_ASSERT(used.gainReductionDB() == fresh.gainReductionDB());
}

RC_GTEST_PROP(LimiterProperty, DelaysByExactlyTheLookAheadAtEveryRate, ()) {
    const auto rate = static_cast<double>(*rc::gen::inRange(1, 400000));
    const auto seed = *rc::gen::arbitrary<unsigned>();
    LimiterProcessor limiter(rate, 1);
    const std::size_t lookAhead = limiter.lookAheadSamples();
    RC_ASSERT(lookAhead == std::max<std::size_t>(static_cast<std::size_t>(rate * 0.001), 1));
    const auto input = whiteNoise(lookAhead + 500, 1.0F, seed);
    auto output = input;
    limiter.process(output.data(), output.size(), 0);
    for (std::size_t k = 0; k < output.size(); ++k)
        RC_ASSERT(output[k] == (k < lookAhead ? 0.0F : input[k - lookAhead]));
}

} // namespace
} // namespace orvanta
