#include "platform/runloop/DrivenRunLoop.h"

#include "platform/runloop/MonotonicClock.h"
#include "platform/runloop/TaskSchedule.h"

#include <algorithm>
#include <utility>

namespace orvanta {

DrivenRunLoop::DrivenRunLoop(std::function<void()> firstChanged)
    : schedule_(std::make_shared<TaskSchedule>(std::make_shared<MonotonicClock>(),
                                               std::make_shared<PostingOrder>(),
                                               std::move(firstChanged))) {}

DrivenRunLoop::~DrivenRunLoop() {
    schedule_->close();
}

std::size_t DrivenRunLoop::runDue() {
    // A task may destroy this object.
    const auto schedule = schedule_;
    const Instant begun = schedule->now();
    std::size_t count = 0;
    while (schedule->runFirst(begun))
        ++count;
    return count;
}

std::optional<Seconds> DrivenRunLoop::timeToNextTask() const {
    const auto first = schedule_->first();
    if (!first)
        return std::nullopt;
    return inSeconds(std::max(first->due - schedule_->now(), Instant::zero()));
}

void DrivenRunLoop::post(Task task) {
    schedule_->post(std::move(task));
}

void DrivenRunLoop::postAfter(Seconds delay, Task task) {
    schedule_->postAfter(delay, std::move(task));
}

std::unique_ptr<RepeatingTimer> DrivenRunLoop::repeat(Seconds interval, Task task) {
    return schedule_->repeat(interval, std::move(task));
}

Seconds DrivenRunLoop::now() const {
    return inSeconds(schedule_->now());
}

} // namespace orvanta
