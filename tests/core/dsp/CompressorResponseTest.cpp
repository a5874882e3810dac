// What the compressor does to levels: the response of its split, measured on the running
// processor, and the curves of its gain computer.

#include "core/dsp/CompressorProcessor.h"
#include "tests/support/reference/CompressorMaterial.h"

#include <gtest/gtest.h>

#include <array>
#include <cfloat>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace orvanta {
namespace {

using Complex = std::complex<double>;

double wide(float number) {
    return static_cast<double>(number);
}

double decibels(double amplitude) {
    return 20.0 * std::log10(amplitude);
}

Complex responseOf(const CrossoverRow& row, double frequency, double rate) {
    const Complex z = std::polar(1.0, -2.0 * std::numbers::pi * frequency / rate);
    return (row.b0 + row.b1 * z + row.b2 * z * z) / (1.0 + row.a1 * z + row.a2 * z * z);
}

/// Low band, middle band and what is left of the middle band, all gains at 1.
double summedResponseDB(double frequency, double rate) {
    const Crossover crossover = crossoverAt(rate);
    const auto twice = [&](const CrossoverRow& row) {
        const Complex once = responseOf(row, frequency, rate);
        return once * once;
    };
    const Complex low = twice(crossover.lowPass[0]);
    const Complex middle = twice(crossover.highPass[0]) * twice(crossover.lowPass[1]);
    const Complex high = middle * twice(crossover.highPass[1]);
    return decibels(std::abs(low + middle + high));
}

/// Neither off nor compressing: the sum of the bands as they are.
CompressorPreset onlySplit() {
    CompressorPreset preset = CompressorPreset::off;
    preset.bands[1].ratio = 1.05F;
    return preset;
}

double measuredResponseDB(double frequency, double rate) {
    CompressorProcessor compressor(rate, 1, 4096);
    compressor.apply(onlySplit());
    constexpr std::size_t blocks = 24;
    constexpr std::size_t settling = 4;
    Complex sum = 0.0;
    Complex reference = 0.0;
    std::vector<float> block(4096);
    for (std::size_t k = 0; k < blocks * block.size(); ++k) {
        const std::size_t at = k % block.size();
        const double phase = 2.0 * std::numbers::pi * frequency / rate;
        if (at == 0) {
            for (std::size_t i = 0; i < block.size(); ++i)
                block[i] = static_cast<float>(std::sin(phase * static_cast<double>(k + i)));
            if (k / block.size() >= settling) {
                for (std::size_t i = 0; i < block.size(); ++i) {
                    reference += static_cast<double>(block[i]) *
                                 std::polar(1.0, -phase * static_cast<double>(k + i));
                }
            }
            compressor.process(block.data(), block.size(), 0);
        }
        if (k / block.size() >= settling)
            sum +=
                static_cast<double>(block[at]) * std::polar(1.0, -phase * static_cast<double>(k));
    }
    return decibels(std::abs(sum) / std::abs(reference));
}

TEST(CompressorResponse, SumOfTheBandsIsWhatTheRowsSay) {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        for (const double frequency : {250.0, 4000.0, 8000.0, 16000.0})
            EXPECT_NEAR(measuredResponseDB(frequency, rate), summedResponseDB(frequency, rate),
                        0.01)
                << frequency << " Hz at " << rate;
    }
}

TEST(CompressorResponse, At48kHzTheSumRisesBy12And6dBAndFallsSteeplyAbove) {
    EXPECT_NEAR(measuredResponseDB(250.0, 48000.0), 12.0, 0.5);
    EXPECT_NEAR(measuredResponseDB(4000.0, 48000.0), 6.0, 0.5);
    EXPECT_NEAR(measuredResponseDB(8000.0, 48000.0), -17.0, 0.5);
    EXPECT_NEAR(measuredResponseDB(16000.0, 48000.0), -58.0, 0.5);
}

TEST(CompressorResponse, TwoSectionsStandAbout6dBAboveAtTheirCrossover) {
    for (const double rate : {8000.0, 44100.0, 48000.0, 192000.0}) {
        const Crossover crossover = crossoverAt(rate);
        EXPECT_NEAR(2.0 * decibels(std::abs(responseOf(crossover.lowPass[0], 250.0, rate))), 6.02,
                    0.01);
        EXPECT_NEAR(2.0 * decibels(std::abs(responseOf(crossover.highPass[0], 250.0, rate))), 6.02,
                    0.01);
    }
}

/// The gain computer in double precision, to be read beside its description.
struct GainComputer {
    double threshold;
    double ratio;

    [[nodiscard]] double gainDB(double level) const {
        const double over = level - threshold;
        if (over < -1.5)
            return 0.0;
        if (over > 1.5)
            return threshold + over / ratio - level;
        return (over + 1.5) * (1.0 / ratio - 1.0) * (over + 1.5) / 6.0;
    }
};

double makeupDB(const CompressorBandSettings& set) {
    return set.autoMakeup ? (1.0 - 1.0 / wide(set.ratio)) * wide(set.threshold) * -0.5
                          : wide(set.makeupGain);
}

double linear(double gainDB) {
    return std::exp2(gainDB * 0.050170887);
}

