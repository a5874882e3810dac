#include "core/dsp/EQDesign.h"

#include "tests/support/reference/Equaliser.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

namespace orvanta {
namespace {

constexpr std::array rates{8000.0,  11025.0, 16000.0, 22050.0, 32000.0,
                           44100.0, 48000.0, 96000.0, 192000.0};

EQBand bandAt(std::size_t index, float gain) {
    const bool isLow = index == 0;
    const bool isHigh = index == kEQBandCount - 1;
    return {gain, kEQFrequencies[index], isLow || isHigh ? 0.707F : 1.4F,
            isLow    ? EQBandType::lowShelf
            : isHigh ? EQBandType::highShelf
                     : EQBandType::peaking};
}

/// dB of a row at a frequency in Hz.
double responseOf(const EQCoefficients& row, double frequency, double sampleRate) {
    const auto [b0, b1, b2, a1, a2] = row;
    const auto delay = std::polar(1.0, -2.0 * std::numbers::pi * frequency / sampleRate);
    const auto h = (b0 + delay * (b1 + delay * b2)) / (1.0 + delay * (a1 + delay * a2));
    return 20.0 * std::log10(std::abs(h));
}

/// In double precision, which the processor itself never asks.
bool isStableUnrounded(const EQCoefficients& row) {
    return std::fabs(row[4]) < 1.0 && std::fabs(row[3]) < 1.0 + row[4];
}

/// A band's frequency where half the rate is 1.
double relativeFrequency(std::size_t band, double sampleRate) {
    return static_cast<double>(kEQFrequencies[band]) / (sampleRate / 2.0);
}

rc::Gen<float> anyGain() {
    return rc::gen::map(rc::gen::inRange(-1200, 1201),
                        [](int hundredths) { return static_cast<float>(hundredths) / 100.0F; });
}

rc::Gen<double> anyRate() {
    return rc::gen::oneOf(rc::gen::elementOf(rates),
                          rc::gen::map(rc::gen::inRange(8000, 192001),
                                       [](int hertz) { return static_cast<double>(hertz); }));
}

TEST(EQDesign, InactiveBandsLeaveTheSignalAsItIs) {
    for (std::size_t band = 0; band < kEQBandCount; ++band)
        for (const float gain : {0.0F, 0.05F, -0.05F, 0.01F})
            EXPECT_EQ(eqCoefficients(bandAt(band, gain), 48000.0), kEQIdentity);
}

TEST(EQDesign, ShelvesReachTheirGainAtTheEndsAndHalfOfItAtTheCorner) {
    for (const float gain : {-12.0F, -3.0F, 0.06F, 6.0F, 12.0F}) {
        const auto decibels = static_cast<double>(gain);
        const auto low = eqCoefficients(bandAt(0, gain), 48000.0);
        EXPECT_NEAR(responseOf(low, 0.0, 48000.0), decibels, 1e-6);
        EXPECT_NEAR(responseOf(low, 31.0, 48000.0), decibels / 2.0, 1e-6);
        EXPECT_NEAR(responseOf(low, 24000.0, 48000.0), 0.0, 1e-6);
        const auto high = eqCoefficients(bandAt(9, gain), 48000.0);
        EXPECT_NEAR(responseOf(high, 0.0, 48000.0), 0.0, 1e-6);
        EXPECT_NEAR(responseOf(high, 16000.0, 48000.0), decibels / 2.0, 1e-6);
        EXPECT_NEAR(responseOf(high, 24000.0, 48000.0), decibels, 1e-6);
    }
}

TEST(EQDesign, PeaksReachTheirGainAtTheCentreAndLeaveBothEndsAlone) {
    for (std::size_t band = 1; band < kEQBandCount - 1; ++band)
        for (const float gain : {-12.0F, -3.0F, 0.06F, 6.0F, 12.0F}) {
            const auto peak = eqCoefficients(bandAt(band, gain), 48000.0);
            const auto centre = static_cast<double>(kEQFrequencies[band]);
            EXPECT_NEAR(responseOf(peak, centre, 48000.0), static_cast<double>(gain), 1e-6);
            EXPECT_NEAR(responseOf(peak, 0.0, 48000.0), 0.0, 1e-6);
            EXPECT_NEAR(responseOf(peak, 24000.0, 48000.0), 0.0, 1e-6);
        }
}

RC_GTEST_PROP(EQDesign, RowsAreTheFormulasToTheLastBit, ()) {
    const auto band = *rc::gen::inRange<std::size_t>(0, kEQBandCount);
    const float gain = *anyGain();
    const double rate = *anyRate();
    reference::Equaliser plain(rate, 1);
    plain.setGain(band, gain);
    RC_ASSERT(eqCoefficients(bandAt(band, gain), rate) == plain.row(band));
}

RC_GTEST_PROP(EQDesign, BandsBelowHalfTheRateAreStable, ()) {
    const float gain = *anyGain();
    const double rate = *anyRate();
    for (std::size_t band = 0; band < kEQBandCount; ++band)
        if (relativeFrequency(band, rate) < 1.0)
            RC_ASSERT(isStableUnrounded(eqCoefficients(bandAt(band, gain), rate)));
}

RC_GTEST_PROP(EQDesign, RoundedToSinglePrecisionTheyAreStableUnlessVeryCloseToHalfTheRate, ()) {
    const float gain = *anyGain();
    const double rate = *anyRate();
    for (std::size_t band = 0; band < kEQBandCount; ++band)
        if (relativeFrequency(band, rate) < 0.95)
            RC_ASSERT(isStable(rounded(eqCoefficients(bandAt(band, gain), rate))));
}

TEST(EQDesign, EveryBandIsStableAtTheExtremesOfEveryCommonRate) {
    for (const double rate : rates)
        for (const float gain : {-12.0F, -0.06F, 0.06F, 12.0F})
            for (std::size_t band = 0; band < kEQBandCount; ++band)
                if (relativeFrequency(band, rate) < 1.0) {
                    EXPECT_TRUE(isStable(rounded(eqCoefficients(bandAt(band, gain), rate))))
                        << kEQFrequencies[band] << " Hz, " << gain << " dB at " << rate;
                }
}

TEST(EQDesign, ABandAHairBelowHalfTheRateIsStableOnlyUntilItIsRounded) {
    int unstable = 0;
    for (const float gain : {-12.0F, -6.0F, -3.0F, -1.0F, 1.0F, 3.0F, 6.0F, 12.0F}) {
        const auto row = eqCoefficients(bandAt(8, gain), 16001.0);
        EXPECT_TRUE(isStableUnrounded(row)) << gain;
        unstable += isStable(rounded(row)) ? 0 : 1;
    }
    EXPECT_GT(unstable, 0);
}

TEST(EQDesign, AShelfAtHalfTheRateIsComputedAndItsZerosCancelItsPolesOnTheUnitCircle) {
    for (const float gain : {-12.0F, -1.0F, 3.0F, 12.0F}) {
        const auto row = rounded(eqCoefficients(bandAt(9, gain), 32000.0));
        EXPECT_EQ(row, (EQSingleCoefficients{1, 2, 1, 2, 1})) << gain;
        EXPECT_FALSE(isStable(row)) << "rounding errors would add up";
    }
}

TEST(EQDesign, ABandBeyondHalfTheRateMayBeNoStableFilter) {
    EXPECT_FALSE(isStable(rounded(eqCoefficients(bandAt(9, 6.0F), 24000.0))));
    EXPECT_FALSE(isStable(rounded(eqCoefficients(bandAt(8, 6.0F), 11025.0))));
    // Beyond the whole rate the frequency comes back as its alias, and the filter with it.
    EXPECT_TRUE(isStable(rounded(eqCoefficients(bandAt(9, 6.0F), 11025.0))));
}

TEST(EQDesign, ARateOfZeroGivesNoNumbers) {
    for (const double each : eqCoefficients(bandAt(4, 6.0F), 0.0))
        EXPECT_FALSE(std::isfinite(each));
}

} // namespace
} // namespace orvanta
