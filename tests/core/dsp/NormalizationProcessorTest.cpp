// Settings, rates and resets.

#include "tests/core/dsp/NormalizationRuns.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <atomic>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <thread>
#include <vector>

namespace orvanta {
namespace {

using test::processed;
using test::rate;
using test::roughNoise;
using test::run;
using test::whiteNoise;
using test::window;

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

} // namespace
} // namespace orvanta
