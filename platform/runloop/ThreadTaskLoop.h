#pragma once

#include "platform/runloop/MonotonicClock.h"
#include "platform/runloop/TaskSchedule.h"

#include <condition_variable>
#include <memory>
#include <mutex>

namespace orvanta {

/// A schedule on the monotonic clock and the loop that runs it on some thread. The thread sleeps
/// until the earliest task is due, however long, and is woken by an earlier one only.
class ThreadTaskLoop {
public:
    ThreadTaskLoop();
    ThreadTaskLoop(const ThreadTaskLoop&) = delete;
    ThreadTaskLoop& operator=(const ThreadTaskLoop&) = delete;
    ~ThreadTaskLoop() = default;

    [[nodiscard]] TaskSchedule& schedule() { return *schedule_; }

    [[nodiscard]] const TaskSchedule& schedule() const { return *schedule_; }

    /// Runs tasks on the calling thread until `quit`. One that came before makes it return at once;
    /// several count as one.
    void run();

    /// Ends `run` once the running task has ended. From any thread.
    void quit();

private:
    void wake();
    [[nodiscard]] bool takeQuit();
    void waitForTask();

    const std::shared_ptr<const MonotonicClock> clock_ = std::make_shared<MonotonicClock>();
    const std::shared_ptr<TaskSchedule> schedule_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isWoken_ = false;
    bool hasQuit_ = false;
};

} // namespace orvanta
