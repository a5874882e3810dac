#pragma once

#include <cstddef>

namespace orvanta {

/// left = right * cross + left * same, and the other way round.
struct WidthFactors {
    float same;
    float cross;
};

struct CrossfeedSettings {
    float amount;
    float norm;
    float lpCoeff;
    std::size_t delay;
};

/// The state of a crossfeed during a run of frames.
struct CrossfeedRun {
    float lpStateL = 0.0F;
    float lpStateR = 0.0F;
    /// The delayed samples of this run; new ones go `delay` places further on.
    float* lineL = nullptr;
    float* lineR = nullptr;
};

/// Loops over pairs of channels, in place. Planar buffers do not overlap.
struct StereoKernels {
    void (*widenPlanar)(float* left, float* right, std::size_t count,
                        const WidthFactors& factors) noexcept;
    void (*widenInterleaved)(float* frames, std::size_t frameCount,
                             const WidthFactors& factors) noexcept;
    void (*crossfeedPlanar)(float* left, float* right, std::size_t count,
                            const CrossfeedSettings& settings, CrossfeedRun& run) noexcept;
    void (*crossfeedInterleaved)(float* frames, std::size_t frameCount,
                                 const CrossfeedSettings& settings, CrossfeedRun& run) noexcept;
};

} // namespace orvanta
