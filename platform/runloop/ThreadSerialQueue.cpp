#include "platform/runloop/ThreadSerialQueue.h"

#include "platform/runloop/ThreadTaskLoop.h"
#include "platform/runloop/WorkerThread.h"

#include <utility>

namespace orvanta {
namespace {

/// Labels of one program begin alike; their last part is what tells them apart.
std::string lastPart(const std::string& label) {
    return label.substr(label.rfind('.') + 1);
}

} // namespace

ThreadSerialQueue::ThreadSerialQueue(std::string label, QualityOfService quality)
    : label_(std::move(label)),
      quality_(quality),
      loop_(std::make_shared<ThreadTaskLoop>()),
      thread_([loop = loop_, name = lastPart(label_), quality] {
          nameThisThread(name);
          applyToThisThread(quality);
          loop->run();
      }) {}

ThreadSerialQueue::~ThreadSerialQueue() {
    loop_->schedule().close();
    loop_->quit();
    endThread(thread_);
}

void ThreadSerialQueue::post(Task task) {
    loop_->schedule().post(std::move(task));
}

void ThreadSerialQueue::postAfter(Seconds delay, Task task) {
    loop_->schedule().postAfter(delay, std::move(task));
}

std::unique_ptr<RepeatingTimer> ThreadSerialQueue::repeat(Seconds interval, Task task) {
    return loop_->schedule().repeat(interval, std::move(task));
}

Seconds ThreadSerialQueue::now() const {
    return inSeconds(loop_->schedule().now());
}

std::unique_ptr<SerialQueue> ThreadSerialQueues::make(std::string label, QualityOfService quality) {
    return std::make_unique<ThreadSerialQueue>(std::move(label), quality);
}

} // namespace orvanta
