#pragma once

#include "core/dsp/kernels/Finite.h"
#include "core/dsp/kernels/InTurn.h"
#include "core/dsp/kernels/Lanes.h"
#include "core/dsp/kernels/StereoKernels.h"

namespace orvanta {
namespace {

/// Two buffers of one channel each.
struct PlanarFrames {
    float* left;
    float* right;

    ORVANTA_INLINE FourFrames four(std::size_t k) const noexcept {
        return interleaved(load<Float4>(left + k), load<Float4>(right + k));
    }

    ORVANTA_INLINE void setFour(std::size_t k, const FourFrames& frames) const noexcept {
        store(left + k, leftOf(frames));
        store(right + k, rightOf(frames));
    }

    ORVANTA_INLINE float& leftAt(std::size_t k) const noexcept { return left[k]; }

    ORVANTA_INLINE float& rightAt(std::size_t k) const noexcept { return right[k]; }
};

/// One buffer in which the channels alternate.
struct InterleavedFrames {
    float* samples;

    ORVANTA_INLINE FourFrames four(std::size_t k) const noexcept {
        return {load<Float4>(samples + 2 * k), load<Float4>(samples + 2 * k + 4)};
    }

    ORVANTA_INLINE void setFour(std::size_t k, const FourFrames& frames) const noexcept {
        store(samples + 2 * k, frames.early);
        store(samples + 2 * k + 4, frames.late);
    }

    ORVANTA_INLINE float& leftAt(std::size_t k) const noexcept { return samples[2 * k]; }

    ORVANTA_INLINE float& rightAt(std::size_t k) const noexcept { return samples[2 * k + 1]; }
};

/// The low-passes of both cross paths, what comes in being weighted already. Only this goes from
/// frame to frame.
struct CrossLowPass {
    Float4 pole;

    ORVANTA_INLINE Float4 operator()(Float4 state, Float4 input) const noexcept {
        return input + state * pole;
    }
};

template <class Frames>
void crossfeedRest(const Frames& frames, std::size_t begin, std::size_t count,
                   const CrossfeedSettings& settings, CrossfeedRun& run) noexcept {
    const float pole = settings.lpCoeff;
    const float amount = settings.amount;
    const float norm = settings.norm;
    float* const newestL = run.lineL + settings.delay;
    float* const newestR = run.lineR + settings.delay;
    for (std::size_t k = begin; k < count; ++k) {
        const float left = finiteOnly(frames.leftAt(k));
        const float right = finiteOnly(frames.rightAt(k));
        newestL[k] = left;
        newestR[k] = right;
        run.lpStateL = run.lineR[k] * (1.0F - pole) + run.lpStateL * pole;
        run.lpStateR = run.lineL[k] * (1.0F - pole) + run.lpStateR * pole;
        frames.leftAt(k) = norm * (left + amount * run.lpStateL);
        frames.rightAt(k) = norm * (right + amount * run.lpStateR);
    }
}

/// New samples go into the lines before the delayed ones are taken out: with a delay below four
/// these are in part the same.
template <class Frames>
ORVANTA_INLINE void crossfeed(const Frames& frames, std::size_t count,
                              const CrossfeedSettings& settings, CrossfeedRun& run) noexcept {
    const std::size_t delay = settings.delay;
    const float amount = settings.amount;
    const float norm = settings.norm;
    const float weight = 1.0F - settings.lpCoeff;
    const CrossLowPass next{Float4{} + settings.lpCoeff};
    Float4 lowPassed{run.lpStateL, run.lpStateR, 0.0F, 0.0F};
    float* const lineL = run.lineL;
    float* const lineR = run.lineR;

    std::size_t k = 0;
    for (; k + 4 <= count; k += 4) {
        const FourFrames raw = frames.four(k);
        const FourFrames input{finiteOnly(raw.early), finiteOnly(raw.late)};
        store(lineL + k + delay, leftOf(input));
        store(lineR + k + delay, rightOf(input));
        const FourFrames across =
            interleaved(load<Float4>(lineR + k) * weight, load<Float4>(lineL + k) * weight);
        const FourFrames cross = inTurn(next, lowPassed, across);
        frames.setFour(k, {norm * (input.early + amount * cross.early),
                           norm * (input.late + amount * cross.late)});
    }

    run.lpStateL = lowPassed[0];
    run.lpStateR = lowPassed[1];
    crossfeedRest(frames, k, count, settings, run);
}

void crossfeedPlanar(float* left, float* right, std::size_t count,
                     const CrossfeedSettings& settings, CrossfeedRun& run) noexcept {
    crossfeed(PlanarFrames{left, right}, count, settings, run);
}

void crossfeedInterleaved(float* frames, std::size_t frameCount, const CrossfeedSettings& settings,
                          CrossfeedRun& run) noexcept {
    crossfeed(InterleavedFrames{frames}, frameCount, settings, run);
}

} // namespace
} // namespace orvanta
