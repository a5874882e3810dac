#pragma once

#include "platform/embedded/sounds/Sound.h"

namespace orvanta::embedded {

/// A walk over a windy island that goes on for ever: wind and surf, a low drone, footsteps, and now
/// and then a find that chimes, a spell that rushes past or thunder. Two channels. The seed decides
/// what happens when. Peaks stay below full scale.
Sound gameLike(std::uint32_t seed = 1);

} // namespace orvanta::embedded
