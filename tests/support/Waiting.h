#pragma once

#include <chrono>
#include <functional>

namespace orvanta::test {

using Seconds = std::chrono::duration<double>;

/// Asks again and again, a few hundred times a second, until the answer is yes or `bound` is over.
/// The bound says when to give up, it never says how long something takes.
bool eventually(Seconds bound, const std::function<bool()>& isSo);

/// Lets the audio system go on for a while: only for recording a stretch of sound, never in place
/// of a condition that could be asked for.
void letTimePass(Seconds duration);

/// Seconds on the monotonic clock.
double monotonicSeconds();

} // namespace orvanta::test
