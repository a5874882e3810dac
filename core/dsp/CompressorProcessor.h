#pragma once

#include "core/dsp/CompressorDesign.h"
#include "core/dsp/CompressorPreset.h"
#include "core/dsp/TripleBuffer.h"
#include "core/dsp/kernels/Kernels.h"
#include "core/platform/Cell.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvanta {

/// Three compressors on one application's audio, split at 250 and 4000 Hz, each with a detector, a
/// soft knee of 3 dB, a look-ahead of up to 479 samples and makeup of its own.
///
/// The high band is what is left of the middle band above 4000 Hz, and there is no other way for
/// high frequencies: with all gains at 1 the sum stands at +12 dB at 250 Hz, +6 dB at 4 kHz, -17 dB
/// at 8 kHz and -58 dB at 16 kHz (at a rate of 48 kHz). A band whose ratio is not above 1.05 takes
/// part in the sum as it is, not delayed.
///
/// Gains come from own functions for log2 and 2^x. Each is within 1e-6 of the C library's,
/// relatively, and so is the gain for thresholds from -100 to 60 dBFS and levels up to 60 dBFS;
/// beyond, the last digit of a level is worth more than that. All instruction sets give the same
/// bits.
///
/// `process` and `processPair` belong to one IO thread at a time; everything else may be called
/// from one control thread at a time meanwhile. They see the parameters as they were after one
/// control operation, never between.
///
/// At the end of each block, filters that no longer hold numbers are cleared in their channel,
/// and so is everything else that is not finite: envelopes, look-ahead lines, samples of the
/// block. Such a block counts as one without reduction. An envelope that only grew too large stays
/// at the largest number instead, and releases from there.
class CompressorProcessor {
public:
    /// Off at first. Blocks have at most `maxBufferSize` samples.
    CompressorProcessor(double sampleRate, std::size_t maxChannels, std::size_t maxBufferSize,
                        const Kernels& kernels = orvanta::kernels());

    /// Takes over three bands; a preset with any other number is ignored. Filters, envelopes and
    /// look-ahead lines are kept.
    void apply(const CompressorPreset& preset) noexcept;

    /// There are bands 0 (low) to 2 (high); others are ignored.
    void setBand(int index, const CompressorBandSettings& settings) noexcept;

    /// Ignored unless above 0. Everything heard so far is forgotten.
    void updateSampleRate(double rate) noexcept;

    [[nodiscard]] CompressorPreset currentPreset() const;

    [[nodiscard]] const std::array<CompressorBandSettings, kCompressorBandCount>&
    settings() const noexcept {
        return settings_;
    }

    /// As `CompressorPreset::isOff`. `process` leaves everything as it is then.
    [[nodiscard]] bool isOff() const noexcept;

    /// dB, by band: the deepest reduction of the last blocks as the gain computer gave it, falling
    /// by a tenth with each block of each channel.
    [[nodiscard]] std::array<float, kCompressorBandCount> gainReduction() const noexcept;

    void setGainReduction(const std::array<float, kCompressorBandCount>& decibels) noexcept;

    /// One channel's `count` adjacent samples, in place. Channels that are not there, and blocks
    /// that are empty or too large, are left as they are.
    void process(float* buffer, std::size_t count, std::size_t channel) noexcept;

    /// Channel 0 and then channel 1, in less time.
    void processPair(float* left, float* right, std::size_t count) noexcept;

private:
    /// What the IO thread needs to know, all of it at once.
    struct Parameters {
        Crossover crossover;
        std::array<CompressorBand, kCompressorBandCount> bands;
        bool isOff;
        /// When it is another than before, filters, envelopes and look-ahead lines are cleared.
        std::uint32_t clearGeneration;
    };

    /// The last samples of a band, the oldest at `position`.
    struct LookAheadLine {
        std::array<float, kMaxLookaheadSamples> samples{};
        std::size_t position = 0;
    };

    /// What one channel's past leaves behind.
    struct Channel {
        CrossoverState crossover;
        std::array<float, kCompressorBandCount> envelopes{};
        std::array<LookAheadLine, kCompressorBandCount> lines{};
    };

    /// One channel's block on its way.
    struct Block {
        BandSignals signals{};
        std::array<float*, kCompressorBandCount> envelopes{}; ///< and then gains
        std::array<float, kCompressorBandCount> highest{};    ///< of the envelopes
    };

    using Reductions = std::array<float, kCompressorBandCount>;

    [[nodiscard]] Parameters designed() const noexcept;
    void publish() noexcept;

    [[nodiscard]] const Parameters& latestParameters() noexcept;
    void followEnvelopes(const Parameters& parameters, std::size_t firstChannel,
                         std::size_t channelCount, std::size_t count) noexcept;
    void finish(const Parameters& parameters, std::size_t channel, Block& block, float* output,
                std::size_t count) noexcept;
    static const float* delayed(LookAheadLine& line, float* signal, std::size_t count,
                                std::size_t delay) noexcept;
    static bool filtersAreSound(const Channel& channel) noexcept;
    static bool isSound(const Channel& channel) noexcept;
    static void cure(Channel& channel, Reductions& reductions) noexcept;
    void publishReductions(const Parameters& parameters, const Reductions& reductions) noexcept;

    const CompressorKernels& kernels_;
    const std::size_t maxChannels_;
    const std::size_t maxBufferSize_;

    double sampleRate_;
    std::array<CompressorBandSettings, kCompressorBandCount> settings_;
    std::uint32_t clearGeneration_ = 0;
    TripleBuffer<Parameters> parameters_;
    std::array<Cell<float>, kCompressorBandCount> gainReduction_;

    std::uint32_t clearedGeneration_ = 0;
    std::vector<Channel> channels_;
    std::vector<float> scratch_;
    std::array<Block, 2> blocks_;
};

} // namespace orvanta
