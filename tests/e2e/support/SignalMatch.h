#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orvanta::test {

/// How one recording lies on a known signal.
struct SignalMatch {
    /// `recording[i]` is `signal[i + offset]` times `gain`.
    std::int64_t offset = 0;
    double gain = 0;
    /// Largest difference between the recording and the signal times the gain.
    double residual = 0;
    /// Samples compared: all from the first to the last one that is not silent, as far as the
    /// signal is known there.
    std::size_t frames = 0;
};

/// Finds the signal in the recording by cross-correlation. Nothing when the recording is silent or
/// holds no stretch that resembles the signal.
std::optional<SignalMatch> findSignal(std::span<const float> recording,
                                      std::span<const float> signal);

/// Root of the mean square; 0 of nothing.
double level(std::span<const float> samples);

} // namespace orvanta::test
