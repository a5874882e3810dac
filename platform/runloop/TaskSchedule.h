#pragma once

#include "platform/runloop/TaskClock.h"
#include "platform/runloop/TaskHeap.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace orvanta {

/// Counts postings. Schedules that go by one clock share it, so that tasks of equal times run in
/// the order of posting across all of them.
using PostingOrder = std::atomic<std::uint64_t>;

/// What a queue has yet to run.
struct WaitingTasks {
    /// Posted ones, without the ticks of timers.
    std::size_t posted = 0;
    /// Of the repeating timers, the shortest first.
    std::vector<Seconds> timerIntervals;
};

/// The tasks and timers of one queue, and when they are due. Somebody else (a thread, a test)
/// decides when to run them. Safe from all threads.
///
/// Tasks run and are destroyed outside the lock: both may post.
class TaskSchedule final : public std::enable_shared_from_this<TaskSchedule> {
public:
    /// `firstChanged` (optional) is called, outside the lock, by the thread whose posting became
    /// the earliest task.
    TaskSchedule(std::shared_ptr<const TaskClock> clock, std::shared_ptr<PostingOrder> order,
                 std::function<void()> firstChanged = {});

    void post(Task task);
    void postAfter(Seconds delay, Task task);

    /// The ticks keep their phase; one that could not run before the next fell due is left out.
    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task);

    [[nodiscard]] Instant now() const { return clock_->now(); }

    /// Position of the earliest task; nothing when none waits.
    [[nodiscard]] std::optional<TaskPosition> first() const;

    [[nodiscard]] WaitingTasks waiting() const;

    /// Runs the earliest task if it is due at `time`; false when none is.
    bool runFirst(Instant time);

    /// Drops what waits and all that is posted from now on, and invalidates the timers. A running
    /// task is not waited for.
    void close();

    /// Takes the waiting tick of an invalidated timer out.
    void forget(const TimerState& timer);

private:
    void add(Instant due, Task task, std::shared_ptr<TimerState> timer);
    void tick(const TaskPosition& position, const std::shared_ptr<TimerState>& timer);

    const std::shared_ptr<const TaskClock> clock_;
    const std::shared_ptr<PostingOrder> order_;
    const std::function<void()> firstChanged_;
    mutable std::mutex mutex_;
    TaskHeap heap_;
    bool closed_ = false;
};

} // namespace orvanta
