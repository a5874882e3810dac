#pragma once

#include "platform/runloop/Instant.h"

namespace orvanta {

/// The time that task queues go by. Read from any thread; never goes back.
class TaskClock {
public:
    TaskClock() = default;
    TaskClock(const TaskClock&) = delete;
    TaskClock& operator=(const TaskClock&) = delete;
    virtual ~TaskClock() = default;

    [[nodiscard]] virtual Instant now() const = 0;
};

} // namespace orvanta
