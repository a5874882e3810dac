#pragma once

#include "platform/runloop/Instant.h"

#include <compare>
#include <cstdint>
#include <memory>
#include <vector>

namespace orvanta {

/// What the ticks of one repeating timer share.
struct TimerState;

/// When a task runs relative to others: by its time, at equal times by the order of posting.
struct TaskPosition {
    Instant due{};
    std::uint64_t order = 0;

    auto operator<=>(const TaskPosition&) const = default;
};

/// A task that waits for its time, or (with `timer`) the next tick of a repeating timer.
struct WaitingTask {
    TaskPosition position;
    Task task;
    std::shared_ptr<TimerState> timer;
};

/// Waiting tasks, earliest first. Not safe from several threads.
class TaskHeap {
public:
    [[nodiscard]] bool isEmpty() const { return tasks_.empty(); }

    /// Position of the earliest. The heap must not be empty.
    [[nodiscard]] const TaskPosition& first() const { return tasks_.front().position; }

    /// All, in no particular order.
    [[nodiscard]] const std::vector<WaitingTask>& tasks() const { return tasks_; }

    void push(WaitingTask task);

    /// Takes the earliest out. The heap must not be empty.
    [[nodiscard]] WaitingTask pop();

    /// Takes out the waiting ticks of `timer`.
    [[nodiscard]] std::vector<WaitingTask> takeTicks(const TimerState& timer);

    /// Takes everything out, in no particular order.
    [[nodiscard]] std::vector<WaitingTask> takeAll();

private:
    std::vector<WaitingTask> tasks_;
};

} // namespace orvanta
