#pragma once

#include "core/platform/RunLoop.h"
#include "platform/runloop/TaskSchedule.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace orvanta {

class VirtualTimeline;

/// A main queue on a clock that stands still until it is advanced by hand: hours pass in no time,
/// and always in the same way. Tasks run inside `advance` and `runUntilIdle`, on their caller's
/// thread; posting is safe from any thread.
class VirtualRunLoop final : public RunLoop {
public:
    VirtualRunLoop();

    /// Drops what waits and invalidates the timers. May be called from a task.
    ~VirtualRunLoop() override;

    /// Lets this time pass and runs what falls due in it, the end included: in due order, at equal
    /// times in the order of posting, `now` being each task's own time. What these tasks post runs
    /// in the same advance if it falls due in it. Returns how many tasks and timer ticks ran.
    std::size_t advance(Seconds time);

    /// Runs what is due without letting time pass, until nothing more is.
    std::size_t runUntilIdle();

    /// How long until the next task; nothing when none waits.
    [[nodiscard]] std::optional<Seconds> timeToNextTask() const;

    /// What waits on this queue itself, not on the serial ones that share its clock.
    [[nodiscard]] WaitingTasks waiting() const;

    void post(Task task) override;
    void postAfter(Seconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task) override;
    [[nodiscard]] Seconds now() const override;

    /// The clock, for the serial queues that share it.
    [[nodiscard]] const std::shared_ptr<VirtualTimeline>& timeline() const { return timeline_; }

private:
    const std::shared_ptr<VirtualTimeline> timeline_;
    const std::shared_ptr<TaskSchedule> schedule_;
};

} // namespace orvanta
