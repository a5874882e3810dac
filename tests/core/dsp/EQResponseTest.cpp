#include "core/dsp/EQProcessor.h"
#include "core/dsp/FlushDenormals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace orvanta {
namespace {

using Samples = std::vector<float>;

/// One second of a tone. Frequencies are whole numbers, so that it can be repeated seamlessly.
Samples toneOf(float frequency, std::size_t rate) {
    Samples samples(rate);
    for (std::size_t k = 0; k < rate; ++k) {
        const double turns =
            static_cast<double>(frequency) * static_cast<double>(k) / static_cast<double>(rate);
        samples[k] =
            static_cast<float>(0.5 * std::sin(2.0 * std::numbers::pi * std::fmod(turns, 1.0)));
    }
    return samples;
}

/// How much of a frequency is in one second of samples.
double magnitudeAt(float frequency, const Samples& samples) {
    const auto turn = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(frequency) /
                                          static_cast<double>(samples.size()));
    std::complex<double> phase = 1.0;
    std::complex<double> sum = 0.0;
    for (const float sample : samples) {
        sum += static_cast<double>(sample) * phase;
        phase *= turn;
    }
    return std::abs(sum);
}

double decibels(double ratio) {
    return 20.0 * std::log10(ratio);
}

/// What the rows that run make of a frequency, by their transfer functions.
double expectedDecibels(const EQProcessor& eq, float frequency) {
    const auto delay =
        std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(frequency) / eq.sampleRate());
    double response = 0;
    for (const auto& row : eq.vdspCoeffs()) {
        std::array<double, 5> c{};
        std::copy(row.begin(), row.end(), c.begin());
        response += decibels(std::abs((c[0] + delay * (c[1] + delay * c[2])) /
                                      (1.0 + delay * (c[3] + delay * c[4]))));
    }
    return response;
}

void filterInBlocks(EQProcessor& eq, Samples& left, Samples& right) {
    constexpr std::size_t block = 1024;
    for (std::size_t done = 0; done < left.size(); done += block)
        eq.processPair(left.data() + done, right.data() + done,
                       std::min(block, left.size() - done));
}

/// Tones, not an impulse: in single precision the lowest bands round what an impulse leaves of
/// itself after two samples so hard that its spectrum is off by some tenths of a decibel. Over a
/// second of a steady tone the rounding averages out.
class EQResponse : public testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Rates, EQResponse,
                         testing::Values(32000U, 44100U, 48000U, 96000U, 192000U));

TEST_P(EQResponse, OfEveryNamedPresetIsThatOfTheRowsThatRunWithinAHundredthOfADecibel) {
    const FlushDenormals flush;
    const std::size_t rate = GetParam();
    for (std::size_t band = 0; band < kEQBandCount; band += 2) {
        const std::array frequencies{kEQFrequencies[band], kEQFrequencies[band + 1]};
        const std::array tones{toneOf(frequencies[0], rate), toneOf(frequencies[1], rate)};
        for (const NamedEQPreset& named : EQPreset::allNamedPresets()) {
            EQProcessor eq(static_cast<double>(rate), 2);
            eq.apply(named.preset);
            std::array<Samples, 2> settling = tones;
            filterInBlocks(eq, settling[0], settling[1]);
            std::array<Samples, 2> output = tones;
            filterInBlocks(eq, output[0], output[1]);
            for (std::size_t k = 0; k < frequencies.size(); ++k) {
                // At half the rate a tone is all zeros.
                if (frequencies[k] * 2.0F >= static_cast<float>(rate))
                    continue;
                const double measured = decibels(magnitudeAt(frequencies[k], output[k]) /
                                                 magnitudeAt(frequencies[k], tones[k]));
                EXPECT_NEAR(measured, expectedDecibels(eq, frequencies[k]), 0.01)
                    << named.name << " at " << frequencies[k] << " Hz";
            }
        }
    }
}

} // namespace
} // namespace orvanta
