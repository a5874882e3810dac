#pragma once

#include "core/dsp/kernels/Finite.h"
#include "core/dsp/kernels/InTurn.h"
#include "core/dsp/kernels/Lanes.h"
#include "core/dsp/kernels/LevelKernels.h"

namespace orvanta {
namespace {

/// Jumps up to a higher level and falls back slowly. The one thing in a limiter that must go from
/// sample to sample; all else is done for four at a time in its shadow.
struct PeakEnvelope {
    Float4 release;

    ORVANTA_INLINE Float4 operator()(Float4 envelope, Float4 level) const noexcept {
        return envelope < level ? level : envelope * release;
    }
};

/// The gains of four samples, and the smallest ones so far.
struct LimiterGain {
    Float4 ceiling;
    Float4 smallest;

    ORVANTA_INLINE Float4 operator()(Float4 envelope) noexcept {
        const Float4 unity = Float4{} + 1.0F;
        const Float4 gain = envelope > ceiling ? ceiling / envelope : unity;
        smallest = gain < smallest ? gain : smallest;
        return gain;
    }

    [[nodiscard]] float minimum() const noexcept {
        float least = smallest[0];
        for (int lane = 1; lane < 4; ++lane)
            least = smallest[lane] < least ? smallest[lane] : least;
        return least;
    }
};

/// Puts new samples into the line, then takes the delayed ones out of it: with a look-ahead below
/// four these are in part the same.
ORVANTA_INLINE Float4 throughLookAhead(Float4 samples, float* line,
                                       std::size_t lookAhead) noexcept {
    store(line + lookAhead, samples);
    return load<Float4>(line);
}

/// The samples from `begin` on, one by one.
void limitRest(float* samples, std::size_t begin, std::size_t count,
               const LimiterSettings& settings, LimiterRun& run) noexcept {
    const float ceiling = settings.ceiling;
    const float release = settings.release;
    float* const line = run.line;
    float* const newest = line + settings.lookAhead;
    float envelope = run.envelope;
    float smallest = run.minGain;
    for (std::size_t k = begin; k < count; ++k) {
        const float sample = finiteOnly(samples[k]);
        const float level = __builtin_fabsf(sample);
        envelope = envelope < level ? level : envelope * release;
        const float gain = envelope > ceiling ? ceiling / envelope : 1.0F;
        smallest = gain < smallest ? gain : smallest;
        newest[k] = sample;
        samples[k] = gain * line[k];
    }
    run.envelope = envelope;
    run.minGain = smallest;
}

void limit(float* samples, std::size_t count, const LimiterSettings& settings,
           LimiterRun& run) noexcept {
    const std::size_t lookAhead = settings.lookAhead;
    const PeakEnvelope next{Float4{} + settings.release};
    LimiterGain gain{Float4{} + settings.ceiling, Float4{} + run.minGain};
    Float4 envelope = Float4{} + run.envelope;
    float* const line = run.line;

    std::size_t k = 0;
    for (; k + 4 <= count; k += 4) {
        const Float4 input = finiteOnly(load<Float4>(samples + k));
        const Float4 envelopes = inTurn(next, envelope, magnitudes(input));
        store(samples + k, gain(envelopes) * throughLookAhead(input, line + k, lookAhead));
    }

    run.envelope = envelope[0];
    run.minGain = gain.minimum();
    limitRest(samples, k, count, settings, run);
}

void limitPair(float* left, float* right, std::size_t count, const LimiterSettings& settings,
               LimiterRun& leftRun, LimiterRun& rightRun) noexcept {
    const std::size_t lookAhead = settings.lookAhead;
    const PeakEnvelope next{Float4{} + settings.release};
    LimiterGain leftGain{Float4{} + settings.ceiling, Float4{} + leftRun.minGain};
    LimiterGain rightGain{Float4{} + settings.ceiling, Float4{} + rightRun.minGain};
    Float4 envelope{leftRun.envelope, rightRun.envelope, 0.0F, 0.0F};
    float* const leftLine = leftRun.line;
    float* const rightLine = rightRun.line;

    std::size_t k = 0;
    for (; k + 4 <= count; k += 4) {
        const Float4 leftInput = finiteOnly(load<Float4>(left + k));
        const Float4 rightInput = finiteOnly(load<Float4>(right + k));
        const FourFrames envelopes =
            inTurn(next, envelope, interleaved(magnitudes(leftInput), magnitudes(rightInput)));
        store(left + k,
              leftGain(leftOf(envelopes)) * throughLookAhead(leftInput, leftLine + k, lookAhead));
        store(right + k, rightGain(rightOf(envelopes)) *
                             throughLookAhead(rightInput, rightLine + k, lookAhead));
    }

    leftRun.envelope = envelope[0];
    leftRun.minGain = leftGain.minimum();
    limitRest(left, k, count, settings, leftRun);
    rightRun.envelope = envelope[1];
    rightRun.minGain = rightGain.minimum();
    limitRest(right, k, count, settings, rightRun);
}

} // namespace
} // namespace orvanta
