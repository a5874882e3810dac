#pragma once

#include "core/dsp/kernels/CompressorKernels.h"
#include "core/dsp/kernels/Lanes.h"

/// The compressor's three-way split as a pipeline. What a section gives is what it can give the
/// fastest only when nothing waits for it, so the four stages, one behind the other in the signal's
/// way, all work at the same time on different samples, each a step behind the one before.
///
/// A stage holds the low-pass section in its lower lanes and the high-pass one in its upper lanes.
/// Behind the upper crossover the high band is taken from the middle band, so there the upper lanes
/// are two steps further behind:
///
///     stage         lower lanes              upper lanes
///     0, 1          250 Hz low-pass          250 Hz high-pass, the same sample
///     2, 3          4 kHz low-pass           4 kHz high-pass, two samples earlier
namespace orvanta {
namespace {

constexpr std::size_t kStages = 4;

/// The step at which a half of a stage meets sample 0.
constexpr std::ptrdiff_t kLag[kStages][2] = {{0, 0}, {1, 1}, {2, 4}, {3, 5}};
constexpr std::ptrdiff_t kLongestLag = 5;

ORVANTA_INLINE SectionState& sectionState(CrossoverState& state, std::size_t stage,
                                          std::size_t half) noexcept {
    return (half == 0 ? state.lowPass : state.highPass)[stage / 2][stage % 2];
}

template <class Doubles>
struct RowLanes {
    Doubles b0;
    Doubles b1;
    Doubles b2;
    Doubles a1;
    Doubles a2;
};

/// The last two inputs and outputs of a stage. Which is the newer one alternates with the steps, so
/// that nothing needs to be moved.
template <class Doubles>
struct StageMemory {
    Doubles x[2];
    Doubles y[2];
};

template <std::size_t newer, class Doubles>
ORVANTA_INLINE Float4 section(const RowLanes<Doubles>& row, StageMemory<Doubles>& memory,
                              Doubles x) noexcept {
    constexpr std::size_t kOlder = 1 - newer;
    const Doubles y = row.b0 * x + row.b1 * memory.x[newer] + row.b2 * memory.x[kOlder] -
                      row.a1 * memory.y[newer] - row.a2 * memory.y[kOlder];
    memory.x[kOlder] = x;
    memory.y[kOlder] = y;
    return narrow(y);
}

/// One channel in two lanes: low-pass, high-pass.
struct MonoLanes {
    using Doubles = Double2;
    static constexpr std::size_t kChannels = 1;

    static ORVANTA_INLINE Doubles widened(Float4 lanes) noexcept { return widenLow(lanes); }

    /// Below the upper lanes of one stage, above the lower lanes of another.
    static ORVANTA_INLINE Float4 joined(Float4 below, Float4 above) noexcept {
        return __builtin_shufflevector(below, above, 1, 4, 1, 4);
    }

    static ORVANTA_INLINE Float4 input(const float* const (&channels)[1],
                                       std::ptrdiff_t t) noexcept {
        const float sample = channels[0][t];
        return Float4{sample, sample, 0.0F, 0.0F};
    }

    /// What stages 1 and 3 gave in two steps, from sample `t` of each band on.
    static ORVANTA_INLINE void put(const BandSignals (&bands)[1], std::ptrdiff_t t,
                                   const Float4 (&low)[2], const Float4 (&upper)[2]) noexcept {
        const Double2 both =
            bitCast<Double2>(__builtin_shufflevector(upper[0], upper[1], 0, 4, 1, 5));
        const Double2 first = bitCast<Double2>(__builtin_shufflevector(low[0], low[1], 0, 4, 1, 5));
        store(bands[0].band[0] + t - kLag[1][0], first[0]);
        store(bands[0].band[1] + t - kLag[3][0], both[0]);
        store(bands[0].band[2] + t - kLag[3][1], both[1]);
    }
};

#if defined(__AVX2__)
/// Two channels in four lanes: low-pass left and right, high-pass left and right.
struct PairLanes {
    using Doubles = Double4;
    static constexpr std::size_t kChannels = 2;

