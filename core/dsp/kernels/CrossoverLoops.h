#pragma once

#include "core/dsp/kernels/CompressorKernels.h"
#include "core/dsp/kernels/Lanes.h"

/// The compressor's three-way split. A section of a filter spends its time waiting for its own last
/// result, so as many as possible go side by side: low-pass and high-pass of a crossover in the
/// lanes of a vector, for one channel or for two, and the second section of each in another vector,
/// one sample behind the first.
///
/// The upper crossover's high-pass filters the middle band, which is what the low-pass beside it
/// gives. It goes a few samples behind and reads them from memory: neither has to wait for the
/// other then.
namespace orvanta {
namespace {

/// How many samples the high-pass at 4 kHz is behind the low-pass.
constexpr std::ptrdiff_t kUpperLag = 8;

static_assert(kBandSignalMargin > kUpperLag + 1, "cascades write before and behind the block");

/// One channel in two lanes: low-pass, high-pass.
struct MonoLanes {
    using Doubles = Double2;
    static constexpr std::size_t kChannels = 1;

    static ORVANTA_INLINE Doubles widened(Float4 lanes) noexcept { return widenLow(lanes); }

    /// Sample `t` of each signal, the lower ones in the lower lanes.
    static ORVANTA_INLINE Float4 get(const float* const (&lower)[1], const float* const (&upper)[1],
                                     std::ptrdiff_t t) noexcept {
        return Float4{lower[0][t], upper[0][t], 0.0F, 0.0F};
    }

    /// Two samples of each signal.
    static ORVANTA_INLINE void put(float* const (&lower)[1], float* const (&upper)[1],
                                   std::ptrdiff_t t, Float4 first, Float4 second) noexcept {
        const auto both = bitCast<Double2>(__builtin_shufflevector(first, second, 0, 4, 1, 5));
        store(lower[0] + t, both[0]);
        store(upper[0] + t, both[1]);
    }
};

#if defined(__AVX2__)
/// Two channels in four lanes: low-pass left and right, high-pass left and right.
struct PairLanes {
    using Doubles = Double4;
    static constexpr std::size_t kChannels = 2;

    static ORVANTA_INLINE Doubles widened(Float4 lanes) noexcept { return widen(lanes); }

    static ORVANTA_INLINE Float4 get(const float* const (&lower)[2], const float* const (&upper)[2],
                                     std::ptrdiff_t t) noexcept {
        return Float4{lower[0][t], lower[1][t], upper[0][t], upper[1][t]};
    }

    static ORVANTA_INLINE void put(float* const (&lower)[2], float* const (&upper)[2],
                                   std::ptrdiff_t t, Float4 first, Float4 second) noexcept {
        const auto low = bitCast<Double2>(__builtin_shufflevector(first, second, 0, 4, 1, 5));
        const auto high = bitCast<Double2>(__builtin_shufflevector(first, second, 2, 6, 3, 7));
        store(lower[0] + t, low[0]);
        store(lower[1] + t, low[1]);
        store(upper[0] + t, high[0]);
        store(upper[1] + t, high[1]);
    }
};
#endif

/// Where a cascade's signals come from and go to. At step t sample t goes in.
template <class Setup>
struct CascadeSignals {
    const float* lowerIn[Setup::kChannels];
    const float* upperIn[Setup::kChannels];
    float* lowerOut[Setup::kChannels];
    float* upperOut[Setup::kChannels];
};

/// One crossover: the low-pass in the lower lanes, the high-pass in the upper lanes, two sections
/// each.
template <class Setup>
class Cascade {
public:
    static constexpr std::size_t kChannels = Setup::kChannels;
    using Signals = CascadeSignals<Setup>;
    using States = CrossoverState* const (&)[kChannels];

    ORVANTA_INLINE Cascade(const Crossover& crossover, std::size_t index, States states) noexcept
        : states_(states), index_(index) {
        for (std::size_t lane = 0; lane < 2 * kChannels; ++lane) {
            const CrossoverRow& row =
                lane < kChannels ? crossover.lowPass[index] : crossover.highPass[index];
            row_.b0[lane] = row.b0;
            row_.b1[lane] = row.b1;
            row_.b2[lane] = row.b2;
            row_.a1[lane] = row.a1;
            row_.a2[lane] = row.a2;
        }
        memory_.between = Float4{};
        take(0, false);
        take(0, true);
        take(1, false);
        take(1, true);
    }

