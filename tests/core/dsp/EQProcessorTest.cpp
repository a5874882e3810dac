#include "core/dsp/EQProcessor.h"

#include "core/dsp/FlushDenormals.h"
#include "core/platform/RealTimeSection.h"
#include "tests/support/reference/Equaliser.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace orvanta {
namespace {

using Samples = std::vector<float>;

constexpr double rate = 48000.0;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

Samples noise(std::size_t count, unsigned seed = 7, float amplitude = 1.0F) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> value(-amplitude, amplitude);
    Samples samples(count);
    for (float& sample : samples)
        sample = value(random);
    return samples;
}

Samples processed(EQProcessor& eq, Samples samples, std::size_t channel = 0) {
    eq.process(samples.data(), samples.size(), channel);
    return samples;
}

/// Ten gains that all do something.
constexpr std::array<float, kEQBandCount> tenGains{4, -3, 2, 12, -1, 1, -12, 5, 3, -2};

/// With gains from the start.
class TunedEQ : public EQProcessor {
public:
    explicit TunedEQ(std::span<const float> gains) : EQProcessor(rate, 2) { setAllGains(gains); }
};

std::array<float, kEQBandCount> gainsOf(const EQProcessor& eq) {
    return eq.currentPreset().gains;
}

constexpr std::array<float, 5> identity{1, 0, 0, 0, 0};

TEST(EQProcessor, StartsFlatWithItsTenFixedBands) {
    const EQProcessor eq(rate, 2);
    EXPECT_TRUE(eq.isFlat());
    EXPECT_EQ(eq.sampleRate(), rate);
    EXPECT_EQ(eq.maxChannels(), 2U);
    for (std::size_t band = 0; band < kEQBandCount; ++band) {
        const bool isShelf = band == 0 || band == 9;
        const EQBandType type = band == 0   ? EQBandType::lowShelf
                                : band == 9 ? EQBandType::highShelf
                                            : EQBandType::peaking;
        EXPECT_EQ(eq.bands()[band],
                  (EQBand{0, kEQFrequencies[band], isShelf ? 0.707F : 1.4F, type}));
        EXPECT_EQ(eq.coefficients()[band], kEQIdentity);
        EXPECT_EQ(eq.vdspCoeffs()[band], identity);
    }
}

TEST(EQProcessor, LeavesEverySampleAsItIsWhileFlat) {
    EQProcessor eq(rate, 2);
    auto input = noise(300);
    input[7] = -0.0F;
    input[8] = std::numeric_limits<float>::denorm_min();
    const auto output = processed(eq, input);
    EXPECT_EQ(output, input);
    EXPECT_TRUE(std::signbit(output[7]));
}

TEST(EQProcessor, AGainOfATwentiethOfADecibelIsFlatForItButNotForThePreset) {
    for (const float gain : {0.05F, -0.05F}) {
        EQProcessor eq(rate, 2);
        eq.setGain(4, gain);
        EXPECT_EQ(eq.vdspCoeffs()[4], identity);
        EXPECT_EQ(eq.coefficients()[4], kEQIdentity);
        EXPECT_TRUE(eq.isFlat());
        EXPECT_FALSE(eq.currentPreset().isFlat());
        const auto input = noise(100);
        EXPECT_EQ(processed(eq, input), input);
        eq.setGain(4, std::nextafter(gain, 2.0F * gain));
        EXPECT_FALSE(eq.isFlat());
        EXPECT_NE(processed(eq, input), input);
    }
}

TEST(EQProcessor, IgnoresBandsThatThereAreNot) {
    EQProcessor eq(rate, 2);
    for (const int band : {10, -1, 1000, std::numeric_limits<int>::min()})
        eq.setGain(band, 3);
    EXPECT_EQ(gainsOf(eq), (std::array<float, kEQBandCount>{}));
    EXPECT_TRUE(eq.isFlat());
}

TEST(EQProcessor, KeepsGainsWithinTwelveDecibels) {
    EQProcessor eq(rate, 2);
    const auto stored = [&](float gain) {
        eq.setGain(0, gain);
        return eq.bands()[0].gain;
    };
    EXPECT_EQ(stored(40), 12.0F);
    EXPECT_EQ(stored(-40), -12.0F);
    EXPECT_EQ(stored(infinity), 12.0F);
    EXPECT_EQ(stored(-infinity), -12.0F);
    EXPECT_EQ(stored(-11.99F), -11.99F);
    EXPECT_EQ(stored(nan), 12.0F);
    EXPECT_EQ(stored(-nan), 12.0F);
}

