#include "platform/runloop/VirtualSerialQueue.h"

#include "platform/runloop/VirtualRunLoop.h"
#include "platform/runloop/VirtualTimeline.h"

#include <utility>

namespace orvanta {

VirtualSerialQueue::VirtualSerialQueue(const std::shared_ptr<VirtualTimeline>& timeline,
                                       std::string label, QualityOfService quality)
    : label_(std::move(label)), quality_(quality), schedule_(timeline->makeSchedule()) {}

VirtualSerialQueue::~VirtualSerialQueue() {
    schedule_->close();
}

void VirtualSerialQueue::post(Task task) {
    schedule_->post(std::move(task));
}

void VirtualSerialQueue::postAfter(Seconds delay, Task task) {
    schedule_->postAfter(delay, std::move(task));
}

std::unique_ptr<RepeatingTimer> VirtualSerialQueue::repeat(Seconds interval, Task task) {
    return schedule_->repeat(interval, std::move(task));
}

Seconds VirtualSerialQueue::now() const {
    return inSeconds(schedule_->now());
}

void VirtualSerialQueue::postAndWait(Task task) {
    bool hasRun = false;
    schedule_->post([&task, &hasRun] {
        task();
        hasRun = true;
    });
    while (!hasRun && schedule_->runFirst(schedule_->now())) {
    }
}

VirtualSerialQueues::VirtualSerialQueues(const VirtualRunLoop& runLoop)
    : timeline_(runLoop.timeline()) {}

std::unique_ptr<SerialQueue> VirtualSerialQueues::make(std::string label,
                                                       QualityOfService quality) {
    return std::make_unique<VirtualSerialQueue>(timeline_, std::move(label), quality);
}

} // namespace orvanta
