#include "app/bridge/LevelClock.h"

namespace orvanta {

void LevelClock::setRunning(bool isRunning) {
    if (isRunning == this->isRunning())
        return;
    timer_ = isRunning ? mainRunLoop_.repeat(interval, [this] { Q_EMIT ticked(); }) : nullptr;
    if (isRunning)
        Q_EMIT started();
}

} // namespace orvanta