    static ORVANTA_INLINE Doubles widened(Float4 lanes) noexcept { return widen(lanes); }

    static ORVANTA_INLINE Float4 joined(Float4 below, Float4 above) noexcept {
        return __builtin_shufflevector(below, above, 2, 3, 4, 5);
    }

    static ORVANTA_INLINE Float4 input(const float* const (&channels)[2],
                                       std::ptrdiff_t t) noexcept {
        const float left = channels[0][t];
        const float right = channels[1][t];
        return Float4{left, right, left, right};
    }

    static ORVANTA_INLINE void put(const BandSignals (&bands)[2], std::ptrdiff_t t,
                                   const Float4 (&low)[2], const Float4 (&upper)[2]) noexcept {
        const Double2 first = bitCast<Double2>(__builtin_shufflevector(low[0], low[1], 0, 4, 1, 5));
        const Double2 second =
            bitCast<Double2>(__builtin_shufflevector(upper[0], upper[1], 0, 4, 1, 5));
        const Double2 third =
            bitCast<Double2>(__builtin_shufflevector(upper[0], upper[1], 2, 6, 3, 7));
        for (std::size_t channel = 0; channel < 2; ++channel) {
            store(bands[channel].band[0] + t - kLag[1][0], first[channel]);
            store(bands[channel].band[1] + t - kLag[3][0], second[channel]);
            store(bands[channel].band[2] + t - kLag[3][1], third[channel]);
        }
    }
};
#endif

template <class Setup>
class CrossoverPipeline {
public:
    static constexpr std::size_t kChannels = Setup::kChannels;
    using Doubles = typename Setup::Doubles;
    using Inputs = const float* const (&)[kChannels];
    using States = CrossoverState* const (&)[kChannels];
    using Outputs = const BandSignals (&)[kChannels];

    static void run(Inputs inputs, std::ptrdiff_t count, const Crossover& crossover, States states,
                    Outputs outputs) noexcept {
        CrossoverPipeline filling(crossover);
        constexpr std::ptrdiff_t filled = kLongestLag + 1;
        for (std::ptrdiff_t t = 0; t < filled; ++t)
            filling.stepAtTheEdge(t, inputs, count, states, outputs);
        // A copy that no function sees from outside, so that it can live in registers.
        CrossoverPipeline full = filling;
        std::ptrdiff_t t = filled;
        for (; t + 2 < count; t += 2) {
            Float4 low[2];
            Float4 upper[2];
            full.step<0>(Setup::input(inputs, t));
            low[0] = full.given_[1];
            upper[0] = full.given_[3];
            full.step<1>(Setup::input(inputs, t + 1));
            low[1] = full.given_[1];
            upper[1] = full.given_[3];
            Setup::put(outputs, t, low, upper);
        }
        CrossoverPipeline draining = full;
        for (; t < count + kLongestLag; ++t)
            draining.stepAtTheEdge(t, inputs, count, states, outputs);
    }

private:
    explicit CrossoverPipeline(const Crossover& crossover) noexcept {
        for (std::size_t k = 0; k < 2; ++k) {
            for (std::size_t lane = 0; lane < 2 * kChannels; ++lane) {
                const CrossoverRow& row =
                    lane < kChannels ? crossover.lowPass[k] : crossover.highPass[k];
                rows_[k].b0[lane] = row.b0;
                rows_[k].b1[lane] = row.b1;
                rows_[k].b2[lane] = row.b2;
                rows_[k].a1[lane] = row.a1;
                rows_[k].a2[lane] = row.a2;
            }
        }
        for (std::size_t stage = 0; stage < kStages; ++stage) {
            memory_[stage] = {};
            given_[stage] = Float4{};
        }
    }

