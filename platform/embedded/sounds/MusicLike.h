#pragma once

#include "platform/embedded/sounds/Sound.h"

namespace orvanta::embedded {

/// A small band that plays on for ever: chords, bass, drums and a tune it makes up, in stereo.
/// The seed decides key, tempo, chords and tune. Peaks stay below full scale, around -16 dBFS RMS.
Sound musicLike(std::uint32_t seed = 1);

} // namespace orvanta::embedded
