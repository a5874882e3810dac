#pragma once

#include "core/platform/RunLoop.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace orvanta {

class TaskSchedule;

/// A main queue on the thread of somebody else's event loop, which runs what is due.
class DrivenRunLoop final : public RunLoop {
public:
    /// `firstChanged` is called, on any thread, when there is an earlier task than before; it must
    /// last for as long as another thread may post.
    explicit DrivenRunLoop(std::function<void()> firstChanged);

    /// Drops what waits. May come from a task.
    ~DrivenRunLoop() override;

    /// Runs what is due by now, in order, but nothing that falls due meanwhile: the event loop has
    /// its turn between. Returns how many tasks and ticks ran.
    std::size_t runDue();

    /// Nothing when no task waits, zero when one is due.
    [[nodiscard]] std::optional<Seconds> timeToNextTask() const;

    void post(Task task) override;
    void postAfter(Seconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task) override;
    [[nodiscard]] Seconds now() const override;

private:
    const std::shared_ptr<TaskSchedule> schedule_;
};

} // namespace orvanta
