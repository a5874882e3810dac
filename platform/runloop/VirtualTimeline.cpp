#include "platform/runloop/VirtualTimeline.h"

#include <algorithm>

namespace orvanta {

std::shared_ptr<TaskSchedule> VirtualTimeline::makeSchedule() {
    auto schedule = std::make_shared<TaskSchedule>(shared_from_this(), order_);
    const std::scoped_lock guard(mutex_);
    std::erase_if(schedules_, [](const auto& other) { return other.expired(); });
    schedules_.push_back(schedule);
    return schedule;
}

std::size_t VirtualTimeline::advanceTo(Instant target) {
    std::size_t count = 0;
    for (;;) {
        const auto schedule = earliestSchedule();
        const auto first = schedule ? schedule->first() : std::nullopt;
        if (!first || first->due > target)
            break;
        moveTo(first->due);
        if (schedule->runFirst(first->due))
            ++count;
    }
    moveTo(target);
    return count;
}

std::optional<Instant> VirtualTimeline::nextDue() const {
    const auto schedule = earliestSchedule();
    const auto first = schedule ? schedule->first() : std::nullopt;
    return first ? std::optional(first->due) : std::nullopt;
}

std::vector<std::shared_ptr<TaskSchedule>> VirtualTimeline::schedules() const {
    std::vector<std::shared_ptr<TaskSchedule>> held;
    const std::scoped_lock guard(mutex_);
    for (const auto& schedule : schedules_) {
        if (auto strong = schedule.lock())
            held.push_back(std::move(strong));
    }
    return held;
}

std::shared_ptr<TaskSchedule> VirtualTimeline::earliestSchedule() const {
    std::shared_ptr<TaskSchedule> earliest;
    std::optional<TaskPosition> position;
    for (auto& schedule : schedules()) {
        const auto first = schedule->first();
        if (first && (!position || *first < *position)) {
            position = first;
            earliest = std::move(schedule);
        }
    }
    return earliest;
}

void VirtualTimeline::moveTo(Instant time) {
    // A task may have advanced the clock itself; it never goes back.
    now_ = std::max(now_.load(), time);
}

} // namespace orvanta
