#pragma once

#include "platform/embedded/sounds/Sound.h"

#include <vector>

/// Plain material, exact enough to compare sample by sample. Amplitudes are peaks, 1 is full scale.
namespace orvanta::embedded {

/// One channel of zeros, endlessly.
Sound silence();

/// One channel that holds a value, or several that hold one each.
Sound constant(float value);
Sound constant(std::vector<float> channelValues);

/// One channel of a sine that starts at zero and rises.
Sound tone(double hertz, float amplitude = 0.5F);

/// Two channels, a sine in each.
Sound stereoTone(double leftHertz, double rightHertz, float amplitude = 0.5F);

/// White, one channel, even distribution from -amplitude to amplitude.
Sound noise(std::uint32_t seed = 1, float amplitude = 0.5F);

/// A tone that sounds for `on` seconds and rests for `off` seconds, beginning with sound. The
/// phase starts at zero with every burst.
Sound bursts(double hertz, double on, double off, float amplitude = 0.5F);

/// Frame n of its only channel is n * step: shows lost, doubled or moved frames.
Sound counting(float step = 1.0F / 65536.0F);

enum class AtEnd { fallSilent, startAgain };

/// These samples at any device rate; `channels` of a frame side by side. A last frame that is not
/// whole is dropped.
Sound samples(std::vector<float> interleaved, std::uint32_t channels = 1,
              AtEnd atEnd = AtEnd::fallSilent);

} // namespace orvanta::embedded