TEST(EQProcessor, SettingOneGainRecomputesThatBandAlone) {
    EQProcessor eq(rate, 2);
    eq.setGain(3, -5);
    for (std::size_t band = 0; band < kEQBandCount; ++band)
        EXPECT_EQ(eq.vdspCoeffs()[band] == identity, band != 3);
}

TEST(EQProcessor, SettingThreeGainsOfTenChangesTheFirstThreeAndRecomputesAll) {
    TunedEQ eq(tenGains);
    eq.setAllGains(std::array<float, 3>{1, -20, 0});
    EXPECT_EQ(gainsOf(eq), (std::array<float, 10>{1, -12, 0, 12, -1, 1, -12, 5, 3, -2}));
    reference::Equaliser plain(rate, 1);
    for (std::size_t band = 0; band < kEQBandCount; ++band) {
        plain.setGain(band, gainsOf(eq)[band]);
        EXPECT_EQ(eq.coefficients()[band], plain.row(band));
        EXPECT_EQ(eq.vdspCoeffs()[band], plain.singleRow(band));
    }
}

TEST(EQProcessor, IgnoresMoreGainsThanThereAreBands) {
    TunedEQ eq(std::vector<float>(15, 2.0F));
    EXPECT_EQ(gainsOf(eq), (std::array<float, 10>{2, 2, 2, 2, 2, 2, 2, 2, 2, 2}));
}

TEST(EQProcessor, TakesAPresetAndGivesItBack) {
    EQProcessor eq(rate, 2);
    for (const NamedEQPreset& named : EQPreset::allNamedPresets()) {
        eq.apply(named.preset);
        EXPECT_EQ(eq.currentPreset(), named.preset);
        EXPECT_EQ(eq.currentPreset().matchedPresetName(), named.name);
        EXPECT_FALSE(eq.isFlat());
    }
}

RC_GTEST_PROP(EQProcessor, RowsThatRunAreTheDesignRounded, ()) {
    const double anyRate = *rc::gen::inRange(8000, 192001);
    EQProcessor eq(anyRate, 1);
    reference::Equaliser plain(anyRate, 1);
    for (std::size_t band = 0; band < kEQBandCount; ++band) {
        const float gain = static_cast<float>(*rc::gen::inRange(-1200, 1201)) / 100.0F;
        eq.setGain(static_cast<int>(band), gain);
        plain.setGain(band, gain);
    }
    for (std::size_t band = 0; band < kEQBandCount; ++band) {
        RC_ASSERT(eq.coefficients()[band] == plain.row(band));
        RC_ASSERT(eq.vdspCoeffs()[band] == plain.singleRow(band));
    }
}

TEST(EQProcessor, ChannelsBeyondItsOwnPassUnchanged) {
    TunedEQ eq(tenGains);
    const auto input = noise(100);
    EXPECT_EQ(processed(eq, input, 2), input);
    EXPECT_EQ(processed(eq, input, std::numeric_limits<std::size_t>::max()), input);
    EXPECT_NE(processed(eq, input, 1), input);
}

TEST(EQProcessor, TouchesNothingWithoutSamples) {
    TunedEQ eq(tenGains);
    eq.process(nullptr, 0, 0);
    eq.processPair(nullptr, nullptr, 0);
    TunedEQ fresh(tenGains);
    const auto input = noise(100);
    EXPECT_EQ(processed(eq, input), processed(fresh, input));
}

TEST(EQProcessor, FiltersTheFirst4096SamplesOfABlockAndLeavesTheRest) {
    TunedEQ eq(tenGains);
    TunedEQ inTime(tenGains);
    const auto input = noise(5000);
    const auto output = processed(eq, input);
    const auto expected = processed(inTime, {input.begin(), input.begin() + 4096});
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), output.begin()));
    EXPECT_TRUE(std::equal(output.begin() + 4096, output.end(), input.begin() + 4096));
    // The histories are those of sample 4096.
    const auto next = noise(64, 8);
    EXPECT_EQ(processed(eq, next), processed(inTime, next));
}