TEST(CompressorResponse, EveryBandOfEveryPresetFollowsItsCurve) {
    const CompressorKernels& kernels = orvanta::kernels().compressor;
    for (const NamedCompressorPreset& named : CompressorPreset::allPresets()) {
        for (const CompressorBandSettings& set : named.preset.bands) {
            const CompressorBand band = compressorBandOf(set, 48000.0);
            if (!band.isActive)
                continue;
            const GainComputer computer{wide(set.threshold), wide(set.ratio)};
            for (int step = -320; step <= 48; ++step) {
                const double level = 0.25 * step;
                const auto amplitude = static_cast<float>(std::pow(10.0, level / 20.0));
                std::vector<float> envelope(1 + kGainPadding,
                                            band.isRMS ? amplitude * amplitude : amplitude);
                const float reduction = kernels.gains(envelope.data(), 1, band);
                ASSERT_NEAR(wide(reduction), -computer.gainDB(level), 2e-4)
                    << named.name << " at " << level;
                ASSERT_NEAR(wide(envelope[0]),
                            linear(computer.gainDB(level)) * linear(makeupDB(set)), 2e-5)
                    << named.name << " at " << level;
            }
        }
    }
}

TEST(CompressorResponse, AConstantGoesThroughTheLowBandAloneAndIsCompressedThere) {
    for (const NamedCompressorPreset& named : CompressorPreset::allPresets()) {
        if (named.preset.isOff())
            continue;
        const CompressorBandSettings& set = named.preset.bands[0];
        const GainComputer computer{wide(set.threshold), wide(set.ratio)};
        for (const double level : {-40.0, -21.0, -18.0, -14.0, -10.0, -3.0, 0.0}) {
            CompressorProcessor compressor(48000.0, 1, 4096);
            compressor.apply(named.preset);
            const double amplitude = std::pow(10.0, level / 20.0);
            std::vector<float> block;
            for (int k = 0; k < 60; ++k) {
                block.assign(4096, static_cast<float>(amplitude));
                compressor.process(block.data(), block.size(), 0);
            }
            const double expected =
                amplitude * linear(computer.gainDB(level)) * linear(makeupDB(set));
            EXPECT_NEAR(decibels(wide(block.back())), decibels(expected), 0.01)
                << named.name << " at " << level;
        }
    }
}

/// At the threshold itself the knee has taken 0.375 of the slope.
TEST(CompressorResponse, KneeTakes0Point1875dBAtTheThresholdForARatioOf2) {
    CompressorBandSettings set;
    set.ratio = 2.0F;
    set.threshold = -3.0F * 6.0206F; // the level of an envelope of 1/8
    const CompressorBand band = compressorBandOf(set, 48000.0);
    std::vector<float> envelope(1 + kGainPadding, 0.125F);
    EXPECT_EQ(orvanta::kernels().compressor.gains(envelope.data(), 1, band), 0.1875F);
}

TEST(CompressorResponse, AppliesThreeTenthsOfWhatItComputes) {
    EXPECT_NEAR(linear(-10.0), 0.7063, 5e-5);
    CompressorBandSettings set;
    set.makeupGain = 3.0F;
    EXPECT_NEAR(compressorBandOf(set, 48000.0).makeup, 1.1100F, 5e-5F);
}

TEST(CompressorResponse, AutomaticMakeupDoesNotAskForTheMakeupGain) {
    CompressorBandSettings set = CompressorPreset::nightMode.bands[0];
    const float automatic = compressorBandOf(set, 48000.0).makeup;
    EXPECT_NEAR(wide(automatic), linear((1.0 - 1.0 / 3.0) * 9.0), 1e-6);
    set.makeupGain = 20.0F;
    EXPECT_EQ(compressorBandOf(set, 48000.0).makeup, automatic);
    // A band that does not compress takes the makeup gain.
    set.ratio = 1.05F;
    EXPECT_NEAR(wide(compressorBandOf(set, 48000.0).makeup), linear(20.0), 1e-6);
}

TEST(CompressorResponse, GainsStayWithinAMillionthOfTheCLibrarys) {
    const CompressorKernels& kernels = orvanta::kernels().compressor;
    for (const DetectionMode mode : {DetectionMode::peak, DetectionMode::rms}) {
        for (int decade = -10; decade <= 6; ++decade) {
            const float threshold = 10.0F * static_cast<float>(decade);
            for (const float ratio : {1.06F, 2.0F, 20.0F, 1e6F}) {
                CompressorBandSettings set;
                set.threshold = threshold;
                set.ratio = ratio;
                set.detectionMode = mode;
                const CompressorBand band = compressorBandOf(set, 48000.0);
                std::vector<float> envelopes;
                for (int step = -1900; step <= 600; ++step) {
                    const double amplitude = std::pow(10.0, 0.1 * step / 20.0);
                    envelopes.push_back(
                        static_cast<float>(band.isRMS ? amplitude * amplitude : amplitude));
                }
                std::vector<float> gains = envelopes;
                gains.resize(gains.size() + kGainPadding);
                (void)kernels.gains(gains.data(), envelopes.size(), band);
                for (std::size_t k = 0; k < envelopes.size(); ++k) {
                    // The same float operations with the C library's functions.
                    const float level = envelopes[k] > band.floor
                                            ? std::log2(envelopes[k]) * band.decibels
                                            : -120.0F;
                    const float over = level - threshold;
                    float g = 0.0F;
                    if (level > threshold + 1.5F)
                        g = threshold + over / ratio - level;
                    else if (!(level < threshold - 1.5F))
                        g = (over + 1.5F) * (1.0F / ratio - 1.0F) * (over + 1.5F) / 6.0F;
                    const float expected = std::exp2(g * 0.050170887F) * band.makeup;
                    ASSERT_NEAR(gains[k], expected, 1e-6F * expected)
                        << level << " over " << threshold << ", ratio " << ratio;
                }
            }
        }
    }
}

} // namespace
} // namespace orvanta
