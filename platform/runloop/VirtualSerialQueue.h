#pragma once

#include "core/platform/SerialQueue.h"

#include <memory>
#include <string>

namespace orvanta {

class TaskSchedule;
class VirtualRunLoop;
class VirtualTimeline;

/// A serial queue on the clock of a virtual run loop. Its tasks run when that one advances, on
/// the same thread, each at its time.
class VirtualSerialQueue final : public SerialQueue {
public:
    VirtualSerialQueue(const std::shared_ptr<VirtualTimeline>& timeline, std::string label,
                       QualityOfService quality);

    /// Drops what waits and invalidates the timers.
    ~VirtualSerialQueue() override;

    void post(Task task) override;
    void postAfter(Seconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task) override;
    [[nodiscard]] Seconds now() const override;
    /// Runs what is due on this queue at once, on the caller's thread.
    void postAndWait(Task task) override;

    [[nodiscard]] const std::string& label() const override { return label_; }

    [[nodiscard]] QualityOfService qualityOfService() const override { return quality_; }

private:
    const std::string label_;
    const QualityOfService quality_;
    const std::shared_ptr<TaskSchedule> schedule_;
};

/// Makes serial queues on the clock of `runLoop`. They may outlive it, but no task of theirs runs
/// any more then.
class VirtualSerialQueues final : public SerialQueues {
public:
    explicit VirtualSerialQueues(const VirtualRunLoop& runLoop);

    [[nodiscard]] std::unique_ptr<SerialQueue> make(std::string label,
                                                    QualityOfService quality) override;

private:
    const std::shared_ptr<VirtualTimeline> timeline_;
};

} // namespace orvanta
