#pragma once

#include "core/dsp/EQPreset.h"

#include <vector>

/// What the equaliser's line shows of ten gains, at a fixed rate of 48 kHz: a picture of the
/// setting, whatever the device's rate is. Filters after R. Bristow-Johnson, "Cookbook formulae for
/// audio EQ biquad filter coefficients".
namespace orvanta::eqResponseLine {

/// The line spans so much up and down, in dB.
inline constexpr double kReachDB = 12.0;

/// Hz at `share` of the width, 0 to 1: 20 Hz to 20 kHz on a logarithmic axis.
[[nodiscard]] double frequencyAt(double share) noexcept;

/// dB of all bands together. Bands within 0.05 dB of flat are left out.
[[nodiscard]] double responseDB(const EQPreset& preset, double frequency) noexcept;

/// The line's height for each whole x from 0 to `width`, downwards from the top of a drawing of
/// `height`. Beyond the drawing where the response is beyond the reach.
[[nodiscard]] std::vector<double> heights(const EQPreset& preset, int width, double height);

} // namespace orvanta::eqResponseLine