    /// All lanes work all the time. States are put in when a section is about to meet its first
    /// sample and taken out when it has met the last; what it makes of others is of no use.
    ORVANTA_INLINE void run(const Signals& signals, std::ptrdiff_t count) noexcept {
        start(signals);
        steps(signals, 1, count);
        leave(0, false);
        leave(0, true);
        finish(signals, count);
        leave(1, false);
        leave(1, true);
    }

    /// The same with the upper lanes `kUpperLag` samples behind; at least two samples more. May
    /// read from where it writes.
    ORVANTA_INLINE void runWithLag(const Signals& signals, std::ptrdiff_t count) noexcept {
        start(signals);
        steps(signals, 1, kUpperLag);
        take(0, true);
        steps(signals, kUpperLag, kUpperLag + 1);
        take(1, true);
        steps(signals, kUpperLag + 1, count);
        leave(0, false);
        steps(signals, count, count + 1);
        leave(1, false);
        steps(signals, count + 1, count + kUpperLag);
        leave(0, true);
        finish(signals, count + kUpperLag);
        leave(1, true);
    }

private:
    using Doubles = typename Setup::Doubles;

    struct Row {
        Doubles b0;
        Doubles b1;
        Doubles b2;
        Doubles a1;
        Doubles a2;
    };

    /// The last two inputs and outputs of a section. Which is the newer one alternates with the
    /// steps, so that nothing needs to be moved.
    struct Section {
        Doubles x[2];
        Doubles y[2];
    };

    struct Memory {
        Section first;
        Section second;
        Float4 between; ///< what the first section gave in the last step
    };

    template <std::size_t newer>
    static ORVANTA_INLINE Float4 filtered(const Row& row, Section& section, Float4 input) noexcept {
        constexpr std::size_t kOlder = 1 - newer;
        const Doubles x = Setup::widened(input);
        const Doubles y = row.b0 * x + row.b1 * section.x[newer] + row.b2 * section.x[kOlder] -
                          row.a1 * section.y[newer] - row.a2 * section.y[kOlder];
        section.x[kOlder] = x;
        section.y[kOlder] = y;
        return narrow(y);
    }

    /// What the second section gives, for the sample before.
    template <std::size_t newer>
    static ORVANTA_INLINE Float4 step(const Row& row, Memory& memory, Float4 input) noexcept {
        const Float4 output = filtered<newer>(row, memory.second, memory.between);
        memory.between = filtered<newer>(row, memory.first, input);
        return output;
    }

    /// Step 0, which leaves the second section alone.
    ORVANTA_INLINE void start(const Signals& signals) noexcept {
        memory_.between =
            filtered<0>(row_, memory_.first, Setup::get(signals.lowerIn, signals.upperIn, 0));
        swap(memory_.first);
    }

    ORVANTA_INLINE void steps(const Signals& given, std::ptrdiff_t t, std::ptrdiff_t end) noexcept {
        // Copies that nobody else can see may stay in registers.
        const Signals signals = given;
        const Row row = row_;
        Memory memory = memory_;
        for (; t + 1 < end; t += 2) {
            const Float4 first =
                step<0>(row, memory, Setup::get(signals.lowerIn, signals.upperIn, t));
            const Float4 second =
                step<1>(row, memory, Setup::get(signals.lowerIn, signals.upperIn, t + 1));
            Setup::put(signals.lowerOut, signals.upperOut, t - 1, first, second);
        }
        memory_ = memory;
        if (t < end)
            single(signals, t, Setup::get(signals.lowerIn, signals.upperIn, t));
    }

    /// The last step, which has no sample for the first section.
    ORVANTA_INLINE void finish(const Signals& signals, std::ptrdiff_t t) noexcept {
        single(signals, t, Float4{});
    }

    ORVANTA_INLINE void single(const Signals& signals, std::ptrdiff_t t, Float4 input) noexcept {
        const Float4 output = step<0>(row_, memory_, input);
        // The second sample is written over by the next step.
        Setup::put(signals.lowerOut, signals.upperOut, t - 1, output, output);
        swap(memory_.first);
        swap(memory_.second);
    }

    static ORVANTA_INLINE void swap(Section& section) noexcept {
        section = {{section.x[1], section.x[0]}, {section.y[1], section.y[0]}};
    }

    ORVANTA_INLINE SectionState& state(std::size_t channel, std::size_t section,
                                       bool upper) const noexcept {
        CrossoverState& state = *states_[channel];
        return (upper ? state.highPass : state.lowPass)[index_][section];
    }

