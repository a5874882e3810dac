#include "platform/runloop/ThreadSerialQueue.h"

#include "platform/runloop/ThreadTaskLoop.h"
#include "platform/runloop/WorkerThread.h"

#include <future>
#include <utility>

namespace orvanta {
namespace {

/// Labels of one program begin alike; their last part is what tells them apart.
std::string lastPart(const std::string& label) {
    return label.substr(label.rfind('.') + 1);
}

} // namespace

ThreadSerialQueue::ThreadSerialQueue(std::string label, QualityOfService quality)
    : label_(std::move(label)), quality_(quality), loop_(std::make_shared<ThreadTaskLoop>()) {}

ThreadSerialQueue::~ThreadSerialQueue() {
    loop_->schedule().close();
    loop_->quit();
    endThread(thread_);
}

TaskSchedule& ThreadSerialQueue::startedSchedule() {
    std::call_once(started_, [this] {
        thread_ = std::thread([loop = loop_, name = lastPart(label_), quality = quality_] {
            nameThisThread(name);
            applyToThisThread(quality);
            loop->run();
        });
    });
    return loop_->schedule();
}

void ThreadSerialQueue::post(Task task) {
    startedSchedule().post(std::move(task));
}

void ThreadSerialQueue::postAfter(Seconds delay, Task task) {
    startedSchedule().postAfter(delay, std::move(task));
}

std::unique_ptr<RepeatingTimer> ThreadSerialQueue::repeat(Seconds interval, Task task) {
    return startedSchedule().repeat(interval, std::move(task));
}

Seconds ThreadSerialQueue::now() const {
    return inSeconds(loop_->schedule().now());
}

void ThreadSerialQueue::postAndWait(Task task) {
    // The task owns the promise: one that a closed queue drops ends the wait as well.
    const auto ran = std::make_shared<std::promise<void>>();
    const std::future<void> end = ran->get_future();
    post([&task, owned = ran] {
        task();
        owned->set_value();
    });
    end.wait();
}

std::unique_ptr<SerialQueue> ThreadSerialQueues::make(std::string label, QualityOfService quality) {
    return std::make_unique<ThreadSerialQueue>(std::move(label), quality);
}

} // namespace orvanta
