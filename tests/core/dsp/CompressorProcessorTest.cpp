#include "core/dsp/CompressorProcessor.h"

#include "core/dsp/FlushDenormals.h"
#include "core/platform/RealTimeSection.h"
#include "tests/core/dsp/CompressorRuns.h"
#include "tests/support/reference/CompressorMaterial.h"
#include "tests/support/reference/ReferenceCompressor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <thread>
#include <vector>

namespace orvanta {
namespace {

using reference::noise;
using reference::swells;
using test::infinity;
using test::processed;
using test::rate;
using test::Reductions;
using test::withRatios;

// --- Control ---

TEST(CompressorProcessor, IsOffAtFirstAndChangesNothing) {
    CompressorProcessor compressor(rate, 2, 4096);
    EXPECT_TRUE(compressor.isOff());
    EXPECT_EQ(compressor.currentPreset(), CompressorPreset::off);
    EXPECT_EQ(compressor.gainReduction(), Reductions{});
    const auto input = noise(1000, 1.0F);
    EXPECT_EQ(processed(compressor, input), input);
}

TEST(CompressorProcessor, TakesAPresetOfThreeBandsAndNoOther) {
    CompressorProcessor compressor(rate, 2, 4096);
    compressor.apply(CompressorPreset::music);
    EXPECT_EQ(compressor.currentPreset(), CompressorPreset::music);
    for (const std::size_t bands : {0U, 2U, 4U}) {
        CompressorPreset preset = CompressorPreset::broadcast;
        preset.bands.resize(bands);
        compressor.apply(preset);
        EXPECT_EQ(compressor.currentPreset(), CompressorPreset::music) << bands;
    }
    CompressorProcessor untouched(rate, 2, 4096);
    untouched.apply(CompressorPreset::music);
    const auto input = swells(3000);
    EXPECT_EQ(processed(compressor, input), processed(untouched, input));
}

TEST(CompressorProcessor, SetsOneOfThreeBandsAndNoOther) {
    CompressorProcessor compressor(rate, 2, 4096);
    const CompressorBandSettings loud = CompressorPreset::broadcast.bands[1];
    compressor.setBand(2, loud);
    EXPECT_EQ(compressor.settings()[2], loud);
    EXPECT_EQ(compressor.settings()[0], CompressorBandSettings{});
    EXPECT_FALSE(compressor.isOff());
    for (const int index : {-1, 3, 1000, std::numeric_limits<int>::min()})
        compressor.setBand(index, CompressorPreset::cinema.bands[0]);
    EXPECT_EQ(compressor.settings()[0], CompressorBandSettings{});
    EXPECT_EQ(compressor.settings()[1], CompressorBandSettings{});
    EXPECT_EQ(compressor.settings()[2], loud);
}

TEST(CompressorProcessor, IgnoresARateThatIsNone) {
    CompressorProcessor compressor(rate, 1, 4096);
    CompressorProcessor untouched(rate, 1, 4096);
    compressor.apply(CompressorPreset::cinema);
    untouched.apply(CompressorPreset::cinema);
    const auto input = swells(3000);
    processed(compressor, input);
    processed(untouched, input);
    for (const double odd :
         {0.0, -1.0, -48000.0, std::nan(""), -std::numeric_limits<double>::infinity()})
        compressor.updateSampleRate(odd);
    EXPECT_EQ(compressor.gainReduction(), untouched.gainReduction());
    EXPECT_EQ(processed(compressor, input), processed(untouched, input));
}

TEST(CompressorProcessor, APairThatFollowsANewRateIsThatOfAFreshOne) {
    CompressorProcessor used(rate, 2, 4096);
    used.apply(CompressorPreset::nightMode);
    auto left = swells(1000);
    auto right = swells(1000, 2);
    used.processPair(left.data(), right.data(), left.size());
    used.updateSampleRate(44100.0);
    CompressorProcessor fresh(44100.0, 2, 4096);
    fresh.apply(CompressorPreset::nightMode);
    left = swells(1000, 3);
    right = swells(1000, 4);
    auto freshLeft = left;
    auto freshRight = right;
    used.processPair(left.data(), right.data(), left.size());
    fresh.processPair(freshLeft.data(), freshRight.data(), freshLeft.size());
    EXPECT_EQ(left, freshLeft);
    EXPECT_EQ(right, freshRight);
    EXPECT_EQ(used.gainReduction(), fresh.gainReduction());
}

TEST(CompressorProcessor, PublishedReductionCanBeWritten) {
    CompressorProcessor compressor(rate, 1, 4096);
    compressor.setGainReduction({1.0F, 2.0F, 3.0F});
    EXPECT_EQ(compressor.gainReduction(), (Reductions{1.0F, 2.0F, 3.0F}));
    compressor.updateSampleRate(rate);
    EXPECT_EQ(compressor.gainReduction(), Reductions{});
}

TEST(CompressorProcessor, AnAttackOfNothingStillTakesASampleToTheEth) {
    CompressorBandSettings set;
    set.attackMs = 0.0F;
    EXPECT_EQ(compressorBandOf(set, rate).attack, static_cast<float>(std::exp(-1.0)));
    EXPECT_NEAR(compressorBandOf(set, rate).attack, 0.3679F, 1e-4F);
    for (const float odd : {-5.0F, 0.02F, std::nanf("")}) {
        set.attackMs = odd;
        EXPECT_EQ(compressorBandOf(set, rate).attack, static_cast<float>(std::exp(-1.0))) << odd;
    }
    set.attackMs = 10.0F;
    EXPECT_EQ(compressorBandOf(set, rate).attack, static_cast<float>(std::exp(-1.0 / 480.0)));
    EXPECT_EQ(compressorBandOf(set, rate).release, static_cast<float>(std::exp(-1.0 / 4800.0)));
}

TEST(CompressorProcessorDeathTest, ALookAheadThatIsNoDelayStopsTheProgram) {
    for (const float odd : {std::nanf(""), infinity, 1e30F}) {
        CompressorProcessor compressor(rate, 1, 64);
        CompressorBandSettings set;
        set.lookaheadMs = odd;
        EXPECT_DEATH(compressor.setBand(0, set), "look-ahead of .* is no delay");
    }
}

// --- What passes untouched ---

TEST(CompressorProcessor, ABlockTooLargeOrEmptyPassesUnchangedAndMovesNothing) {
    CompressorProcessor compressor(rate, 1, 4096);
    CompressorProcessor untouched(rate, 1, 4096);
    compressor.apply(CompressorPreset::cinema);
    untouched.apply(CompressorPreset::cinema);
    processed(compressor, swells(2000));
    processed(untouched, swells(2000));

    const auto input = swells(4097, 2);
    EXPECT_EQ(processed(compressor, input), input);
    compressor.process(nullptr, 0, 0);
    compressor.processPair(nullptr, nullptr, 0);
    EXPECT_EQ(compressor.gainReduction(), untouched.gainReduction());
    EXPECT_EQ(processed(compressor, swells(4096, 3)), processed(untouched, swells(4096, 3)));

    auto left = input;
    auto right = input;
    CompressorProcessor stereo(rate, 2, 4096);
    stereo.apply(CompressorPreset::cinema);
    stereo.processPair(left.data(), right.data(), left.size());
    EXPECT_EQ(left, input);
    EXPECT_EQ(right, input);
}

TEST(CompressorProcessor, ChannelsBeyondItsOwnPassUnchanged) {
    const auto input = swells(1000);
    for (const std::size_t channels : {0U, 1U, 2U}) {
        CompressorProcessor compressor(rate, channels, 4096);
        compressor.apply(CompressorPreset::broadcast);
        EXPECT_EQ(processed(compressor, input, channels), input);
        EXPECT_EQ(processed(compressor, input, 1000), input);
        EXPECT_EQ(compressor.gainReduction(), Reductions{});
        auto left = input;
        auto right = input;
        compressor.processPair(left.data(), right.data(), left.size());
        EXPECT_EQ(left == input, channels < 1);
        EXPECT_EQ(right == input, channels < 2);
    }
}

// --- The split ---

TEST(CompressorProcessor, ARatioOf1Point05SplitsAndAddsButCompressesNothing) {
    CompressorProcessor compressor(rate, 1, 4096);
    compressor.apply(withRatios(1.0F, 1.05F, 1.0F));
    EXPECT_FALSE(compressor.isOff());
    compressor.setGainReduction({1.0F, 2.0F, 3.0F});
    const auto input = swells(3000);
    const auto output = processed(compressor, input);
    EXPECT_NE(output, input);

    reference::Compressor<reference::LibraryPowers> split(rate, 1, 3000);
    const auto bands = split.splitOf(input, 0);
    for (std::size_t k = 0; k < input.size(); ++k)
        ASSERT_EQ(output[k], (bands[0][k] + bands[1][k]) + bands[2][k]) << k;
    EXPECT_EQ(compressor.gainReduction(), (Reductions{1.0F, 2.0F, 3.0F}));
}

// --- Levels ---

TEST(CompressorProcessor, SilenceSettlesAtMinus120dB) {
    for (const DetectionMode mode : {DetectionMode::peak, DetectionMode::rms}) {
        // With the knee around -120 the level can be read off the reduction.
        CompressorPreset preset = CompressorPreset::off;
        preset.bands[0] = {-121.0F, 2.0F, 1.0F, 10.0F, 0.0F, 0.0F, mode, false};
        CompressorProcessor compressor(rate, 1, 4096);
        compressor.apply(preset);
        processed(compressor, swells(4096));
        EXPECT_GT(compressor.gainReduction()[0], 40.0F);
        for (int block = 0; block < 400; ++block)
            processed(compressor, std::vector<float>(512, 0.0F));
        EXPECT_EQ(compressor.gainReduction()[0], -(2.5F * -0.5F * 2.5F / 6.0F));
    }
}

TEST(CompressorProcessor, PublishedReductionFallsByATenthPerBlockAndChannelBelowTheKnee) {
    CompressorProcessor compressor(rate, 2, 4096);
    compressor.apply(withRatios(2.0F, 3.0F, 1.0F));
    Reductions expected{10.0F, 7.0F, 5.0F};
    compressor.setGainReduction(expected);
    const auto fall = [&] {
        expected[0] *= 0.9F;
        expected[1] *= 0.9F;
    };
    processed(compressor, noise(100, 1e-3F), 0);
    fall();
    EXPECT_EQ(compressor.gainReduction(), expected);
    processed(compressor, noise(1, 1e-3F), 1);
    fall();
    EXPECT_EQ(compressor.gainReduction(), expected);
    auto left = noise(64, 1e-3F);
    auto right = left;
    compressor.processPair(left.data(), right.data(), 64);
    fall();
    fall();
    EXPECT_EQ(compressor.gainReduction(), expected);
}

TEST(CompressorProcessor, APresetChangeKeepsWhatWasHeard) {
    CompressorProcessor changed(rate, 1, 4096);
    CompressorProcessor fresh(rate, 1, 4096);
    changed.apply(CompressorPreset::cinema);
    processed(changed, swells(3000));
    changed.apply(CompressorPreset::nightMode);
    fresh.apply(CompressorPreset::nightMode);
    // Its look-ahead lines still hold the end of the signal.
    const auto silence = std::vector<float>(200, 0.0F);
    EXPECT_NE(processed(changed, silence), silence);
    EXPECT_EQ(processed(fresh, silence), silence);
}

// --- Threads ---

TEST(CompressorProcessor, RunsInRealTimeWhileEverythingIsChanged) {
    CompressorProcessor compressor(rate, 2, 512);
    std::atomic<bool> isDone{false};
    std::atomic<int> changes{0};
    bool isBounded = true;
    std::thread control([&] {
        std::mt19937 random(3);
        for (int round = 0; !isDone.load(); ++round) {
            compressor.apply(reference::randomPreset(random));
            compressor.setBand(round % 3, reference::randomBand(random));
            if (round % 16 == 0)
                compressor.updateSampleRate(round % 32 == 0 ? 44100.0 : rate);
            if (round % 8 == 0)
                compressor.setGainReduction({});
            for (const float reduction : compressor.gainReduction())
                EXPECT_TRUE(reduction >= 0.0F && reduction < 300.0F);
            changes.store(round);
        }
    });
    while (changes.load() == 0)
        std::this_thread::yield();
    const auto input = swells(512);
    for (int block = 0; block < 3000; ++block) {
        auto left = input;
        auto right = input;
        {
            const RealTimeSection section;
            const FlushDenormals flush;
            if (block % 2 == 0) {
                compressor.processPair(left.data(), right.data(), left.size());
            } else {
                compressor.process(left.data(), left.size(), 0);
                compressor.process(right.data(), right.size(), 1);
            }
        }
        for (const auto* const samples : {&left, &right})
            for (const float sample : *samples)
                isBounded = isBounded && std::fabs(sample) < 1000.0F;
    }
    isDone.store(true);
    control.join();
    EXPECT_TRUE(isBounded);
}

} // namespace
} // namespace orvanta
