#pragma once

#include "core/dsp/kernels/CompressorKernels.h"
#include "core/dsp/kernels/CrossoverLoops.h"
#include "core/dsp/kernels/Finite.h"
#include "core/dsp/kernels/LaneGroup.h"

namespace orvanta {
namespace {

// Envelopes. Each is a chain of dependent operations, so they run side by side, one in a lane, and
// two vectors in flight cost no more time than one.

struct EnvelopeLanes {
    Float4 attack;
    Float4 attackRest;
    Float4 release;
    Float4 releaseRest;
    Int4 isRMS;
    Float4 state;
    Float4 highest;
};

/// Both possible next values are computed and one is chosen: the comparison and the sums then take
/// their time at once, and each result has the bits that it would have alone.
ORVANTA_INLINE Float4 followed(EnvelopeLanes& lanes, Float4 sample) noexcept {
    const Float4 value = lanes.isRMS ? sample * sample : magnitudes(sample);
    const Float4 rising = lanes.attack * lanes.state + lanes.attackRest * value;
    const Float4 falling = lanes.release * lanes.state + lanes.releaseRest * value;
    lanes.state = lanes.state < value ? rising : falling;
    lanes.highest = lanes.highest > lanes.state ? lanes.highest : lanes.state;
    return lanes.state;
}

/// Where the chains in the lanes of each vector read and write.
template <std::size_t vectors>
struct EnvelopeWays {
    const float* signals[vectors][4];
    float* envelopes[vectors][4];
};

template <std::size_t vectors>
ORVANTA_INLINE void followFour(EnvelopeLanes (&lanes)[vectors], const EnvelopeWays<vectors>& ways,
                               std::size_t t) noexcept {
    Float4 samples[vectors][4];
    for (std::size_t v = 0; v < vectors; ++v) {
        for (std::size_t lane = 0; lane < 4; ++lane)
            samples[v][lane] = load<Float4>(ways.signals[v][lane] + t);
        transpose(samples[v]);
    }
    for (std::size_t step = 0; step < 4; ++step) {
        for (std::size_t v = 0; v < vectors; ++v)
            samples[v][step] = followed(lanes[v], samples[v][step]);
    }
    for (std::size_t v = 0; v < vectors; ++v) {
        transpose(samples[v]);
        for (std::size_t lane = 0; lane < 4; ++lane)
            store(ways.envelopes[v][lane] + t, samples[v][lane]);
    }
}

template <std::size_t vectors>
ORVANTA_INLINE void followOne(EnvelopeLanes (&lanes)[vectors], const EnvelopeWays<vectors>& ways,
                              std::size_t t) noexcept {
    for (std::size_t v = 0; v < vectors; ++v) {
        Float4 samples{};
        for (std::size_t lane = 0; lane < 4; ++lane)
            samples[lane] = ways.signals[v][lane][t];
        const Float4 envelopes = followed(lanes[v], samples);
        for (std::size_t lane = 0; lane < 4; ++lane)
            ways.envelopes[v][lane][t] = envelopes[lane];
    }
}

/// Up to four chains to a vector. Lanes too many repeat the last chain in all it does.
template <std::size_t vectors>
void followIn(const EnvelopeChain* chains, std::size_t chainCount, std::size_t count) noexcept {
    EnvelopeLanes lanes[vectors];
    EnvelopeWays<vectors> ways;
    for (std::size_t k = 0; k < vectors * 4; ++k) {
        const EnvelopeChain& chain = chains[k < chainCount ? k : chainCount - 1];
        EnvelopeLanes& v = lanes[k / 4];
        v.attack[k % 4] = chain.band->attack;
        v.attackRest[k % 4] = chain.band->attackRest;
        v.release[k % 4] = chain.band->release;
        v.releaseRest[k % 4] = chain.band->releaseRest;
        v.isRMS[k % 4] = chain.band->isRMS ? -1 : 0;
        v.state[k % 4] = *chain.state;
        v.highest[k % 4] = 0.0F;
        ways.signals[k / 4][k % 4] = chain.signal;
        ways.envelopes[k / 4][k % 4] = chain.envelope;
    }
    // A copy that is never asked for a lane by number may stay in registers.
    EnvelopeLanes running[vectors];
    for (std::size_t v = 0; v < vectors; ++v)
        running[v] = lanes[v];
    std::size_t t = 0;
    for (; t + 4 <= count; t += 4)
        followFour(running, ways, t);
    for (; t < count; ++t)
        followOne(running, ways, t);
    for (std::size_t k = 0; k < chainCount; ++k) {
        *chains[k].state = running[k / 4].state[k % 4];
        *chains[k].highest = running[k / 4].highest[k % 4];
    }
}

void follow(const EnvelopeChain* chains, std::size_t chainCount, std::size_t count) noexcept {
    if (chainCount <= 4)
        followIn<1>(chains, chainCount, count);
    else
        followIn<2>(chains, chainCount, count);
}

// The gain computer has no memory, so its lanes are neighbours in time.

struct GainCurve {
    FloatLanes floor;
    FloatLanes decibels;
    FloatLanes threshold;
    FloatLanes kneeLow;
    FloatLanes kneeHigh;
    FloatLanes ratio;
    FloatLanes slope;
};

/// In dB, never above 0. Above the knee and within it something is divided, never both: one
/// division does for the two.
template <std::size_t count>
ORVANTA_INLINE FloatGroup<count> gainsDB(const GainCurve& curve,
                                         const FloatGroup<count>& envelope) noexcept {
    const auto isAudible = envelope > curve.floor;
    const auto level =
        choose(isAudible, log2Of(choose(isAudible, envelope, curve.floor)) * curve.decibels,
               kSilentLevelDB);
    const auto over = level - curve.threshold;
    const auto intoKnee = over + kHalfKneeDB;
    const auto isAbove = level > curve.kneeHigh;
    const auto quotient = choose(isAbove, over, (intoKnee * curve.slope) * intoKnee) /
                          choose(isAbove, curve.ratio, 6.0F);
    const auto gain = choose(isAbove, (quotient + curve.threshold) - level, quotient);
    return choose(level < curve.kneeLow, 0.0F, gain);
}

float gains(float* envelope, std::size_t count, const CompressorBand& band) noexcept {
    constexpr std::size_t kVectors = 4;
    constexpr std::size_t kStep = kVectors * kLanes;
    static_assert(kStep <= kGainPadding);
    const FloatLanes zero{};
    const GainCurve curve{zero + band.floor,   zero + band.decibels, zero + band.threshold,
                          zero + band.kneeLow, zero + band.kneeHigh, zero + band.ratio,
                          zero + band.slope};
    const FloatLanes makeup = zero + band.makeup;
    // Filled up with what is there already, which leaves the deepest reduction what it is.
    for (std::size_t t = count; t % kStep != 0; ++t)
        envelope[t] = envelope[count - 1];

    FloatLanes lowest = zero;
    for (std::size_t t = 0; t < count; t += kStep) {
        FloatGroup<kVectors> group;
        for (std::size_t k = 0; k < kVectors; ++k)
            group.of[k] = load<FloatLanes>(envelope + t + k * kLanes);
        const auto decibels = gainsDB(curve, group);
        const auto linear = exp2Of(decibels * kExponentPerDB) * makeup;
        for (std::size_t k = 0; k < kVectors; ++k) {
            lowest = decibels.of[k] < lowest ? decibels.of[k] : lowest;
            store(envelope + t + k * kLanes, linear.of[k]);
        }
    }
    float deepest = 0.0F;
    for (int lane = 0; lane < kLanes; ++lane)
        deepest = lowest[lane] < deepest ? lowest[lane] : deepest;
    return 0.0F - deepest;
}

bool mix(const GainedSignal (&bands)[kCompressorBandCount], float* output,
         std::size_t count) noexcept {
    const GainedSignal low = bands[0];
    const GainedSignal middle = bands[1];
    const GainedSignal high = bands[2];
    // Zero as long as everything is finite, and no number ever after.
    FloatLanes doubts{};
    std::size_t t = 0;
    for (; t + kLanes <= count; t += kLanes) {
        const FloatLanes sum =
            load<FloatLanes>(low.signal + t) * load<FloatLanes>(low.gain + t) +
            load<FloatLanes>(middle.signal + t) * load<FloatLanes>(middle.gain + t) +
            load<FloatLanes>(high.signal + t) * load<FloatLanes>(high.gain + t);
        doubts += sum * 0.0F;
        store(output + t, sum);
    }
    float doubt = 0.0F;
    for (; t < count; ++t) {
        output[t] = low.signal[t] * low.gain[t] + middle.signal[t] * middle.gain[t] +
                    high.signal[t] * high.gain[t];
        doubt += output[t] * 0.0F;
    }
    for (int lane = 0; lane < kLanes; ++lane)
        doubt += doubts[lane];
    return doubt == 0.0F;
}

constexpr CompressorKernels kCompressorLoops{split, splitPair, follow, gains, mix};

} // namespace
} // namespace orvanta
