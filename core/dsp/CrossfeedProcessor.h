#pragma once

#include "core/dsp/ClearRequest.h"
#include "core/dsp/DelayLine.h"
#include "core/dsp/kernels/Kernels.h"
#include "core/platform/Cell.h"

#include <cstddef>

namespace orvanta {

/// Crossfeed for headphones: each channel gets a copy of the other one, 0.3 ms later, through a
/// one-pole low-pass at 700 Hz, times `amount`; the whole is scaled by 1 / (1 + amount / 2).
///
/// The process functions belong to the IO thread; everything else may be called from control
/// threads at the same time. Samples that are no finite number are heard as silence and leave no
/// trace behind. Finite ones keep the low-passes finite: even x = y = the largest number gives no
/// x (1 - c) + y c that overflows in single precision, whatever the coefficient c from 0 to 1.
class CrossfeedProcessor {
public:
    /// The delay is the whole part of `sampleRate` * 0.0003, at least 1 sample, which is also what
    /// a rate that is none (0 or below, NaN) gets. Rates beyond 1 GHz count as 1 GHz.
    explicit CrossfeedProcessor(double sampleRate, const Kernels& kernels = orvanta::kernels());

    /// 0 to 1; 0 at first.
    [[nodiscard]] float amount() const noexcept { return amount_.load(); }

    /// From the next block on. What is no finite number changes nothing.
    void setAmount(float amount) noexcept;

    /// Below 0.01. While off, the process functions touch neither the audio nor the state.
    [[nodiscard]] bool isOff() const noexcept;

    [[nodiscard]] std::size_t delaySamples() const noexcept { return lineL_.delay(); }

    /// Back to silence, with the next block: the state belongs to the IO thread.
    void reset() noexcept { clear_.ask(); }

    /// Two buffers of one channel each, in place; they do not overlap.
    void processPlanar(float* left, float* right, std::size_t count) noexcept;

    /// `frameCount` pairs of left and right in one buffer, in place.
    void processInterleaved(float* buffer, std::size_t frameCount) noexcept;

private:
    /// `kernel(done, count, settings, run)` for one run of the delay lines after the other.
    template <class Kernel>
    void process(std::size_t frameCount, const Kernel& kernel) noexcept;
    void clear() noexcept;

    const StereoKernels& kernels_;
    const float lpCoeff_;
    Cell<float> amount_{0.0F};
    ClearRequest clear_;
    DelayLine lineL_;
    DelayLine lineR_;
    /// What goes into the left channel: it comes from the right.
    float lpStateL_ = 0.0F;
    float lpStateR_ = 0.0F;
};

} // namespace orvanta
