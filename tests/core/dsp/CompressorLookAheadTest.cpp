// How far the compressor looks ahead, and that this delays and does nothing else.

#include "tests/core/dsp/CompressorRuns.h"
#include "tests/support/reference/CompressorMaterial.h"
#include "tests/support/reference/ReferenceCompressor.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orvanta {
namespace {

using reference::noise;
using test::infinity;
using test::processed;
using test::processedInAnyBlocks;
using test::rate;
using test::withRatios;

TEST(CompressorProcessor, LooksAheadInWholeSamplesAndNoFartherThan479) {
    const auto samples = [](float milliseconds, double sampleRate) {
        CompressorBandSettings set;
        set.lookaheadMs = milliseconds;
        return compressorBandOf(set, sampleRate).lookAheadSamples;
    };
    for (const CompressorBandSettings& band : CompressorPreset::nightMode.bands)
        EXPECT_EQ(compressorBandOf(band, rate).lookAheadSamples, 240U);
    for (const CompressorBandSettings& band : CompressorPreset::cinema.bands)
        EXPECT_EQ(compressorBandOf(band, rate).lookAheadSamples, 144U);
    EXPECT_EQ(samples(20.0F, rate), 479U);
    EXPECT_EQ(samples(1e10F, rate), 479U);
    EXPECT_EQ(samples(-3.0F, rate), 0U);
    EXPECT_EQ(samples(-infinity, rate), 0U);
    EXPECT_EQ(samples(0.02F, rate), 0U);
    EXPECT_EQ(samples(0.021F, rate), 1U);
    EXPECT_EQ(samples(5.0F, 44100.0), 220U);
}

/// In blocks of a thousand.
std::vector<float> processedInBlocks(CompressorProcessor& compressor, std::vector<float> samples) {
    for (std::size_t at = 0; at < samples.size(); at += 1000)
        compressor.process(&samples[at], std::min<std::size_t>(1000, samples.size() - at), 0);
    return samples;
}

/// Too quiet to be compressed, so that all that a look-ahead does is to delay.
void expectDelayed(const CompressorPreset& preset, std::size_t delay) {
    CompressorPreset undelayed = preset;
    for (CompressorBandSettings& band : undelayed.bands)
        band.lookaheadMs = 0.0F;
    CompressorProcessor late(rate, 1, 4096);
    CompressorProcessor early(rate, 1, 4096);
    late.apply(preset);
    early.apply(undelayed);
    const auto input = noise(4000, 1e-3F);
    const auto output = processedInBlocks(late, input);
    const auto expected = processedInBlocks(early, input);
    for (std::size_t k = 0; k < output.size(); ++k)
        ASSERT_EQ(output[k], k < delay ? 0.0F : expected[k - delay]) << k;
}

TEST(CompressorProcessor, DelaysByItsLookAhead) {
    expectDelayed(CompressorPreset::nightMode, 240);
    expectDelayed(CompressorPreset::cinema, 144);
    CompressorPreset far = CompressorPreset::vocal;
    for (CompressorBandSettings& band : far.bands)
        band.lookaheadMs = 20.0F;
    expectDelayed(far, 479);
}

RC_GTEST_PROP(CompressorProcessor, DelaysByAnyLookAheadInAnyBlocks, ()) {
    const auto delay = *rc::gen::inRange<std::size_t>(0, 480);
    CompressorPreset preset = CompressorPreset::gentle;
    for (CompressorBandSettings& band : preset.bands)
        band.lookaheadMs = (static_cast<float>(delay) + 0.5F) / 48.0F;
    CompressorProcessor late(rate, 1, 4096);
    CompressorProcessor early(rate, 1, 4096);
    late.apply(preset);
    early.apply(CompressorPreset::gentle);
    const auto input = noise(2500, 1e-3F);
    const auto expected = processed(early, input);
    const auto output = processedInAnyBlocks(late, input, 799);
    for (std::size_t k = 0; k < output.size(); ++k)
        RC_ASSERT(output[k] == (k < delay ? 0.0F : expected[k - delay]));
}

TEST(CompressorProcessor, ABandThatDoesNotCompressIsNotDelayedBesideOnesThatAre) {
    CompressorPreset preset = withRatios(1.0F, 2.0F, 2.0F);
    for (CompressorBandSettings& band : preset.bands) {
        band.lookaheadMs = 5.0F;
        band.makeupGain = 0.0F;
    }
    CompressorProcessor compressor(rate, 1, 4096);
    compressor.apply(preset);
    const auto input = noise(3000, 1e-3F);
    const auto output = processed(compressor, input);
    reference::Compressor<reference::LibraryPowers> split(rate, 1, 3000);
    const auto bands = split.splitOf(input, 0);
    for (std::size_t k = 0; k < output.size(); ++k) {
        const float middle = k < 240 ? 0.0F : bands[1][k - 240];
        const float high = k < 240 ? 0.0F : bands[2][k - 240];
        ASSERT_EQ(output[k], (bands[0][k] + middle) + high) << k;
    }
}

TEST(CompressorProcessor, TheGainOfAPeakLandsOnWhatCameALookAheadEarlier) {
    CompressorPreset preset = CompressorPreset::off;
    preset.bands[0] = {-20.0F, 20.0F, 0.0F, 100.0F, 0.0F, 5.0F, DetectionMode::peak, false};
    CompressorProcessor compressor(rate, 1, 8192);
    compressor.apply(preset);
    // A constant passes the low band alone. Where it jumps, the delayed quiet part is turned down.
    std::vector<float> input(8000, 0.05F);
    std::fill(input.begin() + 6000, input.end(), 1.0F);
    const auto output = processed(compressor, input);
    EXPECT_NEAR(output[5900], 0.05F, 1e-5F);
    EXPECT_LT(output[6200], 0.04F);
}

} // namespace
} // namespace orvanta
