#include "platform/runloop/ThreadTaskLoop.h"

namespace orvanta {

ThreadTaskLoop::ThreadTaskLoop()
    : schedule_(std::make_shared<TaskSchedule>(clock_, std::make_shared<PostingOrder>(),
                                               [this] { wake(); })) {}

void ThreadTaskLoop::run() {
    while (!takeQuit()) {
        if (!schedule_->runFirst(clock_->now()))
            waitForTask();
    }
}

void ThreadTaskLoop::quit() {
    const std::scoped_lock guard(mutex_);
    hasQuit_ = true;
    changed_.notify_all();
}

void ThreadTaskLoop::wake() {
    const std::scoped_lock guard(mutex_);
    isWoken_ = true;
    changed_.notify_all();
}

bool ThreadTaskLoop::takeQuit() {
    const std::scoped_lock guard(mutex_);
    const bool quits = hasQuit_;
    hasQuit_ = false;
    return quits;
}

void ThreadTaskLoop::waitForTask() {
    const auto isNeeded = [this] {
        return isWoken_ || hasQuit_;
    };
    std::unique_lock lock(mutex_);
    // A task posted after the look at the schedule has set `isWoken_`, so the wait ends at once.
    if (const auto first = schedule_->first())
        changed_.wait_until(lock, clock_->timePoint(first->due), isNeeded);
    else
        changed_.wait(lock, isNeeded);
    isWoken_ = false;
}

} // namespace orvanta
