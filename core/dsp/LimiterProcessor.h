#pragma once

#include "core/dsp/ClearRequest.h"
#include "core/dsp/DelayLine.h"
#include "core/dsp/kernels/Kernels.h"
#include "core/platform/Cell.h"

#include <cstddef>
#include <vector>

namespace orvanta {

/// Keeps one application's output near a ceiling: a per-sample peak limiter with 1 ms of look-ahead
/// and 50 ms of release. Its gain steps with the envelope and is not smoothed, so a peak that has
/// come through the look-ahead leaves about 2 % above the ceiling at 48 kHz.
///
/// The process functions belong to the IO thread; everything else may be called from control
/// threads at the same time. Samples that are no finite number are heard as silence and leave no
/// trace behind.
class LimiterProcessor {
public:
    /// The look-ahead is the whole part of `sampleRate` * 0.001, at least 1 sample, which is also
    /// what a rate that is none (0 or below, NaN) gets. Rates beyond 1 GHz count as 1 GHz.
    LimiterProcessor(double sampleRate, std::size_t maxChannels,
                     const Kernels& kernels = orvanta::kernels());

    /// dB; 0 at first.
    [[nodiscard]] float ceiling() const noexcept { return ceiling_.load(); }

    void setCeiling(float decibels) noexcept;

    /// True at first. While false the process functions leave everything as it is.
    [[nodiscard]] bool enabled() const noexcept { return enabled_.load(); }

    void setEnabled(bool enabled) noexcept { enabled_.store(enabled); }

    /// dB, never negative: the reduction of the last blocks, falling by a tenth a call.
    [[nodiscard]] float gainReductionDB() const noexcept {
        return clear_.isOpen() ? 0.0F : gainReductionDB_.load();
    }

    /// Delay of the output, in samples.
    [[nodiscard]] std::size_t lookAheadSamples() const noexcept { return lookAheadSamples_; }

    /// Back to silence: takes effect at once for the published reduction, and with the next block
    /// for the delay lines, which only the IO thread touches.
    void reset() noexcept { clear_.ask(); }

    /// One channel's `count` adjacent samples, in place. Out-of-range channels and empty blocks are
    /// ignored.
    void process(float* buffer, std::size_t count, std::size_t channel) noexcept;

    /// Channel 0, then channel 1, to the same results and faster. The buffers do not overlap.
    void processPair(float* left, float* right, std::size_t count) noexcept;

private:
    struct Channel {
        DelayLine line;
        float envelope = 0.0F;
    };

    [[nodiscard]] LimiterSettings settings() const noexcept;
    void clear() noexcept;
    void publishReduction(float minGain) noexcept;

    const LevelKernels& kernels_;
    const std::size_t lookAheadSamples_;
    const float releaseCoeff_;
    Cell<float> ceiling_{0.0F};
    Cell<float> ceilingLinear_{1.0F};
    Cell<bool> enabled_{true};
    Cell<float> gainReductionDB_{0.0F};
    ClearRequest clear_;
    std::vector<Channel> channels_;
};

} // namespace orvanta
