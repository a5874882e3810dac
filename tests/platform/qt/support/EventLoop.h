#pragma once

#include "tests/support/Waiting.h"

#include <functional>

namespace orvanta::test {

/// Qt's application object, which event loops need; made once.
void startQt();

/// Runs the event loop of this thread until the answer is yes; false when `bound` is over before.
bool eventuallyInEventLoop(Seconds bound, const std::function<bool()>& isSo);

/// Runs the event loop until nothing has come of it for a while.
/// False when something always does: an event loop that cannot rest.
bool eventLoopComesToRest();

} // namespace orvanta::test
