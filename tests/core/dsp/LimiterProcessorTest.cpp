#include "core/dsp/LimiterProcessor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace orvanta {
namespace {

constexpr double rate = 48000.0;

std::vector<float> processed(LimiterProcessor& limiter, std::vector<float> samples,
                             std::size_t channel = 0) {
    limiter.process(samples.data(), samples.size(), channel);
    return samples;
}

float releaseAt(double sampleRate) {
    return static_cast<float>(std::exp(-1.0 / (sampleRate * 0.05)));
}

/// Alternating full-scale noise, deterministic.
std::vector<float> noise(std::size_t count, float amplitude) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> value(-amplitude, amplitude);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = value(random);
    return samples;
}

TEST(LimiterProcessor, LooksAheadOneMillisecondInWholeSamples) {
    EXPECT_EQ(LimiterProcessor(48000.0, 2).lookAheadSamples(), 48U);
    EXPECT_EQ(LimiterProcessor(44100.0, 2).lookAheadSamples(), 44U);
    EXPECT_EQ(LimiterProcessor(500.0, 2).lookAheadSamples(), 1U);
}

TEST(LimiterProcessor, TakesARateThatIsNoneForTheShortestTimes) {
    for (const double odd : {0.0, -1.0, -48000.0, std::numeric_limits<double>::quiet_NaN(),
                             -std::numeric_limits<double>::infinity()})
        EXPECT_EQ(LimiterProcessor(odd, 2).lookAheadSamples(), 1U) << odd;
    EXPECT_EQ(LimiterProcessor(std::numeric_limits<double>::infinity(), 1).lookAheadSamples(),
              1'000'000U);
}

TEST(LimiterProcessor, StartsWithASilentDelayLine) {
    LimiterProcessor limiter(rate, 2);
    EXPECT_EQ(processed(limiter, std::vector<float>(10, 0.5F)), std::vector<float>(10, 0.0F));
}

TEST(LimiterProcessor, OnlyDelaysWhatNeverPassesTheCeiling) {
    LimiterProcessor limiter(rate, 2);
    const auto input = noise(1000, 1.0F);
    const auto output = processed(limiter, input);
    for (std::size_t k = 48; k < input.size(); ++k)
        ASSERT_EQ(output[k], input[k - 48]) << k;
    EXPECT_EQ(limiter.gainReductionDB(), 0.0F);
}

TEST(LimiterProcessor, GainOfAPeakLandsOnTheSampleOfOneLookAheadEarlier) {
    LimiterProcessor limiter(rate, 2);
    std::vector<float> input(200, 0.25F);
    input[100] = 2.0F;
    const auto output = processed(limiter, input);
    EXPECT_EQ(output[99], 0.25F);
    EXPECT_EQ(output[100], 0.5F * 0.25F);
    // The 2.0 itself comes out when the envelope has fallen for one look-ahead already.
    const float fallen = std::pow(releaseAt(rate), 48.0F);
    EXPECT_NEAR(output[148], 2.0F / (2.0F * fallen), 1e-4F);
    EXPECT_GT(output[148], 1.0F);
    EXPECT_LT(output[148], 1.025F);
}

TEST(LimiterProcessor, HoldsLoudNoiseNearTheCeiling) {
    for (const double each : {8000.0, 44100.0, 48000.0, 96000.0, 192000.0}) {
        LimiterProcessor limiter(each, 2);
        for (const float sample : processed(limiter, noise(20000, 4.0F)))
            ASSERT_LE(std::fabs(sample), 1.0F / std::pow(releaseAt(each), 0.0012F * float(each)));
    }
}

TEST(LimiterProcessor, PublishesTheDeepestReductionOfABlock) {
    LimiterProcessor limiter(rate, 2);
    std::vector<float> input(100, 0.0F);
    input[50] = 2.0F;
    processed(limiter, input);
    EXPECT_NEAR(limiter.gainReductionDB(), 20.0F * std::log10(2.0F), 1e-4F);
}

TEST(LimiterProcessor, PublishedReductionFallsByATenthACallOnceNothingIsLimited) {
    LimiterProcessor limiter(rate, 2);
    processed(limiter, {4.0F});
    const float reduction = limiter.gainReductionDB();
    ASSERT_GT(reduction, 12.0F);
    // Quiet input, and no release left to limit: switch channels, so that the envelope is fresh.
    processed(limiter, std::vector<float>(10, 0.1F), 1);
    EXPECT_FLOAT_EQ(limiter.gainReductionDB(), 0.9F * reduction);
    processed(limiter, std::vector<float>(10, 0.1F), 1);
    EXPECT_FLOAT_EQ(limiter.gainReductionDB(), 0.9F * (0.9F * reduction));
}

