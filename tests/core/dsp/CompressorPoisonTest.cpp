// Samples, settings and rates that are no numbers, and numbers too large or too small to work with:
// the compressor comes clean out of them all.

#include "core/dsp/FlushDenormals.h"
#include "tests/core/dsp/CompressorRuns.h"
#include "tests/support/reference/CompressorMaterial.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

namespace orvanta {
namespace {

using reference::noise;
using reference::swells;
using test::allFinite;
using test::infinity;
using test::processed;
using test::rate;

TEST(CompressorProcessor, IsCleanAgainAfterSamplesThatAreNoNumbers) {
    for (const NamedCompressorPreset& named : CompressorPreset::allPresets()) {
        if (named.preset.isOff())
            continue;
        for (const float poison : {std::nanf(""), infinity, -infinity}) {
            for (const std::size_t where : {0U, 200U, 511U}) {
                CompressorProcessor compressor(rate, 1, 512);
                CompressorProcessor clean(rate, 1, 512);
                compressor.apply(named.preset);
                clean.apply(named.preset);
                for (unsigned block = 0; block < 200; ++block) {
                    auto samples = noise(512, 1.0F, block);
                    const auto expected = processed(clean, samples);
                    if (block == 150)
                        samples[where] = poison;
                    const auto output = processed(compressor, samples);
                    ASSERT_TRUE(allFinite(output)) << named.name << ' ' << block;
                    // Filters and delay lines are as they would have been within 100 ms; envelopes
                    // began anew and rise as slowly as they are told to.
                    const float tolerance = block < 190 ? 0.15F : 0.01F;
                    for (std::size_t k = 0; k < output.size() && block >= 160; ++k)
                        ASSERT_NEAR(output[k], expected[k], tolerance) << named.name << block;
                    for (std::size_t band = 0; band < 3; ++band) {
                        ASSERT_LE(compressor.gainReduction()[band],
                                  clean.gainReduction()[band] + 0.5F)
                            << named.name << ' ' << block;
                    }
                }
                if (named.name == "Broadcast") {
                    EXPECT_GT(compressor.gainReduction()[1], 1.0F);
                }
            }
        }
    }
}

TEST(CompressorProcessor, SilenceAfterPoisonIsSilent) {
    CompressorProcessor compressor(rate, 2, 4096);
    compressor.apply(CompressorPreset::nightMode);
    std::vector<float> left(100, infinity);
    std::vector<float> right = swells(100);
    CompressorProcessor alone(rate, 2, 4096);
    alone.apply(CompressorPreset::nightMode);
    const auto expected = processed(alone, right, 1);
    compressor.processPair(left.data(), right.data(), 100);
    EXPECT_EQ(left, std::vector<float>(100, 0.0F));
    EXPECT_EQ(right, expected);
    EXPECT_EQ(processed(compressor, std::vector<float>(2000, 0.0F), 0),
              std::vector<float>(2000, 0.0F));
}

TEST(CompressorProcessor, RecoversFromHugeSamplesAsTheEnvelopesRelease) {
    for (const DetectionMode mode : {DetectionMode::peak, DetectionMode::rms}) {
        for (const float huge : {1e18F, 1e30F, 1e37F, 3e38F}) {
            CompressorPreset preset = CompressorPreset::broadcast;
            for (CompressorBandSettings& band : preset.bands) {
                band.detectionMode = mode;
                band.lookaheadMs = 5.0F;
                band.releaseMs = 10.0F;
            }
            CompressorProcessor compressor(rate, 1, 4096);
            CompressorProcessor clean(rate, 1, 4096);
            compressor.apply(preset);
            clean.apply(preset);
            auto loud = noise(1000, 1.0F);
            for (float& sample : loud)
                sample *= huge;
            EXPECT_TRUE(allFinite(processed(compressor, loud)));
            // The largest number falls to -40 dB within about 95 times the release.
            for (unsigned block = 0; block < 120; ++block) {
                const auto output = processed(compressor, noise(512, 0.5F, block));
                const auto expected = processed(clean, noise(512, 0.5F, block));
                ASSERT_TRUE(allFinite(output));
                for (std::size_t k = 0; k < output.size() && block >= 110; ++k)
                    ASSERT_NEAR(output[k], expected[k], 1e-3F) << huge << ' ' << block;
            }
        }
    }
}

TEST(CompressorProcessor, SettingsThatAreNoNumbersGiveSilenceAtWorst) {
    for (const float odd : {std::nanf(""), infinity, -infinity}) {
        for (float CompressorBandSettings::*const field :
             {&CompressorBandSettings::threshold, &CompressorBandSettings::attackMs,
              &CompressorBandSettings::releaseMs, &CompressorBandSettings::makeupGain,
              &CompressorBandSettings::ratio}) {
            CompressorProcessor compressor(rate, 1, 4096);
            CompressorBandSettings set = CompressorPreset::vocal.bands[1];
            set.*field = odd;
            compressor.apply(CompressorPreset::vocal);
            compressor.setBand(1, set);
            for (unsigned block = 0; block < 5; ++block)
                EXPECT_TRUE(allFinite(processed(compressor, swells(2000, block))));
            // And nothing of it stays.
            compressor.apply(CompressorPreset::vocal);
            processed(compressor, swells(4000));
            EXPECT_TRUE(allFinite(processed(compressor, swells(4000))));
            EXPECT_NE(processed(compressor, swells(4000)), std::vector<float>(4000, 0.0F));
        }
    }
}

TEST(CompressorProcessor, ARateWithoutMeaningGivesNothingWorseThanSilenceUntilThereIsOne) {
    for (const double none : {0.0, -1.0, -48000.0}) {
        CompressorProcessor compressor(none, 1, 4096);
        CompressorPreset preset = CompressorPreset::nightMode;
        preset.bands[1].lookaheadMs = 20000.0F;
        compressor.apply(preset);
        for (int block = 0; block < 20; ++block)
            for (const float sample : processed(compressor, swells(1000)))
                ASSERT_TRUE(std::isfinite(sample)) << none;
        if (none == 0.0) {
            EXPECT_EQ(processed(compressor, swells(1000)), std::vector<float>(1000, 0.0F));
        }
        compressor.updateSampleRate(rate);
        CompressorProcessor fresh(rate, 1, 4096);
        fresh.apply(preset);
        EXPECT_EQ(processed(compressor, swells(1000)), processed(fresh, swells(1000)));
    }
}

TEST(CompressorProcessor, NoFilterStaysInSubnormalNumbersWhereTheyAreFlushed) {
    const FlushDenormals flush;
    for (const auto set : {InstructionSet::baseline, InstructionSet::avx2}) {
        const Kernels* const kernels = kernelsFor(set);
        if (kernels == nullptr)
            continue;
        const Crossover crossover = crossoverAt(8000.0);
        CrossoverState states[2];
        std::vector<std::vector<float>> memory(6, std::vector<float>(512 + 2 * kBandSignalMargin));
        BandSignals bands[2];
        for (std::size_t k = 0; k < 6; ++k)
            bands[k / 3].band[k % 3] = memory[k].data() + kBandSignalMargin;
        for (int block = 0; block < 100; ++block) {
            const auto input = block == 0 ? noise(512, 1.0F) : std::vector<float>(512, 0.0F);
            kernels->compressor.splitPair(input.data(), input.data(), 512, crossover, states[0],
                                          states[1], bands[0], bands[1]);
        }
        for (const CrossoverState& state : states) {
            for (const auto* const sections : {&state.lowPass, &state.highPass}) {
                for (std::size_t k = 0; k < 4; ++k) {
                    const SectionState& section = (*sections)[k / 2][k % 2];
                    for (const double value : {section.x1, section.x2, section.y1, section.y2})
                        EXPECT_NE(std::fpclassify(value), FP_SUBNORMAL);
                }
            }
        }
        for (std::size_t k = 0; k < 512; ++k)
            ASSERT_EQ(bands[0].band[1][k], 0.0F);
    }
}

} // namespace
} // namespace orvanta
