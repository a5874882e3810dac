#pragma once

#include "core/dsp/kernels/EQKernels.h"
#include "core/dsp/kernels/Lanes.h"

/// The cascade runs as a systolic array. One filter alone cannot go faster than its own recurrence
/// (a product and two differences, one after the other), so the filters of all bands work side by
/// side, each two samples behind the one before it:
///
///     step t:   band 0 on sample t,  band 1 on sample t-2,  band 2 on sample t-4, …
///
/// The input of a band is then what the band before it put out two steps ago, its y2: nothing that
/// is computed in a step depends on anything else of the same step, and all of it fits into a few
/// vectors. Every band still does the same operations in the same order on the same numbers as if
/// it ran alone.
namespace orvanta {
namespace {

template <std::size_t count>
struct EQChannels {
    float* samples[count];
    EQChannelHistory* histories[count];
};

/// One sample through one filter.
ORVANTA_INLINE float filtered(float x, const EQRow& row, EQHistory& history) noexcept {
    const float y = x * row.b0 + history.x1 * row.b1 + history.x2 * row.b2 - history.y1 * row.a1 -
                    history.y2 * row.a2;
    history = {history.x1, x, y, history.y1};
    return y;
}

/// For blocks that are too short to fill the array.
ORVANTA_INLINE void filterOneByOne(float* samples, std::size_t count, const EQCascade& cascade,
                                   std::size_t firstBand, std::size_t bandCount,
                                   EQChannelHistory& channel) noexcept {
    for (std::size_t k = firstBand; k < firstBand + bandCount; ++k) {
        const EQRow row = cascade.row[k];
        EQHistory history = channel.bands[cascade.band[k]];
        for (std::size_t t = 0; t < count; ++t)
            samples[t] = filtered(samples[t], row, history);
        channel.bands[cascade.band[k]] = history;
    }
}

/// The lanes of `y` moved up by `channels`; the lanes that this frees come from `in`.
template <std::size_t channels>
ORVANTA_INLINE Lanes<float, 4> movedUp(Lanes<float, 4> in, Lanes<float, 4> y) noexcept {
    if constexpr (channels == 1) {
        // In one go GCC makes five instructions of it for SSE2.
        const Float4 up = __builtin_shufflevector(y, y, 0, 0, 1, 2);
        return __builtin_shufflevector(up, in, 4, 1, 2, 3);
    } else {
        return __builtin_shufflevector(in, y, 0, 1, 4, 5);
    }
}

#if defined(__AVX2__)
template <std::size_t channels>
ORVANTA_INLINE Lanes<float, 8> movedUp(Lanes<float, 8> in, Lanes<float, 8> y) noexcept {
    if constexpr (channels == 1)
        return __builtin_shufflevector(in, y, 0, 8, 9, 10, 11, 12, 13, 14);
    else
        return __builtin_shufflevector(in, y, 0, 1, 8, 9, 10, 11, 12, 13);
}
#endif

/// A vector's lanes, four at a time.
ORVANTA_INLINE Lanes<float, 4> fromQuads(const Float4 (&quads)[1]) noexcept {
    return quads[0];
}

ORVANTA_INLINE void toQuads(Lanes<float, 4> vector, Float4 (&quads)[1]) noexcept {
    quads[0] = vector;
}

#if defined(__AVX2__)
ORVANTA_INLINE Lanes<float, 8> fromQuads(const Float4 (&quads)[2]) noexcept {
    return __builtin_shufflevector(quads[0], quads[1], 0, 1, 2, 3, 4, 5, 6, 7);
}

ORVANTA_INLINE void toQuads(Lanes<float, 8> vector, Float4 (&quads)[2]) noexcept {
    quads[0] = __builtin_shufflevector(vector, vector, 0, 1, 2, 3);
    quads[1] = __builtin_shufflevector(vector, vector, 4, 5, 6, 7);
}
#endif

/// `bandCount` filters for `channels` channels in vectors of `lanes` lanes. A vector has room for
/// some bands, a group of `channels` lanes each. Going from band to band means going from vector to
/// vector, then to the next group of the first one: so only one vector's lanes ever have to move.
template <std::size_t lanes, std::size_t channels, std::size_t bandCount>
class SystolicEQ {
    static constexpr std::size_t kGroups = lanes / channels;
    static constexpr std::size_t kVectors = (bandCount + kGroups - 1) / kGroups;
    static constexpr std::size_t kLastVector = (bandCount - 1) % kVectors;
    static constexpr std::size_t kLastGroup = (bandCount - 1) / kVectors;