TEST(EQProcessor, PairsAlsoFilterTheFirst4096SamplesOnly) {
    TunedEQ eq(tenGains);
    TunedEQ one(tenGains);
    auto left = noise(5000, 1);
    auto right = noise(5000, 2);
    const auto expectedLeft = processed(one, left, 0);
    const auto expectedRight = processed(one, right, 1);
    eq.processPair(left.data(), right.data(), left.size());
    EXPECT_EQ(left, expectedLeft);
    EXPECT_EQ(right, expectedRight);
}

TEST(EQProcessor, APairOfAProcessorWithOneChannelIsThatChannelAlone) {
    EQProcessor eq(rate, 1);
    EQProcessor one(rate, 1);
    eq.setAllGains(tenGains);
    one.setAllGains(tenGains);
    auto left = noise(300, 1);
    auto right = noise(300, 2);
    const auto expected = processed(one, left);
    const auto untouched = right;
    eq.processPair(left.data(), right.data(), left.size());
    EXPECT_EQ(left, expected);
    EXPECT_EQ(right, untouched);
    EQProcessor none(rate, 0);
    none.setAllGains(tenGains);
    none.processPair(left.data(), right.data(), left.size());
    EXPECT_EQ(left, expected);
}

TEST(EQProcessor, ABandTakenToZeroAndRaisedAgainGoesOnFromItsOldHistory) {
    EQProcessor eq(rate, 1);
    eq.setGain(2, 12);
    processed(eq, noise(200));
    eq.setGain(2, 0);
    const auto between = noise(200, 8);
    EXPECT_EQ(processed(eq, between), between);
    eq.setGain(2, 12);

    EQProcessor uninterrupted(rate, 1);
    uninterrupted.setGain(2, 12);
    processed(uninterrupted, noise(200));

    const auto input = noise(200, 9);
    const auto output = processed(eq, input);
    EXPECT_EQ(output, processed(uninterrupted, input));
    EQProcessor fresh(rate, 1);
    fresh.setGain(2, 12);
    EXPECT_NE(output, processed(fresh, input));
}

TEST(EQProcessor, ChangingAGainKeepsTheHistory) {
    TunedEQ eq(tenGains);
    processed(eq, noise(300));
    const auto change = [](EQProcessor& processor) {
        processor.setGain(1, 6);
        processor.setAllGains(std::array<float, 2>{3, -3});
        processor.recalculateAllCoefficients();
    };
    change(eq);
    const Samples silence(10, 0.0F);
    EXPECT_NE(processed(eq, silence), silence);
}

TEST(EQProcessor, ANewRateRecomputesEveryBandAndStartsFromSilence) {
    TunedEQ eq(tenGains);
    processed(eq, noise(300), 0);
    processed(eq, noise(300), 1);
    eq.updateSampleRate(96000.0);
    EQProcessor fresh(96000.0, 2);
    fresh.setAllGains(tenGains);
    EXPECT_EQ(eq.sampleRate(), 96000.0);
    EXPECT_EQ(eq.vdspCoeffs(), fresh.vdspCoeffs());
    const auto input = noise(300, 8);
    for (const std::size_t channel : {1U, 0U})
        EXPECT_EQ(processed(eq, input, channel), processed(fresh, input, channel));
}

TEST(EQProcessor, IgnoresARateThatIsNotAboveZero) {
    TunedEQ eq(tenGains);
    TunedEQ untouched(tenGains);
    processed(eq, noise(300));
    processed(untouched, noise(300));
    for (const double none : {0.0, -1.0, -48000.0, std::numeric_limits<double>::quiet_NaN(),
                              -std::numeric_limits<double>::infinity()})
        eq.updateSampleRate(none);
    EXPECT_EQ(eq.sampleRate(), rate);
    const auto input = noise(300, 8);
    EXPECT_EQ(processed(eq, input), processed(untouched, input));
}

TEST(EQProcessor, LeavesOutBandsThatARateOfNoneGivesNoNumbersFor) {
    for (const double none : {0.0, std::numeric_limits<double>::quiet_NaN()}) {
        EQProcessor eq(none, 1);
        eq.setAllGains(tenGains);
        EXPECT_FALSE(eq.isFlat());
        const auto input = noise(100);
        EXPECT_EQ(processed(eq, input), input);
        eq.updateSampleRate(rate);
        EXPECT_NE(processed(eq, input), input);
    }
}

