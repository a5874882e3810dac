#pragma once

#include "core/dsp/CompressorPreset.h"
#include "core/dsp/kernels/CompressorKernels.h"

#include <array>
#include <cstddef>

/// From settings to the numbers that a compressor runs with.
namespace orvanta {

/// Hz.
inline constexpr std::array<double, 2> kCompressorCrossoverFreqs{250.0, 4000.0};

/// Samples that a look-ahead line holds. A delay is one less at the most.
inline constexpr std::size_t kMaxLookaheadSamples = 480;

/// Second-order low-pass and high-pass rows after R. Bristow-Johnson's cookbook, with a Q of the
/// square root of 2: two such sections in a row stand 6 dB above at the crossover, a part of how
/// this compressor sounds.
[[nodiscard]] Crossover crossoverAt(double sampleRate) noexcept;

/// Stops the program when `lookaheadMs` and the rate give no number of samples that an integer
/// could hold: such a setting comes from a fault and not from a user.
[[nodiscard]] CompressorBand compressorBandOf(const CompressorBandSettings& settings,
                                              double sampleRate) noexcept;

} // namespace orvanta
