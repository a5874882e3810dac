#pragma once

#include "platform/embedded/sounds/Sound.h"

#include <vector>

/// Sounds made of other sounds. Of silence comes silence.
namespace orvanta::embedded {

/// When something sounds: not before `before`, then `on` and `off` by turns. Seconds; a negative
/// `before` has begun earlier. Without `off` it does not end.
struct Turns {
    double before = 0;
    double on = 1;
    double off = 0;

    [[nodiscard]] bool isOn(double second) const noexcept;
};

/// The sound, every sample of it multiplied with `gain`.
Sound scaled(const Sound& sound, float gain);

/// All of them together, on two channels: what has a single one is heard on both, of what has more
/// than two the first two are heard.
Sound mixtureOf(std::vector<Sound> parts);

/// The sound in turns. It fades within milliseconds, and while it is silent it stands still, so
/// that a speaker goes on where he has stopped.
Sound inTurns(const Sound& sound, Turns turns);

} // namespace orvanta::embedded