TEST(EQProcessor, ResetIsFlat) {
    TunedEQ eq(tenGains);
    eq.reset();
    EXPECT_TRUE(eq.isFlat());
    EXPECT_EQ(eq.currentPreset(), EQPreset());
    for (std::size_t band = 0; band < kEQBandCount; ++band)
        EXPECT_EQ(eq.vdspCoeffs()[band], identity);
}

RC_GTEST_PROP(EQProcessor, ResetEqualsAFreshInstance, ()) {
    const auto gains = *rc::gen::container<std::vector<float>>(
        10, rc::gen::map(rc::gen::inRange(-120, 121),
                         [](int tenths) { return static_cast<float>(tenths) / 10.0F; }));
    const bool runsBetween = *rc::gen::arbitrary<bool>();
    TunedEQ used(tenGains);
    processed(used, noise(333), 0);
    processed(used, noise(222), 1);
    used.reset();
    if (runsBetween) { // flat blocks in between change nothing
        processed(used, noise(50), 0);
        processed(used, noise(50), 1);
    }
    used.setAllGains(gains);
    TunedEQ fresh(gains);
    for (const std::size_t channel : {1U, 0U})
        RC_ASSERT(processed(used, noise(300, 3), channel) ==
                  processed(fresh, noise(300, 3), channel));
}

RC_GTEST_PROP(EQProcessor, GivesTheSameSamplesHoweverTheSignalIsCutIntoBlocks, ()) {
    const auto input = noise(4096);
    TunedEQ whole(tenGains);
    const auto expectedLeft = processed(whole, input, 0);
    const auto expectedRight = processed(whole, noise(4096, 8), 1);
    TunedEQ cut(tenGains);
    auto left = input;
    auto right = noise(4096, 8);
    for (std::size_t done = 0; done < left.size();) {
        const auto count = std::min(*rc::gen::inRange<std::size_t>(1, 600), left.size() - done);
        if (*rc::gen::arbitrary<bool>()) {
            cut.processPair(left.data() + done, right.data() + done, count);
        } else {
            cut.process(left.data() + done, count, 0);
            cut.process(right.data() + done, count, 1);
        }
        done += count;
    }
    RC_ASSERT(left == expectedLeft);
    RC_ASSERT(right == expectedRight);
}

RC_GTEST_PROP(EQProcessor, FlatBandsChangeNothingOfWhatTheOthersDo, ()) {
    // The cascade is the same as its active bands alone, one processor for each, one after the
    // other.
    const auto chosen = *rc::gen::container<std::vector<bool>>(10, rc::gen::arbitrary<bool>());
    EQProcessor together(rate, 1);
    auto expected = noise(500);
    for (std::size_t band = 0; band < chosen.size(); ++band) {
        const float flat = band % 2 == 0 ? 0.0F : 0.05F;
        const float gain = chosen[band] ? tenGains[band] : flat;
        together.setGain(static_cast<int>(band), gain);
        EQProcessor alone(rate, 1);
        alone.setGain(static_cast<int>(band), gain);
        alone.process(expected.data(), expected.size(), 0);
    }
    RC_ASSERT(processed(together, noise(500)) == expected);
}

RC_GTEST_PROP(EQProcessor, StaysWithinWhatItsImpulseResponseAllows, ()) {
    const double anyRate =
        *rc::gen::oneOf(rc::gen::map(rc::gen::inRange(8000, 192001),
                                     [](int hertz) { return static_cast<double>(hertz); }),
                        rc::gen::element(8000.0, 44100.0, 48000.0, 96000.0, 192000.0));
    EQProcessor eq(anyRate, 1);
    for (std::size_t band = 0; band < kEQBandCount; ++band)
        if (static_cast<double>(kEQFrequencies[band]) < 0.95 * anyRate / 2.0)
            eq.setGain(static_cast<int>(band), *rc::gen::element(-12.0F, 0.0F, 12.0F, 3.3F));
    const std::size_t length = 4096 * 8;
    const auto run = [&](Samples samples) {
        for (std::size_t done = 0; done < samples.size(); done += 4096)
            eq.process(samples.data() + done, 4096, 0);
        return samples;
    };
    Samples impulse(length, 0.0F);
    impulse[0] = 1.0F;
    double bound = 0;
    for (const float sample : run(impulse))
        bound += std::fabs(static_cast<double>(sample));
    eq.updateSampleRate(anyRate);
    const FlushDenormals flush;
    Samples squares = noise(length);
    for (float& sample : squares)
        sample = std::copysign(1.0F, sample);
    for (const float sample : run(squares))
        RC_ASSERT(std::fabs(static_cast<double>(sample)) <= bound * 1.01);
    // And it rings out.
    for (int second = 0; second < 20; ++second)
        run(Samples(length, 0.0F));
    for (const float sample : run(Samples(length, 0.0F)))
        RC_ASSERT(std::fabs(sample) < 1e-30F);
}

