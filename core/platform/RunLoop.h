#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace orvanta {

using Task = std::function<void()>;

/// Seconds as the timers of this system are told them.
using Seconds = std::chrono::duration<double>;

/// A repeating timer. Destroying it invalidates it; its own task may do so.
class RepeatingTimer {
public:
    RepeatingTimer() = default;
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;
    virtual ~RepeatingTimer() = default;

    [[nodiscard]] virtual Seconds interval() const = 0;

    /// No further call of its task begins; one that runs on another thread may still be ending.
    virtual void invalidate() = 0;
    [[nodiscard]] virtual bool isValid() const = 0;
};

/// Runs tasks one after the other, in the order in which they fall due; of equal times the one
/// posted first goes first. All operations may be called from any thread.
class TaskQueue {
public:
    TaskQueue() = default;
    TaskQueue(const TaskQueue&) = delete;
    TaskQueue& operator=(const TaskQueue&) = delete;
    virtual ~TaskQueue() = default;

    virtual void post(Task task) = 0;
    virtual void postAfter(Seconds delay, Task task) = 0;

    /// The first call comes one interval from now. An interval must be above zero.
    [[nodiscard]] virtual std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task) = 0;

    /// Time on this queue's clock, counted from a start of its own; never goes back.
    [[nodiscard]] virtual Seconds now() const = 0;
};

/// The main queue: everything of the model, the views and the stores runs on it.
class RunLoop : public TaskQueue {};

} // namespace orvanta
