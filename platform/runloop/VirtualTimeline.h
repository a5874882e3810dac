#pragma once

#include "platform/runloop/TaskSchedule.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace orvanta {

/// Time that moves only when told to, and the schedules that go by it: one virtual thread runs
/// the tasks of them all, in due order, at equal times in the order of posting.
class VirtualTimeline final : public TaskClock,
                              public std::enable_shared_from_this<VirtualTimeline> {
public:
    [[nodiscard]] Instant now() const override { return now_; }

    /// A schedule that runs with this timeline for as long as somebody holds it.
    [[nodiscard]] std::shared_ptr<TaskSchedule> makeSchedule();

    /// Moves to `target` and runs, each at its own time, what falls due until then, also what
    /// these tasks post. Returns how many ran. One thread at a time.
    std::size_t advanceTo(Instant target);

    /// When the next task is due; nothing when none waits.
    [[nodiscard]] std::optional<Instant> nextDue() const;

private:
    [[nodiscard]] std::vector<std::shared_ptr<TaskSchedule>> schedules() const;
    [[nodiscard]] std::shared_ptr<TaskSchedule> earliestSchedule() const;
    void moveTo(Instant time);

    std::atomic<Instant> now_ = Instant::zero();
    const std::shared_ptr<PostingOrder> order_ = std::make_shared<PostingOrder>();
    mutable std::mutex mutex_;
    std::vector<std::weak_ptr<TaskSchedule>> schedules_;
};

} // namespace orvanta
