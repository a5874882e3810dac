#pragma once

#include <cstddef>

namespace orvanta {

/// What a limiter runs with.
struct LimiterSettings {
    float ceiling; ///< linear
    float release; ///< what the envelope is multiplied by at each sample
    std::size_t lookAhead;
};

/// One channel of a limiter during a run of samples.
struct LimiterRun {
    float envelope = 0.0F;
    float minGain = 1.0F; ///< the smallest gain so far
    /// The delayed samples of this run; new ones go `lookAhead` places further on.
    float* line = nullptr;
};

/// One second-order section: y = b0 x + b1 x1 + b2 x2 - a1 y1 - a2 y2.
struct WeightingCoeffs {
    float b0, b1, b2, a1, a2;
};

struct WeightingDelay {
    float x1, x2, y1, y2;
};

/// Both sections of a weighting, in series.
struct Weighting {
    WeightingCoeffs coeffs[2];
    WeightingDelay delay[2];
};

struct LevelSums {
    float squares;
    float peak;
};

/// Loops that measure and hold levels. Infinities and NaN count as 0, but for `weightedSquares`.
struct LevelKernels {
    /// In place.
    void (*limit)(float* samples, std::size_t count, const LimiterSettings& settings,
                  LimiterRun& run) noexcept;
    /// Two channels that do not overlap, to the same results as one after the other.
    void (*limitPair)(float* left, float* right, std::size_t count, const LimiterSettings& settings,
                      LimiterRun& leftRun, LimiterRun& rightRun) noexcept;
    /// The sum of the squares of the weighted samples: sample k goes into partial sum k mod 4, and
    /// the partial sums into (0 + 1) + (2 + 3).
    float (*weightedSquares)(const float* samples, std::size_t count,
                             Weighting& weighting) noexcept;
    /// Sum of squares and largest magnitude. Whole sixteens of samples go into sixteen partial
    /// sums; of these each fourth are added, (0 + 4) + (8 + 12) and so on, then those four and the
    /// samples that remain, from left to right.
    LevelSums (*measure)(const float* samples, std::size_t count) noexcept;
    void (*copyFinite)(const float* from, float* to, std::size_t count) noexcept;
    /// `to` may be `from`.
    void (*scale)(const float* from, float factor, float* to, std::size_t count) noexcept;
};

} // namespace orvanta