    /// Gives `input` to the first stage, and to each other one what stages gave in the last step.
    template <std::size_t newer>
    ORVANTA_INLINE void step(Float4 input) noexcept {
        const Float4 upperInput = Setup::joined(given_[1], given_[3]);
        given_[3] = section<newer>(rows_[1], memory_[3], Setup::widened(given_[2]));
        given_[2] = section<newer>(rows_[1], memory_[2], Setup::widened(upperInput));
        given_[1] = section<newer>(rows_[0], memory_[1], Setup::widened(given_[0]));
        given_[0] = section<newer>(rows_[0], memory_[0], Setup::widened(input));
    }

    /// A step at which some half of a stage may meet its first sample, or its last, or none.
    void stepAtTheEdge(std::ptrdiff_t t, Inputs inputs, std::ptrdiff_t count, States states,
                       Outputs outputs) noexcept {
        const auto newer = static_cast<std::size_t>(t % 2);
        for (std::size_t stage = 0; stage < kStages; ++stage) {
            for (std::size_t half = 0; half < 2; ++half) {
                if (t == kLag[stage][half])
                    takeStates(stage, half, newer, states);
            }
        }
        const Float4 input = t < count ? Setup::input(inputs, t) : Float4{};
        if (newer == 0)
            step<0>(input);
        else
            step<1>(input);
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            float* const(&bands)[kCompressorBandCount] = outputs[channel].band;
            bands[0][t - kLag[1][0]] = given_[1][channel];
            bands[1][t - kLag[3][0]] = given_[3][channel];
            bands[2][t - kLag[3][1]] = given_[3][kChannels + channel];
        }
        for (std::size_t stage = 0; stage < kStages; ++stage) {
            for (std::size_t half = 0; half < 2; ++half) {
                if (t + 1 == count + kLag[stage][half])
                    leaveStates(stage, half, 1 - newer, states);
            }
        }
    }

    void takeStates(std::size_t stage, std::size_t half, std::size_t newer,
                    States states) noexcept {
        StageMemory<Doubles>& memory = memory_[stage];
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const SectionState& state = sectionState(*states[channel], stage, half);
            const std::size_t lane = half * kChannels + channel;
            memory.x[newer][lane] = state.x1;
            memory.x[1 - newer][lane] = state.x2;
            memory.y[newer][lane] = state.y1;
            memory.y[1 - newer][lane] = state.y2;
        }
    }

    void leaveStates(std::size_t stage, std::size_t half, std::size_t newer,
                     States states) const noexcept {
        const StageMemory<Doubles>& memory = memory_[stage];
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            const std::size_t lane = half * kChannels + channel;
            sectionState(*states[channel], stage,
                         half) = {memory.x[newer][lane], memory.x[1 - newer][lane],
                                  memory.y[newer][lane], memory.y[1 - newer][lane]};
        }
    }

    RowLanes<Doubles> rows_[2];
    StageMemory<Doubles> memory_[kStages];
    Float4 given_[kStages]; ///< by each stage in the last step
};

void split(const float* input, std::size_t count, const Crossover& crossover, CrossoverState& state,
           const BandSignals& bands) noexcept {
    const float* const inputs[] = {input};
    CrossoverState* const states[] = {&state};
    const BandSignals outputs[] = {bands};
    CrossoverPipeline<MonoLanes>::run(inputs, static_cast<std::ptrdiff_t>(count), crossover, states,
                                      outputs);
}

void splitPair(const float* left, const float* right, std::size_t count, const Crossover& crossover,
               CrossoverState& leftState, CrossoverState& rightState, const BandSignals& leftBands,
               const BandSignals& rightBands) noexcept {
#if defined(__AVX2__)
    const float* const inputs[] = {left, right};
    CrossoverState* const states[] = {&leftState, &rightState};
    const BandSignals outputs[] = {leftBands, rightBands};
    CrossoverPipeline<PairLanes>::run(inputs, static_cast<std::ptrdiff_t>(count), crossover, states,
                                      outputs);
#else
    // One channel keeps two lanes busy all the time already.
    split(left, count, crossover, leftState, leftBands);
    split(right, count, crossover, rightState, rightBands);
#endif
}

} // namespace
} // namespace orvanta