    using Vector = Lanes<float, lanes>;
    using Mask = Lanes<std::int32_t, lanes>;

public:
    /// How many samples the last band is behind the first.
    static constexpr std::size_t kLag = 2 * (bandCount - 1);

    /// `count` is at least `kLag`; the filters are those of the cascade from `firstBand` on.
    static void run(const EQChannels<channels>& on, std::size_t count, const EQCascade& cascade,
                    std::size_t firstBand) noexcept {
        SystolicEQ array;
        array.begin(on, cascade, firstBand);
        array.fill(on);
        array.flow(on, count);
        array.drain(on, count);
        array.end(on, cascade, firstBand);
    }

private:
    /// Input and output of one step, all bands.
    struct Sample {
        Vector x[kVectors];
        Vector y[kVectors];
    };

    struct Rows {
        Vector b0[kVectors], b1[kVectors], b2[kVectors], a1[kVectors], a2[kVectors];
    };

    /// The band in that place, `bandCount` or more where there is none.
    static constexpr std::size_t bandAt(std::size_t vector, std::size_t group) {
        return group * kVectors + vector;
    }

    /// Reads a record of four numbers for each lane of a vector; `recordOf` tells where it is.
    /// Gives the vectors of the first numbers, of the second, and so on, 0 in lanes without a band.
    template <class RecordOf>
    ORVANTA_INLINE static void gather(std::size_t vector, RecordOf recordOf,
                                      Vector (&fields)[4]) noexcept {
        Float4 quads[4][lanes / 4];
        for (std::size_t quad = 0; quad < lanes / 4; ++quad) {
            Float4 records[4]{};
            for (std::size_t k = 0; k < 4; ++k) {
                const std::size_t lane = 4 * quad + k;
                const std::size_t band = bandAt(vector, lane / channels);
                if (band < bandCount)
                    records[k] = load<Float4>(recordOf(band, lane % channels));
            }
            transpose(records);
            for (std::size_t field = 0; field < 4; ++field)
                quads[field][quad] = records[field];
        }
        for (std::size_t field = 0; field < 4; ++field)
            fields[field] = fromQuads(quads[field]);
    }

    /// The other way round.
    template <class RecordOf>
    ORVANTA_INLINE static void scatter(const Vector (&fields)[4], std::size_t vector,
                                       RecordOf recordOf) noexcept {
        Float4 quads[4][lanes / 4];
        for (std::size_t field = 0; field < 4; ++field)
            toQuads(fields[field], quads[field]);
        for (std::size_t quad = 0; quad < lanes / 4; ++quad) {
            Float4 records[4];
            for (std::size_t field = 0; field < 4; ++field)
                records[field] = quads[field][quad];
            transpose(records);
            for (std::size_t k = 0; k < 4; ++k) {
                const std::size_t lane = 4 * quad + k;
                const std::size_t band = bandAt(vector, lane / channels);
                if (band < bandCount)
                    store(recordOf(band, lane % channels), records[k]);
            }
        }
    }

    ORVANTA_INLINE void begin(const EQChannels<channels>& on, const EQCascade& cascade,
                              std::size_t firstBand) noexcept {
        for (std::size_t v = 0; v < kVectors; ++v) {
            Vector fields[4];
            gather(
                v, [&](std::size_t band, std::size_t) { return &cascade.row[firstBand + band]; },
                fields);
            rows_.b0[v] = fields[0];
            rows_.b1[v] = fields[1];
            rows_.b2[v] = fields[2];
            rows_.a1[v] = fields[3];
            gather(
                v, [&](std::size_t band, std::size_t) { return &cascade.row[firstBand + band].a2; },
                fields);
            rows_.a2[v] = fields[0];
            gather(
                v,
                [&](std::size_t band, std::size_t channel) {
                    return &on.histories[channel]->bands[cascade.band[firstBand + band]];
                },
                fields);
            savedBefore_.x[v] = fields[0];
            savedLast_.x[v] = fields[1];
            savedLast_.y[v] = fields[2];
            savedBefore_.y[v] = fields[3];
        }
        for (std::size_t lane = 0; lane < lanes; ++lane)
            groupOfLane_[lane] = static_cast<std::int32_t>(lane / channels);
    }

