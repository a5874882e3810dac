#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace orvanta::test {

/// Sines of equal amplitude at once, at 48 kHz. Every sample is a whole 16-bit step, so files and
/// players carry it without loss, and none is zero, so that a hole is told from a crossing.
std::vector<float> tones(std::span<const double> hertz, double amplitude, std::size_t frames);

/// Amplitude of one sine in samples at 48 kHz that hold whole periods of everything in them.
double amplitudeAt(double hertz, std::span<const float> samples);

} // namespace orvanta::test
