#include "platform/runloop/WorkerRunLoop.h"

#include "platform/runloop/ThreadTaskLoop.h"
#include "platform/runloop/WorkerThread.h"

#include <string>
#include <utility>

namespace orvanta {

WorkerRunLoop::WorkerRunLoop() : loop_(std::make_shared<ThreadTaskLoop>()) {}

WorkerRunLoop::~WorkerRunLoop() {
    loop_->schedule().close();
    loop_->quit();
    endThread(thread_);
}

void WorkerRunLoop::run() {
    // A task may destroy this object; the loop then still has to return.
    const auto loop = loop_;
    loop->run();
}

void WorkerRunLoop::quit() {
    loop_->quit();
}

void WorkerRunLoop::start(std::string_view threadName) {
    if (thread_.joinable())
        return;
    thread_ = std::thread([loop = loop_, name = std::string(threadName)] {
        nameThisThread(name);
        loop->run();
    });
}

void WorkerRunLoop::post(Task task) {
    loop_->schedule().post(std::move(task));
}

void WorkerRunLoop::postAfter(Seconds delay, Task task) {
    loop_->schedule().postAfter(delay, std::move(task));
}

std::unique_ptr<RepeatingTimer> WorkerRunLoop::repeat(Seconds interval, Task task) {
    return loop_->schedule().repeat(interval, std::move(task));
}

Seconds WorkerRunLoop::now() const {
    return inSeconds(loop_->schedule().now());
}

} // namespace orvanta
