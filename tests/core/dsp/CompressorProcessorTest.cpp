#include "core/dsp/CompressorProcessor.h"

#include "core/dsp/FlushDenormals.h"
#include "core/platform/RealTimeSection.h"
#include "tests/support/reference/CompressorMaterial.h"
#include "tests/support/reference/ReferenceCompressor.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <random>
#include <thread>
#include <vector>

namespace orvanta {
namespace {

using reference::noise;
using reference::swells;

constexpr double rate = 48000.0;
constexpr float infinity = std::numeric_limits<float>::infinity();
using Reductions = std::array<float, 3>;

std::vector<float> processed(CompressorProcessor& compressor, std::vector<float> samples,
                             std::size_t channel = 0) {
    compressor.process(samples.data(), samples.size(), channel);
    return samples;
}

/// In blocks of a thousand.
std::vector<float> processedInBlocks(CompressorProcessor& compressor, std::vector<float> samples) {
    for (std::size_t at = 0; at < samples.size(); at += 1000)
        compressor.process(&samples[at], std::min<std::size_t>(1000, samples.size() - at), 0);
    return samples;
}

CompressorPreset withRatios(float low, float middle, float high) {
    CompressorPreset preset = CompressorPreset::vocal;
    preset.bands[0].ratio = low;
    preset.bands[1].ratio = middle;
    preset.bands[2].ratio = high;
    return preset;
}

bool allFinite(const std::vector<float>& samples) {
    return std::all_of(samples.begin(), samples.end(), [](float s) { return std::isfinite(s); });
}

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

// --- Look-ahead ---

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
    auto output = input;
    for (std::size_t at = 0; at < output.size();) {
        const auto count = std::min(*rc::gen::inRange<std::size_t>(1, 800), output.size() - at);
        late.process(&output[at], count, 0);
        at += count;
    }
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

// --- Properties ---

RC_GTEST_PROP(CompressorProcessor, GivesTheSameSamplesHoweverTheSignalIsCutIntoBlocks, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const CompressorPreset preset = reference::randomPreset(random);
    const auto input = swells(3000, static_cast<unsigned>(random()));
    CompressorProcessor whole(rate, 1, 4096);
    CompressorProcessor cut(rate, 1, 4096);
    whole.apply(preset);
    cut.apply(preset);
    const auto expected = processed(whole, input);
    auto output = input;
    for (std::size_t at = 0; at < output.size();) {
        const auto count = std::min(*rc::gen::inRange<std::size_t>(1, 700), output.size() - at);
        cut.process(&output[at], count, 0);
        at += count;
    }
    RC_ASSERT(output == expected);
}

RC_GTEST_PROP(CompressorProcessor, ResetEqualsAFreshInstance, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const CompressorPreset preset = reference::randomPreset(random);
    CompressorProcessor used(rate, 2, 4096);
    CompressorProcessor fresh(44100.0, 2, 4096);
    used.apply(reference::randomPreset(random));
    auto left = swells(2000, static_cast<unsigned>(random()));
    auto right = swells(2000, static_cast<unsigned>(random()));
    used.processPair(left.data(), right.data(), left.size());
    used.updateSampleRate(44100.0);
    used.apply(preset);
    fresh.apply(preset);
    RC_ASSERT(used.gainReduction() == Reductions{});
    for (const std::size_t channel : {1U, 0U}) {
        const auto input = swells(2000, static_cast<unsigned>(random()));
        RC_ASSERT(processed(used, input, channel) == processed(fresh, input, channel));
    }
    RC_ASSERT(used.gainReduction() == fresh.gainReduction());
}

/// The split cannot lift anything by more than about 25 times, and compression only lowers.
RC_GTEST_PROP(CompressorProcessor, StaysBoundedAtAllRatesAndSettings, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const double sampleRate = *rc::gen::element(8000.0, 11025.0, 16000.0, 22050.0, 32000.0, 44100.0,
                                                48000.0, 88200.0, 96000.0, 176400.0, 192000.0);
    CompressorPreset preset = reference::randomPreset(random);
    preset.bands[1].ratio += 0.1F;
    CompressorProcessor compressor(sampleRate, 1, 4096);
    compressor.apply(preset);
    float makeup = 1.0F;
    for (const CompressorBandSettings& band : preset.bands)
        makeup = std::max(makeup, compressorBandOf(band, sampleRate).makeup);
    const bool isSquare = *rc::gen::arbitrary<bool>();
    for (int block = 0; block < 20; ++block) {
        auto samples = noise(1024, 1.0F, static_cast<unsigned>(random()));
        for (std::size_t k = 0; k < samples.size() && isSquare; ++k)
            samples[k] = k / 91 % 2 == 0 ? 1.0F : -1.0F;
        for (const float sample : processed(compressor, samples))
            RC_ASSERT(std::fabs(sample) < 25.0F * makeup);
    }
    for (const float reduction : compressor.gainReduction())
        RC_ASSERT(reduction >= 0.0F && reduction < 200.0F);
}

// --- Poison ---

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