    ORVANTA_INLINE void take(std::size_t which, bool upper) noexcept {
        Section& section = which == 0 ? memory_.first : memory_.second;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const SectionState& from = state(channel, which, upper);
            const std::size_t lane = upper ? kChannels + channel : channel;
            section.x[0][lane] = from.x1;
            section.x[1][lane] = from.x2;
            section.y[0][lane] = from.y1;
            section.y[1][lane] = from.y2;
        }
    }

    ORVANTA_INLINE void leave(std::size_t which, bool upper) const noexcept {
        const Section& section = which == 0 ? memory_.first : memory_.second;
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const std::size_t lane = upper ? kChannels + channel : channel;
            state(channel, which, upper) = {section.x[0][lane], section.x[1][lane],
                                            section.y[0][lane], section.y[1][lane]};
        }
    }

    States states_;
    std::size_t index_;
    Row row_;
    Memory memory_;
};

double throughSection(const CrossoverRow& row, SectionState& state, double x) noexcept {
    const double y =
        row.b0 * x + row.b1 * state.x1 + row.b2 * state.x2 - row.a1 * state.y1 - row.a2 * state.y2;
    state = {x, state.x1, y, state.y1};
    return y;
}

float filteredTwice(const CrossoverRow& row, SectionState (&states)[2], float x) noexcept {
    const auto between = static_cast<float>(throughSection(row, states[0], static_cast<double>(x)));
    return static_cast<float>(throughSection(row, states[1], static_cast<double>(between)));
}

/// One sample after the other, for a few of them.
void splitShortBlock(const float* input, std::size_t count, const Crossover& crossover,
                     CrossoverState& state, const BandSignals& bands) noexcept {
    for (std::size_t t = 0; t < count; ++t) {
        const float x = input[t];
        bands.band[0][t] = filteredTwice(crossover.lowPass[0], state.lowPass[0], x);
        const float rest = filteredTwice(crossover.highPass[0], state.highPass[0], x);
        const float middle = filteredTwice(crossover.lowPass[1], state.lowPass[1], rest);
        bands.band[1][t] = middle;
        bands.band[2][t] = filteredTwice(crossover.highPass[1], state.highPass[1], middle);
    }
}

constexpr std::size_t kShortestBlock = kUpperLag + 2;

void split(const float* input, std::size_t count, const Crossover& crossover, CrossoverState& state,
           const BandSignals& bands) noexcept {
    if (count < kShortestBlock) {
        splitShortBlock(input, count, crossover, state, bands);
        return;
    }
    CrossoverState* const states[] = {&state};
    float* const low = bands.band[0];
    float* const middle = bands.band[1];
    float* const high = bands.band[2];
    const auto end = static_cast<std::ptrdiff_t>(count);
    Cascade<MonoLanes>(crossover, 0, states).run({{input}, {input}, {low}, {middle}}, end);
    Cascade<MonoLanes>(crossover, 1, states)
        .runWithLag({{middle}, {middle - kUpperLag}, {middle}, {high - kUpperLag}}, end);
}

void splitPair(const float* left, const float* right, std::size_t count, const Crossover& crossover,
               CrossoverState& leftState, CrossoverState& rightState, const BandSignals& leftBands,
               const BandSignals& rightBands) noexcept {
#if defined(__AVX2__)
    if (count >= kShortestBlock) {
        CrossoverState* const states[] = {&leftState, &rightState};
        float* const(&l)[kCompressorBandCount] = leftBands.band;
        float* const(&r)[kCompressorBandCount] = rightBands.band;
        const auto end = static_cast<std::ptrdiff_t>(count);
        Cascade<PairLanes>(crossover, 0, states)
            .run({{left, right}, {left, right}, {l[0], r[0]}, {l[1], r[1]}}, end);
        Cascade<PairLanes>(crossover, 1, states)
            .runWithLag({{l[1], r[1]},
                         {l[1] - kUpperLag, r[1] - kUpperLag},
                         {l[1], r[1]},
                         {l[2] - kUpperLag, r[2] - kUpperLag}},
                        end);
        return;
    }
#endif
    // Without wider registers one channel keeps everything busy already.
    split(left, count, crossover, leftState, leftBands);
    split(right, count, crossover, rightState, rightBands);
}

} // namespace
} // namespace orvanta