TEST(EQProcessor, BandsForWhichTheRateIsTooLowAreLeftOutAndNothingEverRingsUp) {
    for (const double low : {0.0, 8000.0, 11025.0, 16000.0, 22050.0, 24000.0, 31999.0, 32000.0}) {
        EQProcessor eq(low, 1);
        eq.setAllGains(tenGains);
        float loudest = 0;
        for (int block = 0; block < 2000; ++block)
            for (const float sample : processed(eq, noise(1024, static_cast<unsigned>(block))))
                loudest = std::max(loudest, std::fabs(sample));
        EXPECT_LT(loudest, 40.0F) << low;
    }
}

TEST(EQProcessor, AShelfAtHalfTheRateIsComputedButNotRun) {
    EQProcessor eq(32000.0, 1);
    eq.setGain(9, 6.0F);
    EXPECT_FALSE(eq.isFlat());
    EXPECT_EQ(eq.vdspCoeffs()[9], (EQSingleCoefficients{1, 2, 1, 2, 1}));
    EXPECT_EQ(processed(eq, noise(1000)), noise(1000));
}

RC_GTEST_PROP(EQProcessor, RingsOutAtEveryRateWithAnyGains, ()) {
    const double any = *rc::gen::inRange(8000, 192001);
    EQProcessor eq(any, 1);
    for (int band = 0; band < kEQBandCount; ++band)
        eq.setGain(band, static_cast<float>(*rc::gen::inRange(-12, 13)));
    const auto energy = [](const Samples& samples) {
        return std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
    };
    const double loud = energy(processed(eq, noise(4096)));
    Samples silence;
    for (int block = 0; block < 400; ++block)
        silence = processed(eq, Samples(4096));
    RC_ASSERT(energy(silence) < 1e-3 * loud);
}

TEST(EQProcessor, OneBadSampleSilencesTheRestOfItsBlockAndNoMore) {
    for (const float poison : {nan, infinity, -infinity})
        for (const std::size_t place : {0U, 1U, 17U, 100U, 254U, 255U})
            for (const bool asPair : {false, true}) {
                TunedEQ eq(tenGains);
                TunedEQ clean(tenGains);
                auto left = noise(256, 1);
                auto right = noise(256, 2);
                const auto expectedLeft = processed(clean, left, 0);
                const auto expectedRight = processed(clean, right, 1);
                left[place] = poison;
                if (asPair) {
                    eq.processPair(left.data(), right.data(), left.size());
                } else {
                    eq.process(left.data(), left.size(), 0);
                    eq.process(right.data(), right.size(), 1);
                }
                for (std::size_t k = 0; k < left.size(); ++k)
                    ASSERT_EQ(left[k], k < place ? expectedLeft[k] : 0.0F) << k;
                // The other channel has not noticed, and this one begins again.
                EXPECT_EQ(right, expectedRight);
                TunedEQ fresh(tenGains);
                EXPECT_EQ(processed(eq, noise(256, 3), 0), processed(fresh, noise(256, 3), 0));
                EXPECT_EQ(processed(eq, noise(256, 4), 1), processed(clean, noise(256, 4), 1));
            }
}

TEST(EQProcessor, BadSamplesBeyondTheOnesItFiltersAreNotItsOwn) {
    TunedEQ eq(tenGains);
    auto input = noise(4100);
    input[4097] = infinity;
    const auto output = processed(eq, input);
    EXPECT_EQ(output[4097], infinity);
    EXPECT_NE(output[4095], 0.0F);
}

