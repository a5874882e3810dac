#include "platform/runloop/TaskSchedule.h"

#include <algorithm>
#include <utility>

namespace orvanta {

struct TimerState {
    Seconds interval{};
    Instant period{};
    Task task;
    std::atomic<bool> isValid = true;
};

namespace {

/// The owner's end of a repeating timer. It may outlive the schedule.
class ScheduledTimer final : public RepeatingTimer {
public:
    ScheduledTimer(std::weak_ptr<TaskSchedule> schedule, std::shared_ptr<TimerState> state)
        : schedule_(std::move(schedule)), state_(std::move(state)) {}

    ~ScheduledTimer() override { forgetTicks(); }

    [[nodiscard]] Seconds interval() const override { return state_->interval; }

    void invalidate() override { forgetTicks(); }

    [[nodiscard]] bool isValid() const override { return state_->isValid; }

private:
    void forgetTicks() {
        if (!state_->isValid.exchange(false))
            return;
        if (const auto schedule = schedule_.lock())
            schedule->forget(*state_);
    }

    const std::weak_ptr<TaskSchedule> schedule_;
    const std::shared_ptr<TimerState> state_;
};

/// The first tick of the timer's phase after `now`.
Instant nextTick(Instant tick, Instant period, Instant now) {
    const Instant next = tick + period;
    return next > now ? next : next + period * ((now - next) / period + 1);
}

} // namespace

TaskSchedule::TaskSchedule(std::shared_ptr<const TaskClock> clock,
                           std::shared_ptr<PostingOrder> order, std::function<void()> firstChanged)
    : clock_(std::move(clock)), order_(std::move(order)), firstChanged_(std::move(firstChanged)) {}

void TaskSchedule::post(Task task) {
    add(now(), std::move(task), nullptr);
}

void TaskSchedule::postAfter(Seconds delay, Task task) {
    add(now() + wholeNanoseconds(delay), std::move(task), nullptr);
}

std::unique_ptr<RepeatingTimer> TaskSchedule::repeat(Seconds interval, Task task) {
    auto timer = std::make_shared<TimerState>();
    timer->interval = interval;
    // An interval of nothing would keep the queue busy for ever.
    timer->period = std::max(wholeNanoseconds(interval), Instant(1));
    timer->task = std::move(task);
    add(now() + timer->period, {}, timer);
    return std::make_unique<ScheduledTimer>(weak_from_this(), std::move(timer));
}

std::optional<TaskPosition> TaskSchedule::first() const {
    const std::scoped_lock guard(mutex_);
    if (heap_.isEmpty())
        return std::nullopt;
    return heap_.first();
}

WaitingTasks TaskSchedule::waiting() const {
    WaitingTasks waiting;
    const std::scoped_lock guard(mutex_);
    for (const WaitingTask& task : heap_.tasks()) {
        if (task.timer)
            waiting.timerIntervals.push_back(task.timer->interval);
        else
            ++waiting.posted;
    }
    std::ranges::sort(waiting.timerIntervals);
    return waiting;
}

bool TaskSchedule::runFirst(Instant time) {
    WaitingTask next;
    {
        const std::scoped_lock guard(mutex_);
        if (heap_.isEmpty() || heap_.first().due > time)
            return false;
        next = heap_.pop();
    }
    if (next.timer)
        tick(next.position, next.timer);
    else
        next.task();
    return true;
}

void TaskSchedule::close() {
    std::vector<WaitingTask> dropped;
    {
        const std::scoped_lock guard(mutex_);
        closed_ = true;
        dropped = heap_.takeAll();
    }
    for (const WaitingTask& task : dropped) {
        if (task.timer)
            task.timer->isValid = false;
    }
}

void TaskSchedule::forget(const TimerState& timer) {
    std::vector<WaitingTask> dropped;
    const std::scoped_lock guard(mutex_);
    dropped = heap_.takeTicks(timer);
}

void TaskSchedule::add(Instant due, Task task, std::shared_ptr<TimerState> timer) {
    // Outside the lock's block: what a closed schedule turns away may post when it is destroyed.
    WaitingTask added{{due, 0}, std::move(task), std::move(timer)};
    bool isFirst = false;
    {
        const std::scoped_lock guard(mutex_);
        if (closed_ && added.timer)
            added.timer->isValid = false;
        // A timer that was invalidated during its tick has no next one.
        if (closed_ || (added.timer && !added.timer->isValid))
            return;
        added.position.order = order_->fetch_add(1, std::memory_order_relaxed);
        isFirst = heap_.isEmpty() || added.position < heap_.first();
        heap_.push(std::move(added));
    }
    if (isFirst && firstChanged_)
        firstChanged_();
}

void TaskSchedule::tick(const TaskPosition& position, const std::shared_ptr<TimerState>& timer) {
    if (timer->isValid)
        timer->task();
    if (timer->isValid)
        add(nextTick(position.due, timer->period, now()), {}, timer);
}

} // namespace orvanta
