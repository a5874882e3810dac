#pragma once

#include "core/dsp/EQBand.h"
#include "core/dsp/EQDesign.h"
#include "core/dsp/EQPreset.h"
#include "core/dsp/TripleBuffer.h"
#include "core/dsp/kernels/Kernels.h"
#include "core/platform/Cell.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orvanta {

/// The equaliser of one application: ten second-order filters in series, in single precision, a low
/// shelf and a high shelf around eight peaks. Bands within 0.05 dB of 0 are left out altogether,
/// and their histories hold still.
///
/// `process` and `processPair` belong to one IO thread; everything else is called by one control
/// thread at a time, which may be at the same time. A change of a gain takes effect with the IO
/// thread's next call, rows replaced as a whole, histories kept.
///
/// A block in which something is no finite number, or becomes none, is silent from there on, and
/// the next one starts from silence; finite signals never notice.
class EQProcessor {
public:
    /// Blocks may be longer, but only their first samples are filtered.
    static constexpr std::size_t kMostSamples = 4096;

    static constexpr float kLargestGain = 12.0F; // dB, up and down

    /// `sampleRate` in Hz is taken as it is. A band for which it is too low (or, beyond 384
    /// kHz, too high), so that its filter would not be stable, has its coefficients but is left out
    /// of the cascade: it would ring up for ever.
    EQProcessor(double sampleRate, std::size_t maxChannels,
                const Kernels& kernels = orvanta::kernels());

    /// Bands beyond the ten are ignored. dB within +-12; NaN counts as +12.
    void setGain(int band, float gain) noexcept;

    /// The same for the first bands, as many as there are gains; recomputes all of them.
    void setAllGains(std::span<const float> gains) noexcept;

    void apply(const EQPreset& preset) noexcept { setAllGains(preset.gains); }

    [[nodiscard]] EQPreset currentPreset() const noexcept;

    /// Flat and silent.
    void reset() noexcept;

    /// Takes a new rate and starts from silence; a rate that is not above 0 is ignored.
    void updateSampleRate(double rate) noexcept;

    void recalculateAllCoefficients() noexcept;

    /// Whether every gain is within 0.05 dB of 0. For both threads.
    [[nodiscard]] bool isFlat() const noexcept { return isFlat_.load(); }

    // What is set, for the control thread.
    [[nodiscard]] const std::array<EQBand, kEQBandCount>& bands() const noexcept { return bands_; }

    [[nodiscard]] double sampleRate() const noexcept { return sampleRate_; }

    [[nodiscard]] std::size_t maxChannels() const noexcept { return histories_.size(); }

    using Coefficients = std::array<EQCoefficients, kEQBandCount>;
    using SingleCoefficients = std::array<EQSingleCoefficients, kEQBandCount>;

    [[nodiscard]] const Coefficients& coefficients() const noexcept { return coefficients_; }

    /// The coefficients rounded: those that run.
    [[nodiscard]] const SingleCoefficients& vdspCoeffs() const noexcept { return vdspCoeffs_; }

    /// One channel's `count` adjacent samples, in place. Out-of-range channels and empty blocks are
    /// ignored.
    void process(float* buffer, std::size_t count, std::size_t channel) noexcept;

    /// Channels 0 and 1, as `process` for one after the other, but faster. The buffers do not
    /// overlap.
    void processPair(float* left, float* right, std::size_t count) noexcept;

private:
    /// What the IO thread works by.
    struct Published {
        EQCascade cascade;
        /// Counts the times the histories were to be cleared.
        std::uint32_t clearGeneration = 0;
    };

    void updateBandCoefficients(std::size_t band) noexcept;
    void publish() noexcept;
    const EQCascade& latestCascade() noexcept;
    void recoverIfPoisoned(float* buffer, std::size_t count, const EQCascade& cascade,
                           std::size_t channel) noexcept;

    const EQKernels kernels_;

    // The control thread's.
    double sampleRate_;
    std::array<EQBand, kEQBandCount> bands_;
    Coefficients coefficients_{};
    SingleCoefficients vdspCoeffs_{};
    std::uint32_t clearGeneration_ = 0;

    Cell<bool> isFlat_{true};
    TripleBuffer<Published> published_{Published{}};

    // The IO thread's.
    std::uint32_t clearedGeneration_ = 0;
    std::vector<EQChannelHistory> histories_;
};

} // namespace orvanta