TEST(EQProcessor, ABandAtRestKeepsItsHistoryThroughABadBlock) {
    EQProcessor eq(rate, 1);
    eq.setGain(2, 12);
    processed(eq, noise(200));
    eq.setGain(2, 0);
    eq.setGain(5, 6);
    processed(eq, {0.5F, nan, 0.5F});
    eq.setGain(5, 0);
    eq.setGain(2, 12);
    const Samples silence(10, 0.0F);
    EXPECT_NE(processed(eq, silence), silence);
}

TEST(EQProcessor, ComesBackFromHugeSamplesAsItRingsOut) {
    TunedEQ eq(std::vector<float>(10, 12.0F));
    processed(eq, Samples(256, 1e30F));
    TunedEQ fresh(std::vector<float>(10, 12.0F));
    Samples output;
    Samples expected;
    for (int block = 0; block < 200; ++block) {
        output = processed(eq, noise(1024));
        for (const float sample : output)
            ASSERT_TRUE(std::isfinite(sample));
        expected = processed(fresh, noise(1024));
    }
    for (std::size_t k = 0; k < output.size(); ++k)
        ASSERT_NEAR(output[k], expected[k], 5e-3F);
}

TEST(EQProcessor, OverflowIsSilentAndOver) {
    TunedEQ eq(std::vector<float>(10, 12.0F));
    for (const float sample : processed(eq, Samples(256, std::numeric_limits<float>::max())))
        ASSERT_TRUE(std::isfinite(sample));
    TunedEQ fresh(std::vector<float>(10, 12.0F));
    EXPECT_EQ(processed(eq, noise(256)), processed(fresh, noise(256)));
}

TEST(EQProcessor, AllocatesAndLocksNothingInProcess) {
    TunedEQ eq(tenGains);
    auto left = noise(512, 1);
    auto right = noise(512, 2);
    const RealTimeSection trapped;
    eq.process(left.data(), left.size(), 0);
    eq.processPair(left.data(), right.data(), left.size());
    left[3] = nan;
    eq.processPair(left.data(), right.data(), left.size());
}

TEST(EQProcessor, APairThatFollowsANewRateIsThatOfAFreshOne) {
    TunedEQ used(tenGains);
    auto left = noise(500, 1);
    auto right = noise(500, 2);
    used.processPair(left.data(), right.data(), left.size());
    used.updateSampleRate(rate);
    TunedEQ fresh(tenGains);
    left = noise(500, 3);
    right = noise(500, 4);
    used.processPair(left.data(), right.data(), left.size());
    EXPECT_EQ(left, processed(fresh, noise(500, 3), 0));
    EXPECT_EQ(right, processed(fresh, noise(500, 4), 1));
}

TEST(EQProcessor, CanBeSetFromAnotherThreadWhileItRuns) {
    EQProcessor eq(rate, 2);
    std::atomic<bool> isChanging{false};
    std::atomic<bool> isDone{false};
    std::thread control([&] {
        std::mt19937 random(5);
        for (int change = 0; !isDone; ++change) {
            eq.setGain(static_cast<int>(random() % 12) - 1, static_cast<float>(random() % 24) - 12);
            if (change % 7 == 0)
                eq.apply(EQPreset::allNamedPresets()[random() % 12].preset);
            if (change % 50 == 0)
                eq.updateSampleRate(change % 100 == 0 ? 44100.0 : 96000.0);
            if (change % 91 == 0)
                eq.reset();
            isChanging = true;
        }
    });
    while (!isChanging)
        std::this_thread::yield();
    bool isFinite = true;
    for (int block = 0; block < 2000; ++block) {
        auto left = noise(128, 1);
        auto right = noise(128, 2);
        if (!eq.isFlat())
            eq.processPair(left.data(), right.data(), left.size());
        eq.process(left.data(), left.size(), 1);
        isFinite = isFinite && std::all_of(left.begin(), left.end(),
                                           [](float sample) { return std::isfinite(sample); });
    }
    isDone = true;
    EXPECT_TRUE(isFinite);
    control.join();
    // What was set last is what runs, from silence.
    eq.updateSampleRate(rate);
    eq.setAllGains(tenGains);
    TunedEQ fresh(tenGains);
    EXPECT_EQ(processed(eq, noise(500)), processed(fresh, noise(500)));
}

} // namespace
} // namespace orvanta
