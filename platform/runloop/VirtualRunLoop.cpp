#include "platform/runloop/VirtualRunLoop.h"

#include "platform/runloop/VirtualTimeline.h"

#include <utility>

namespace orvanta {

VirtualRunLoop::VirtualRunLoop()
    : timeline_(std::make_shared<VirtualTimeline>()), schedule_(timeline_->makeSchedule()) {}

VirtualRunLoop::~VirtualRunLoop() {
    schedule_->close();
}

std::size_t VirtualRunLoop::advance(Seconds time) {
    // A task may destroy this object; the timeline then still has to return.
    const auto timeline = timeline_;
    return timeline->advanceTo(timeline->now() + wholeNanoseconds(time));
}

std::size_t VirtualRunLoop::runUntilIdle() {
    return advance(Seconds::zero());
}

std::optional<Seconds> VirtualRunLoop::timeToNextTask() const {
    const auto due = timeline_->nextDue();
    return due ? std::optional(inSeconds(*due - timeline_->now())) : std::nullopt;
}

WaitingTasks VirtualRunLoop::waiting() const {
    return schedule_->waiting();
}

void VirtualRunLoop::post(Task task) {
    schedule_->post(std::move(task));
}

void VirtualRunLoop::postAfter(Seconds delay, Task task) {
    schedule_->postAfter(delay, std::move(task));
}

std::unique_ptr<RepeatingTimer> VirtualRunLoop::repeat(Seconds interval, Task task) {
    return schedule_->repeat(interval, std::move(task));
}

Seconds VirtualRunLoop::now() const {
    return inSeconds(schedule_->now());
}

} // namespace orvanta
