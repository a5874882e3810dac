#pragma once

#include "platform/qt/eventloop/EventLoopPump.h"
#include "platform/runloop/DrivenRunLoop.h"

namespace orvanta {

/// The main queue, on the event loop of the thread that makes it.
class MainRunLoop {
public:
    [[nodiscard]] RunLoop& queue() { return loop_; }

private:
    EventLoopPump pump_{[this] {
        loop_.runDue();
        return loop_.timeToNextTask();
    }};
    DrivenRunLoop loop_{[this] {
        pump_.wake();
    }};
};

} // namespace orvanta
