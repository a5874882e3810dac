#pragma once

#include "core/platform/RunLoop.h"

#include <memory>
#include <string_view>
#include <thread>

namespace orvanta {

class ThreadTaskLoop;

/// A main queue for programs without a toolkit: on the thread that calls `run`, or on a thread of
/// its own after `start`; one of the two. It wakes for due tasks only.
class WorkerRunLoop final : public RunLoop {
public:
    WorkerRunLoop();

    /// Ends `run`, or the thread of `start`, after the task that runs and drops the rest. May be
    /// called from a task, which then is the last.
    ~WorkerRunLoop() override;

    /// Runs the tasks on the calling thread until `quit`. What is left stays for the next `run`.
    void run();

    /// Makes `run` return once the running task has ended; if `run` has not begun, as soon as it
    /// does. From any thread and from a task, but not from a signal handler.
    void quit();

    /// Runs the tasks on a new thread of this name (its first 15 bytes) until destruction or
    /// `quit`. A second call does nothing.
    void start(std::string_view threadName);

    void post(Task task) override;
    void postAfter(Seconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task) override;
    [[nodiscard]] Seconds now() const override;

private:
    const std::shared_ptr<ThreadTaskLoop> loop_;
    std::thread thread_;
};

} // namespace orvanta
