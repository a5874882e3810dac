#include "bench/compare/Checks.h"

#include <fmt/format.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <utility>

namespace orvanta::compare {
namespace {

/// Of an impulse response, in dB.
double responseAt(double frequency, const float* response, std::size_t count, double height) {
    std::complex<double> sum;
    for (std::size_t k = 0; k < count; ++k)
        sum += static_cast<double>(response[k]) *
               std::polar(1.0, -2.0 * std::numbers::pi * frequency * static_cast<double>(k) /
                                   kSampleRate);
    return decibels(std::abs(sum) / height);
}

/// Where a band's whole gain is heard: a shelf's corner has but half of it.
double placeOf(const EQBandSetting& band) {
    switch (band.shape) {
    case EQBandSetting::Shape::lowShelf:
        return band.frequency / 2.0;
    case EQBandSetting::Shape::highShelf:
        return 20000.0;
    case EQBandSetting::Shape::peaking:
        break;
    }
    return band.frequency;
}

bool goesAlong(double measured, double setting) {
    return setting > 0.0 ? measured > setting / 2.0 : measured < setting / 2.0;
}

/// RMS of a channel's second half, when attacks are over.
double settledLevel(const float* samples, std::size_t count) {
    const std::size_t half = count / 2;
    double sum = 0.0;
    for (std::size_t k = count - half; k < count; ++k)
        sum += static_cast<double>(samples[k]) * static_cast<double>(samples[k]);
    return decibels(std::sqrt(sum / static_cast<double>(half)));
}

double levelOfTone(const ContenderFactory& make, std::size_t blockFrames, double frequency,
                   double levelDB) {
    constexpr std::size_t frames = 48000;
    const double height = ratioOf(levelDB);
    const Signal output =
        processed(*make(blockFrames), sine(frames, frequency, height, height), blockFrames);
    return settledLevel(output.left(), frames);
}

} // namespace

Check equalises(std::span<const EQBandSetting> bands) {
    return [bands](const ContenderFactory& make, std::size_t blockFrames) {
        constexpr std::size_t frames = 16384;
        constexpr float height = 0.25F;
        const auto eq = make(blockFrames);
        // Some equalisers glide to their settings.
        (void)processed(*eq, Signal(std::vector<float>(2 * frames), std::vector<float>(2 * frames)),
                        blockFrames);
        const Signal output = processed(*eq, impulse(frames, height), blockFrames);
        Finding finding{true, "dB at the bands:"};
        for (const EQBandSetting& band : bands) {
            const double frequency = placeOf(band);
            const double left =
                responseAt(frequency, output.left(), frames, static_cast<double>(height));
            const double right =
                responseAt(frequency, output.right(), frames, static_cast<double>(height));
            finding.isGood =
                finding.isGood && goesAlong(left, band.gainDB) && goesAlong(right, band.gainDB);
            finding.text += fmt::format(" {:+.1f}", left);
        }
        return finding;
    };
}

Check compresses() {
    return [](const ContenderFactory& make, std::size_t blockFrames) {
        constexpr double quietDB = -60.0;
        constexpr double loudDB = 0.0;
        Finding finding{true, "gain of loud against quiet tones, dB:"};
        for (const double frequency : {100.0, 1000.0, 5000.0}) {
            const double quiet = levelOfTone(make, blockFrames, frequency, quietDB) - quietDB;
            const double loud = levelOfTone(make, blockFrames, frequency, loudDB) - loudDB;
            finding.isGood = finding.isGood && loud < quiet - 2.0;
            finding.text += fmt::format(" {:+.1f}", loud - quiet);
        }
        return finding;
    };
}

Check limits(double ceilingDB, double toleranceDB) {
    return [=](const ContenderFactory& make, std::size_t blockFrames) {
        constexpr double loudnessDB = 0.0;
        const Signal input = music(96000, ratioOf(loudnessDB));
        const Signal output = processed(*make(blockFrames), input, blockFrames);
        const double before = decibels(input.peak());
        const double after = decibels(output.peak());
        const double loudness = decibels(output.rms());
        const bool isHeld = before > ceilingDB + 6.0 && after < ceilingDB + toleranceDB;
        const bool isThere = loudness > ceilingDB - 20.0;
        return Finding{isHeld && isThere, fmt::format("peak {:+.1f} to {:+.1f} dB, RMS {:+.1f} dB",
                                                      before, after, loudness)};
    };
}

Check crossfeeds() {
    return [](const ContenderFactory& make, std::size_t blockFrames) {
        constexpr std::size_t frames = 48000;
        const Signal output =
            processed(*make(blockFrames), sine(frames, 200.0, ratioOf(-40.0), 0.0), blockFrames);
        const double difference =
            settledLevel(output.right(), frames) - settledLevel(output.left(), frames);
        return Finding{difference > -20.0 && difference < -1.0,
                       fmt::format("left tone on the right at {:+.1f} dB", difference)};
    };
}

Check metersLoudness() {
    return [](const ContenderFactory& make, std::size_t blockFrames) {
        // At 997 Hz the weighting's own +0.69 dB and the standard's -0.691 cancel out.
        constexpr double peakDB = -16.0;
        constexpr double expected = -19.01;
        const auto meter = make(blockFrames);
        (void)processed(*meter, sine(48000, 997.0, ratioOf(peakDB), ratioOf(peakDB)), blockFrames);
        const auto loudness = meter->loudness();
        if (!loudness)
            return Finding{false, "measures no loudness"};
        return Finding{std::fabs(*loudness - expected) < 0.1,
                       fmt::format("{:.2f} LUFS of {:.2f}", *loudness, expected)};
    };
}

Check all(std::vector<Check> checks) {
    return [checks = std::move(checks)](const ContenderFactory& make, std::size_t blockFrames) {
        Finding sum{true, {}};
        for (const Check& check : checks) {
            const Finding each = check(make, blockFrames);
            sum.isGood = sum.isGood && each.isGood;
            sum.text += (sum.text.empty() ? "" : "; ") + each.text;
        }
        return sum;
    };
}

} // namespace orvanta::compare