    ORVANTA_INLINE void end(const EQChannels<channels>& on, const EQCascade& cascade,
                            std::size_t firstBand) const noexcept {
        for (std::size_t v = 0; v < kVectors; ++v) {
            const Vector fields[4]{savedBefore_.x[v], savedLast_.x[v], savedLast_.y[v],
                                   savedBefore_.y[v]};
            scatter(fields, v, [&](std::size_t band, std::size_t channel) {
                return &on.histories[channel]->bands[cascade.band[firstBand + band]];
            });
        }
    }

    /// One step of all bands. The sample before the previous one gives way to the new one: when the
    /// two change places from step to step, nothing moves from register to register.
    ORVANTA_INLINE void step(Vector in, const Sample& previous, Sample& oldest) const noexcept {
        const Vector first = movedUp<channels>(in, oldest.y[kVectors - 1]);
#pragma GCC unroll 8
        for (std::size_t done = 0; done < kVectors; ++done) {
            // Downwards, so that what the vector before put out two steps ago is still there.
            const std::size_t v = kVectors - 1 - done;
            const Vector x = v > 0 ? oldest.y[v - 1] : first;
            oldest.y[v] = x * rows_.b0[v] + previous.x[v] * rows_.b1[v] +
                          oldest.x[v] * rows_.b2[v] - previous.y[v] * rows_.a1[v] -
                          oldest.y[v] * rows_.a2[v];
            oldest.x[v] = x;
        }
    }

    ORVANTA_INLINE static Vector input(const EQChannels<channels>& on, std::size_t t) noexcept {
        Vector in{};
        for (std::size_t channel = 0; channel < channels; ++channel)
            in[channel] = on.samples[channel][t];
        return in;
    }

    ORVANTA_INLINE static void output(const Sample& newest, const EQChannels<channels>& on,
                                      std::size_t t) noexcept {
        for (std::size_t channel = 0; channel < channels; ++channel)
            on.samples[channel][t] = newest.y[kLastVector][kLastGroup * channels + channel];
    }

    /// Lets a band begin: whatever its lanes computed before its first sample is overwritten.
    ORVANTA_INLINE void enter(std::size_t v, std::size_t group, Sample& last,
                              Sample& before) const noexcept {
        const Mask entering = groupOfLane_ == static_cast<std::int32_t>(group);
        last.x[v] = entering ? savedLast_.x[v] : last.x[v];
        last.y[v] = entering ? savedLast_.y[v] : last.y[v];
        before.x[v] = entering ? savedBefore_.x[v] : before.x[v];
        before.y[v] = entering ? savedBefore_.y[v] : before.y[v];
    }

    /// Lets a band end: whatever its lanes compute after its last sample is not kept.
    ORVANTA_INLINE void leave(std::size_t v, std::size_t group, const Sample& last,
                              const Sample& before) noexcept {
        const Mask leaving = groupOfLane_ == static_cast<std::int32_t>(group);
        savedLast_.x[v] = leaving ? last.x[v] : savedLast_.x[v];
        savedLast_.y[v] = leaving ? last.y[v] : savedLast_.y[v];
        savedBefore_.x[v] = leaving ? before.x[v] : savedBefore_.x[v];
        savedBefore_.y[v] = leaving ? before.y[v] : savedBefore_.y[v];
    }

    /// Steps 0 ..< kLag: one band after the other begins, the last one with the step after these.
    ORVANTA_INLINE void fill(const EQChannels<channels>& on) noexcept {
        Sample last = savedLast_;
        Sample before = savedBefore_;
        std::size_t t = 0;
        for (std::size_t group = 0; group <= kLastGroup; ++group) {
#pragma GCC unroll 8
            for (std::size_t v = 0; v < kVectors; ++v) {
                enter(v, group, last, before);
                if (bandAt(v, group) == bandCount - 1)
                    break;
                step(input(on, t), last, before);
                step(input(on, t + 1), before, last);
                t += 2;
            }
        }
        last_ = last;
        before_ = before;
    }

