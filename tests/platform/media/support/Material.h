#pragma once

#include "core/platform/AudioFileWriter.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvanta::test {

/// Sound that is known sample by sample.
using Material = std::function<float(std::uint32_t channel, std::uint64_t frame)>;

/// A tone in each channel whose pitch wanders, so that no stretch resembles another and a shift by
/// one frame is plain to see, and yet a codec has an easy task.
Material wanderingTones(double sampleRate);

/// What every encoded stretch of these tones exceeds by `signalToNoise`, and what one that stands a
/// frame off its place or in the other channel stays below, in dB.
constexpr double kGoodEncoding = 20;
constexpr double kWrongPlace = 10;

/// Hands over `length` frames of the material in blocks; returns the last reason for a failure.
std::optional<std::string> writeMaterial(AudioFile& file, const Material& material,
                                         std::uint32_t channels, std::uint64_t start,
                                         std::uint64_t length, std::size_t blockSize = 4800);

/// How far an interleaved recording lies above its difference from the material, in dB, all
/// channels together. Its frame `skip` is held against the material's frame `start`.
double signalToNoise(std::span<const float> interleaved, std::uint32_t channels,
                     const Material& material, std::uint64_t skip = 0, std::uint64_t start = 0);

} // namespace orvanta::test
