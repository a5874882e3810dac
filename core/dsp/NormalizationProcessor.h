#pragma once

#include "core/dsp/ClearRequest.h"
#include "core/dsp/kernels/Kernels.h"
#include "core/platform/Cell.h"

#include <cstddef>

namespace orvanta {

/// Evens out the loudness of one application's audio. Measures the mean square of channel 0 over
/// windows of 400 ms, weighted by the two sections that ITU-R BS.1770 gives for 48 kHz (the same
/// ones at every rate, without that paper's offset), and brings the gain towards `targetLUFS`, by
/// at most 2 dB for each second of samples that `process` is called with. As every channel's call
/// takes such a step, a stereo pair moves by 4 dB a second, the second channel one step ahead.
/// Silence is measured like anything else; there is no gate.
///
/// The process functions belong to the IO thread; everything else may be called from control
/// threads at the same time. A block of channel 0 in which the weighting does not stay finite is
/// left out of the measurement, and the weighting starts anew; samples that are no finite number
/// only get the gain like all others.
class NormalizationProcessor {
public:
    /// A rate that is none (0 or below, NaN) counts as 0: then each block is a window of its own
    /// and the gain goes to its target at once. Rates beyond 1 GHz count as 1 GHz.
    explicit NormalizationProcessor(double sampleRate, const Kernels& kernels = orvanta::kernels());

    /// The level to bring channel 0 to, in dB; -14 at first. Takes effect with the next window.
    /// What is no finite number changes nothing, here and below.
    [[nodiscard]] float targetLUFS() const noexcept { return targetLUFS_.load(); }

    void setTargetLUFS(float decibels) noexcept;

    /// True at first. While false the process functions leave everything as it is.
    [[nodiscard]] bool enabled() const noexcept { return enabled_.load(); }

    void setEnabled(bool enabled) noexcept { enabled_.store(enabled); }

    /// The largest correction either way, in dB; 12 at first. Takes effect with the next window.
    [[nodiscard]] float maxCorrectionDB() const noexcept { return maxCorrectionDB_.load(); }

    void setMaxCorrectionDB(float decibels) noexcept;

    /// The gain after the last step of channel 0, in dB; for the block in which a window closes
    /// without any step, its whole correction.
    [[nodiscard]] float currentGainDB() const noexcept {
        return clear_.isOpen() ? 0.0F : currentGainDB_.load();
    }

    /// The gain now applied.
    [[nodiscard]] float currentGainLinear() const noexcept {
        return clear_.isOpen() ? 1.0F : currentGainLinear_.load();
    }

    /// The gain being approached.
    [[nodiscard]] float targetGainLinear() const noexcept {
        return clear_.isOpen() ? 1.0F : targetGainLinear_.load();
    }

    /// Samples of channel 0 that make a window: the whole part of the rate times 0.4.
    [[nodiscard]] std::size_t windowSizeInSamples() const noexcept { return windowSizeInSamples_; }

    /// Back to unity and to an empty window; the settings stay. The published gains read so at
    /// once, the measuring state follows with the next block.
    void reset() noexcept { clear_.ask(); }

    /// One channel's `count` adjacent samples, in place. Of channel 0 the first 8192 are measured.
    void process(float* buffer, std::size_t count, std::size_t channel) noexcept;

    /// Channel 0, then channel 1.
    void processPair(float* left, float* right, std::size_t count) noexcept;

private:
    void clear() noexcept;
    void measure(const float* buffer, std::size_t count) noexcept;
    void closeWindow() noexcept;
    void slew(std::size_t count, std::size_t channel) noexcept;
    [[nodiscard]] float stepFor(std::size_t count) noexcept;

    const LevelKernels& kernels_;
    const float sampleRate_;
    const std::size_t windowSizeInSamples_;
    Cell<float> targetLUFS_{-14.0F};
    Cell<bool> enabled_{true};
    Cell<float> maxCorrectionDB_{12.0F};
    Cell<float> currentGainDB_{0.0F};
    Cell<float> currentGainLinear_{1.0F};
    Cell<float> targetGainLinear_{1.0F};
    ClearRequest clear_;
    Weighting weighting_;
    float rmsAccumulator_ = 0.0F;
    std::size_t sampleCount_ = 0;
    /// The slew of the last block length: blocks mostly come in one length, and powers are dear.
    std::size_t steppedCount_ = 0;
    float step_ = 1.0F;
};

} // namespace orvanta
