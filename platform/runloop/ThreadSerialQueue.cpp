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
    std::promise<void> ran;
    post([&task, &ran] {
        task();
        ran.set_value();
    });
    ran.get_future().wait();
}

std::unique_ptr<SerialQueue> ThreadSerialQueues::make(std::string label, QualityOfService quality) {
    return std::make_unique<ThreadSerialQueue>(std::move(label), quality);
}

} // namespace orvanta
