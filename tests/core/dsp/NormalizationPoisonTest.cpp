// Samples that are no numbers or beyond all sense: none stays in the measurement.

#include "tests/core/dsp/NormalizationRuns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanta {
namespace {

using test::decibels;
using test::levelOf;
using test::makeTelling;
using test::processed;
using test::rate;
using test::run;
using test::sine;
using test::toldLevel;
using test::window;

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

} // namespace
} // namespace orvanta
