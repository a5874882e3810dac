#pragma once

#include "core/dsp/EQBand.h"

#include <array>

namespace orvanta {

/// b0, b1, b2, a1, a2 of y = b0·x + b1·x[-1] + b2·x[-2] - a1·y[-1] - a2·y[-2].
using EQCoefficients = std::array<double, 5>;

/// Leaves every signal as it is.
inline constexpr EQCoefficients kEQIdentity{1, 0, 0, 0, 0};

/// The filter of one band: the shelves and the peak of R. Bristow-Johnson's "Cookbook formulae for
/// audio EQ biquad filter coefficients", with alpha from Q for all three. A band that is not active
/// gives the identity.
///
/// Below half of `sampleRate` the filter is stable, and for rates from 8 to 384 kHz up to 95 % of
/// it also when rounded to single precision; beyond those rates the lowest shelf may not be. At
/// half of it a shelf's poles and zeros cancel each other on the unit circle; beyond it the
/// formulas may give no stable filter, and at a rate of 0 no numbers.
[[nodiscard]] EQCoefficients eqCoefficients(const EQBand& band, double sampleRate) noexcept;

/// Coefficients as they run.
using EQSingleCoefficients = std::array<float, 5>;

[[nodiscard]] EQSingleCoefficients rounded(const EQCoefficients& coefficients) noexcept;

/// Whether the filter with these coefficients forgets what it has heard: both poles are inside the
/// unit circle, not on it, where rounding errors would add up for ever.
[[nodiscard]] bool isStable(const EQSingleCoefficients& coefficients) noexcept;

} // namespace orvanta