TEST(LimiterProcessor, AGainOf0Point9995IsNoLimitingForTheMeter) {
    LimiterProcessor limiter(rate, 2);
    const auto output = processed(limiter, {1.0F / 0.9995F});
    EXPECT_EQ(output[0], 0.0F);
    EXPECT_EQ(limiter.gainReductionDB(), 0.0F);
    processed(limiter, {1.0F / 0.9985F});
    EXPECT_GT(limiter.gainReductionDB(), 0.0F);
}

TEST(LimiterProcessor, ChannelsBeyondItsOwnPassUnchangedAndUndelayed) {
    LimiterProcessor limiter(rate, 2);
    const auto input = noise(100, 4.0F);
    EXPECT_EQ(processed(limiter, input, 2), input);
    EXPECT_EQ(limiter.gainReductionDB(), 0.0F);
}

TEST(LimiterProcessor, LeavesEverythingAloneWhileDisabledOrWithoutSamples) {
    LimiterProcessor limiter(rate, 2);
    limiter.setEnabled(false);
    const auto input = noise(100, 4.0F);
    EXPECT_EQ(processed(limiter, input), input);
    limiter.setEnabled(true);
    limiter.process(nullptr, 0, 0);
    EXPECT_EQ(limiter.gainReductionDB(), 0.0F);
}

TEST(LimiterProcessor, LimitsToTheCeilingItIsGiven) {
    LimiterProcessor limiter(rate, 2);
    limiter.setCeiling(-6.0F);
    EXPECT_EQ(limiter.ceiling(), -6.0F);
    const float ceiling = std::pow(10.0F, -6.0F / 20.0F);
    std::vector<float> input(200, 0.9F);
    const auto output = processed(limiter, input);
    // An envelope that only equals the input falls by one release step before it jumps back.
    for (std::size_t k = 60; k < output.size(); ++k) {
        ASSERT_GE(output[k], ceiling * 0.999999F);
        ASSERT_LE(output[k], ceiling / releaseAt(rate) * 1.000001F);
    }
}

TEST(LimiterProcessor, GivesTheSameSamplesHoweverTheSignalIsCutIntoBlocks) {
    const auto input = noise(5000, 3.0F);
    LimiterProcessor whole(rate, 1);
    const auto expected = processed(whole, input);
    LimiterProcessor cut(rate, 1);
    auto samples = input;
    std::mt19937 random(11);
    for (std::size_t done = 0; done < samples.size();) {
        const std::size_t count = std::min<std::size_t>(1 + random() % 700, samples.size() - done);
        cut.process(samples.data() + done, count, 0);
        done += count;
    }
    EXPECT_EQ(samples, expected);
}

TEST(LimiterProcessor, ResetEqualsAFreshInstance) {
    const auto input = noise(500, 3.0F);
    LimiterProcessor used(rate, 2);
    processed(used, input, 0);
    processed(used, input, 1);
    used.reset();
    EXPECT_EQ(used.gainReductionDB(), 0.0F);
    LimiterProcessor fresh(rate, 2);
    for (const std::size_t channel : {1U, 0U})
        EXPECT_EQ(processed(used, input, channel), processed(fresh, input, channel));
    EXPECT_EQ(used.gainReductionDB(), fresh.gainReductionDB());
}

TEST(LimiterProcessor, APairThatFollowsAResetIsThatOfAFreshOne) {
    auto left = noise(500, 3.0F);
    auto right = noise(500, 2.0F);
    LimiterProcessor used(rate, 2);
    used.processPair(left.data(), right.data(), left.size());
    used.reset();
    left = noise(500, 3.0F);
    right = noise(500, 2.0F);
    used.processPair(left.data(), right.data(), left.size());
    LimiterProcessor fresh(rate, 2);
    EXPECT_EQ(left, processed(fresh, noise(500, 3.0F), 0));
    EXPECT_EQ(right, processed(fresh, noise(500, 2.0F), 1));
    EXPECT_EQ(used.gainReductionDB(), fresh.gainReductionDB());
}

TEST(LimiterProcessor, BadSamplesAreHeardAsSilenceAndLeaveNothingBehind) {
    for (const float poison :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity()}) {
        LimiterProcessor limiter(rate, 1);
        std::vector<float> input(300, 0.5F);
        input[20] = poison;
        const auto output = processed(limiter, input);
        for (std::size_t k = 48; k < output.size(); ++k)
            ASSERT_EQ(output[k], k == 68 ? 0.0F : 0.5F) << k;
        EXPECT_EQ(limiter.gainReductionDB(), 0.0F);
    }
}

TEST(LimiterProcessor, ComesBackFromHugeSamplesAsTheEnvelopeReleases) {
    LimiterProcessor limiter(rate, 1);
    processed(limiter, std::vector<float>(100, 1e30F));
    const auto calm = processed(limiter, std::vector<float>(48000 * 4, 0.5F));
    EXPECT_EQ(calm.back(), 0.5F);
    for (const float sample : calm)
        ASSERT_TRUE(std::isfinite(sample));
}

} // namespace
} // namespace orvanta
