#include "platform/runloop/TaskHeap.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvanta {
namespace {

/// The standard heap keeps its greatest in front; ours keeps the earliest.
bool isLater(const WaitingTask& left, const WaitingTask& right) {
    return left.position > right.position;
}

} // namespace

void TaskHeap::push(WaitingTask task) {
    tasks_.push_back(std::move(task));
    std::push_heap(tasks_.begin(), tasks_.end(), isLater);
}

WaitingTask TaskHeap::pop() {
    std::pop_heap(tasks_.begin(), tasks_.end(), isLater);
    WaitingTask task = std::move(tasks_.back());
    tasks_.pop_back();
    return task;
}

std::vector<WaitingTask> TaskHeap::takeTicks(const TimerState& timer) {
    const auto ticks = std::partition(tasks_.begin(), tasks_.end(), [&](const WaitingTask& task) {
        return task.timer.get() != &timer;
    });
    std::vector<WaitingTask> taken(std::make_move_iterator(ticks),
                                   std::make_move_iterator(tasks_.end()));
    tasks_.erase(ticks, tasks_.end());
    std::make_heap(tasks_.begin(), tasks_.end(), isLater);
    return taken;
}

std::vector<WaitingTask> TaskHeap::takeAll() {
    return std::exchange(tasks_, {});
}

} // namespace orvanta
