#pragma once

#include "platform/embedded/sounds/Sound.h"

namespace orvanta::embedded {

/// One voice that speaks on for ever in no language: syllables of a hiss and a vowel with gliding
/// formants, phrases whose pitch falls, pauses for breath. One channel. The seed decides the pitch
/// of the voice and what it says. Peaks stay below full scale.
Sound speechLike(std::uint32_t seed = 1);

} // namespace orvanta::embedded
