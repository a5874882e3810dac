#include "core/dsp/CompressorDesign.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace orvanta {
namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kTwiceQ = 2.8284271247461903;

/// An envelope falls behind the knee by more than all rounding on the way there could make up for.
constexpr double kIdleMargin = 0.9999;

CrossoverRow dividedBy(double a0, CrossoverRow row) {
    return {row.b0 / a0, row.b1 / a0, row.b2 / a0, row.a1 / a0, row.a2 / a0};
}

/// What is left of an envelope after one sample.
float decay(float milliseconds, double sampleRate) {
    const double samples = static_cast<double>(milliseconds) / 1000.0 * sampleRate;
    return static_cast<float>(samples >= 1.0 ? std::exp(-1.0 / samples) : std::exp(-1.0));
}

bool compresses(const CompressorBandSettings& settings) {
    return settings.ratio > kSmallestCompressorRatio;
}

float makeupOf(const CompressorBandSettings& settings) {
    const float exponent =
        compresses(settings) && settings.autoMakeup
            ? (1.0F - 1.0F / settings.ratio) * settings.threshold * -0.5F * kExponentPerDB
            : settings.makeupGain * kExponentPerDB;
    return std::exp2(exponent);
}

std::size_t lookAheadOf(const CompressorBandSettings& settings, double sampleRate) {
    constexpr float kBeyondIntegers = 0x1p63F;
    const float samples =
        std::max(settings.lookaheadMs, 0.0F) / 1000.0F * static_cast<float>(sampleRate);
    // Written so that what is no number fails as well.
    if (!(samples < kBeyondIntegers)) {
        (void)std::fprintf(stderr, "a compressor's look-ahead of %g ms at %g Hz is no delay\n",
                           static_cast<double>(settings.lookaheadMs), sampleRate);
        std::abort();
    }
    if (!(samples >= 1.0F)) // a rate below 0 gives a negative delay
        return 0;
    return samples < static_cast<float>(kMaxLookaheadSamples) ? static_cast<std::size_t>(samples)
                                                              : kMaxLookaheadSamples - 1;
}

/// The envelope of silence is at -120 dB, so it is idle only where that is below the knee.
float idleBelow(const CompressorBand& band) {
    if (!(band.kneeLow > kSilentLevelDB))
        return 0.0F;
    const double kneeStart =
        std::exp2(static_cast<double>(band.kneeLow) / static_cast<double>(band.decibels));
    return static_cast<float>(std::min(kIdleMargin * kneeStart, static_cast<double>(FLT_MAX)));
}

} // namespace

Crossover crossoverAt(double sampleRate) noexcept {
    Crossover crossover{};
    for (std::size_t k = 0; k < kCompressorCrossoverFreqs.size(); ++k) {
        const double w0 = kCompressorCrossoverFreqs[k] * kTwoPi / sampleRate;
        const double c = std::cos(w0);
        const double alpha = std::sin(w0) / kTwiceQ;
        const double a0 = 1.0 + alpha;
        const double a1 = -2.0 * c;
        const double a2 = 1.0 - alpha;
        crossover.lowPass[k] = dividedBy(a0, {(1.0 - c) / 2.0, 1.0 - c, (1.0 - c) / 2.0, a1, a2});
        crossover.highPass[k] =
            dividedBy(a0, {(1.0 + c) / 2.0, -(1.0 + c), (1.0 + c) / 2.0, a1, a2});
    }
    return crossover;
}

CompressorBand compressorBandOf(const CompressorBandSettings& settings,
                                double sampleRate) noexcept {
    const bool isRMS = settings.detectionMode == DetectionMode::rms;
    CompressorBand band{};
    band.attack = decay(settings.attackMs, sampleRate);
    band.attackRest = 1.0F - band.attack;
    band.release = decay(settings.releaseMs, sampleRate);
    band.releaseRest = 1.0F - band.release;
    band.isRMS = isRMS;
    band.floor = isRMS ? 1e-20F : 1e-10F;
    band.decibels = isRMS ? 3.0103F : 6.0206F;
    band.threshold = settings.threshold;
    band.kneeLow = settings.threshold - kHalfKneeDB;
    band.kneeHigh = settings.threshold + kHalfKneeDB;
    band.ratio = settings.ratio;
    band.slope = 1.0F / settings.ratio - 1.0F;
    band.makeup = makeupOf(settings);
    band.idleBelow = idleBelow(band);
    band.isActive = compresses(settings);
    band.lookAheadSamples = lookAheadOf(settings, sampleRate);
    return band;
}

} // namespace orvanta
