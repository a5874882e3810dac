#pragma once

#include <cstddef>

namespace orvanta {

inline constexpr std::size_t kCompressorBandCount = 3;

/// Turns decibels into exponents of two. Decibels proper would need 0.166: what is applied is the
/// power 0.3 of what the meter says, makeup too. It is how this compressor sounds.
inline constexpr float kExponentPerDB = 0.050170887F;

/// The level of an envelope that is too small to take a logarithm of.
inline constexpr float kSilentLevelDB = -120.0F;

/// The knee reaches this far to both sides of the threshold.
inline constexpr float kHalfKneeDB = 1.5F;

/// A second-order section, divided by its a0.
struct CrossoverRow {
    double b0;
    double b1;
    double b2;
    double a1;
    double a2;
};

/// At 250 and at 4000 Hz. Each row serves two sections, one after the other.
struct Crossover {
    CrossoverRow lowPass[2];
    CrossoverRow highPass[2];
};

/// The last two numbers that went into a section and that came out of it, before rounding.
struct SectionState {
    double x1 = 0;
    double x2 = 0;
    double y1 = 0;
    double y2 = 0;
};

/// One channel's, by crossover and section.
struct CrossoverState {
    SectionState lowPass[2][2];
    SectionState highPass[2][2];
};

/// What runs while a band is set to one thing.
struct CompressorBand {
    float attack;      ///< of the envelope, each sample
    float attackRest;  ///< 1 - attack
    float release;     ///< of the envelope, each sample
    float releaseRest; ///< 1 - release
    bool isRMS;        ///< the envelope follows squares, not magnitudes
    float floor;       ///< an envelope up to here is silence, at -120 dB
    float decibels;    ///< for each doubling of the envelope
    float threshold;   ///< dB
    float kneeLow;     ///< dB
    float kneeHigh;    ///< dB
    float ratio;
    float slope;                  ///< 1 / ratio - 1
    float makeup;                 ///< linear
    float idleBelow;              ///< an envelope below leaves the gain at exactly `makeup`
    bool isActive;                ///< false: the band passes as it is
    std::size_t lookAheadSamples; ///< at most 479
};

/// Planar signals of the three bands of one channel, in scratch memory. The split may leave garbage
/// in `kBandSignalMargin` samples before the first and after the last of a block.
struct BandSignals {
    float* band[kCompressorBandCount];
};

inline constexpr std::size_t kBandSignalMargin = 16;

/// The way of one band's envelope in one channel.
struct EnvelopeChain {
    const CompressorBand* band;
    const float* signal;
    float* envelope; ///< out: after each sample of `signal`
    float* state;    ///< in: where the envelope stands. Out: where it ended.
    float* highest;  ///< out: the envelope's maximum
};

/// `gain` applies to `signal`, sample by sample.
struct GainedSignal {
    const float* signal;
    const float* gain;
};

/// Every function takes at least one sample.
struct CompressorKernels {
    /// The three-way split of one channel.
    void (*split)(const float* input, std::size_t count, const Crossover& crossover,
                  CrossoverState& state, const BandSignals& bands) noexcept;

    /// As `split` for each of two channels.
    void (*splitPair)(const float* left, const float* right, std::size_t count,
                      const Crossover& crossover, CrossoverState& leftState,
                      CrossoverState& rightState, const BandSignals& leftBands,
                      const BandSignals& rightBands) noexcept;

    /// Follows up to six chains side by side.
    void (*follow)(const EnvelopeChain* chains, std::size_t chainCount, std::size_t count) noexcept;

    /// Replaces an envelope by the gain that it stands for, and gives the deepest reduction in dB.
    /// Behind the envelope there is room for `kGainPadding` samples more.
    float (*gains)(float* envelope, std::size_t count, const CompressorBand& band) noexcept;

    /// Each signal times its gain, the first two bands added, then the third. False when a result
    /// is not finite.
    bool (*mix)(const GainedSignal (&bands)[kCompressorBandCount], float* output,
                std::size_t count) noexcept;
};

/// As many samples as `gains` computes at once.
inline constexpr std::size_t kGainPadding = 32;

} // namespace orvanta