    /// Steps kLag ..< count, all bands at work.
    ORVANTA_INLINE void flow(const EQChannels<channels>& on, std::size_t count) noexcept {
        Sample last = last_;
        Sample before = before_;
        std::size_t t = kLag;
        for (; t + 2 <= count; t += 2) {
            step(input(on, t), last, before);
            output(before, on, t - kLag);
            step(input(on, t + 1), before, last);
            output(last, on, t + 1 - kLag);
        }
        if (t < count) {
            step(input(on, t), last, before);
            output(before, on, t - kLag);
            last_ = before;
            before_ = last;
        } else {
            last_ = last;
            before_ = before;
        }
    }

    /// Steps count ..< count + kLag: one band after the other ends.
    ORVANTA_INLINE void drain(const EQChannels<channels>& on, std::size_t count) noexcept {
        Sample last = last_;
        Sample before = before_;
        std::size_t t = count - kLag;
        for (std::size_t group = 0; group <= kLastGroup; ++group) {
#pragma GCC unroll 8
            for (std::size_t v = 0; v < kVectors; ++v) {
                leave(v, group, last, before);
                if (bandAt(v, group) == bandCount - 1)
                    break;
                step(Vector{}, last, before);
                output(before, on, t);
                step(Vector{}, before, last);
                output(last, on, t + 1);
                t += 2;
            }
        }
    }

    Rows rows_;
    /// The histories, of the bands that have not begun and of those that have ended.
    Sample savedLast_;
    Sample savedBefore_;
    Sample last_;
    Sample before_;
    Mask groupOfLane_{};
};

/// More vectors than this and the states of a step no longer fit into sixteen registers.
constexpr std::size_t kMostVectors = 3;

template <std::size_t lanes, std::size_t channels, std::size_t bandCount>
ORVANTA_INLINE void runPass(const EQChannels<channels>& on, std::size_t count,
                            const EQCascade& cascade, std::size_t firstBand) noexcept {
    using Array = SystolicEQ<lanes, channels, bandCount>;
    if (count >= Array::kLag) {
        Array::run(on, count, cascade, firstBand);
        return;
    }
    for (std::size_t channel = 0; channel < channels; ++channel)
        filterOneByOne(on.samples[channel], count, cascade, firstBand, bandCount,
                       *on.histories[channel]);
}

/// The whole cascade, in as few passes as there is room for.
template <std::size_t lanes, std::size_t channels>
ORVANTA_INLINE void runCascade(const EQChannels<channels>& on, std::size_t count,
                               const EQCascade& cascade) noexcept {
    constexpr std::size_t kRoom = kMostVectors * lanes / channels;
    constexpr std::size_t kMost = kRoom < kMostCascadedBands ? kRoom : kMostCascadedBands;
    for (std::size_t done = 0; done < cascade.count;) {
        const std::size_t left = cascade.count - done;
        const std::size_t bands = left < kMost ? left : kMost;
        switch (bands) {
#define ORVANTA_PASS(bandCount)                                                                    \
    case bandCount:                                                                                \
        if constexpr ((bandCount) <= kMost)                                                        \
            runPass<lanes, channels, (bandCount)>(on, count, cascade, done);                       \
        break;
            ORVANTA_PASS(1)
            ORVANTA_PASS(2)
            ORVANTA_PASS(3)
            ORVANTA_PASS(4)
            ORVANTA_PASS(5)
            ORVANTA_PASS(6)
            ORVANTA_PASS(7)
            ORVANTA_PASS(8)
            ORVANTA_PASS(9)
            ORVANTA_PASS(10)
#undef ORVANTA_PASS
        default:
            break;
        }
        done += bands;
    }
}

void equaliseMono(float* samples, std::size_t count, const EQCascade& cascade,
                  EQChannelHistory& history) noexcept {
    runCascade<kLanes, 1>({{samples}, {&history}}, count, cascade);
}

void equalisePair(float* left, float* right, std::size_t count, const EQCascade& cascade,
                  EQChannelHistory& leftHistory, EQChannelHistory& rightHistory) noexcept {
    runCascade<kLanes, 2>({{left, right}, {&leftHistory, &rightHistory}}, count, cascade);
}

constexpr EQKernels kEQLoops{equaliseMono, equalisePair};

} // namespace
} // namespace orvanta
