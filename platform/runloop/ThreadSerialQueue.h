#pragma once

#include "core/platform/SerialQueue.h"

#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace orvanta {

class TaskSchedule;
class ThreadTaskLoop;

/// A serial queue on a thread of its own, which starts with the first task and sleeps while nothing
/// is due. The thread is named after the last part of the label ("com.example.discovery" becomes
/// "discovery"), cut to the 15 bytes that a thread name may have.
class ThreadSerialQueue final : public SerialQueue {
public:
    ThreadSerialQueue(std::string label, QualityOfService quality);

    /// Waits for the task that runs and drops the rest, also what is posted meanwhile. May be
    /// called from a task of this queue, which then is the last.
    ~ThreadSerialQueue() override;

    void post(Task task) override;
    void postAfter(Seconds delay, Task task) override;
    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task) override;
    [[nodiscard]] Seconds now() const override;
    void postAndWait(Task task) override;

    [[nodiscard]] const std::string& label() const override { return label_; }

    [[nodiscard]] QualityOfService qualityOfService() const override { return quality_; }

private:
    [[nodiscard]] TaskSchedule& startedSchedule();

    const std::string label_;
    const QualityOfService quality_;
    const std::shared_ptr<ThreadTaskLoop> loop_;
    std::once_flag started_;
    std::thread thread_;
};

class ThreadSerialQueues final : public SerialQueues {
public:
    [[nodiscard]] std::unique_ptr<SerialQueue> make(std::string label,
                                                    QualityOfService quality) override;
};

} // namespace orvanta
