#include "platform/embedded/cycle/CycleGate.h"

namespace orvanta::embedded {

namespace {

/// One by one: a chain that frees itself recursively could exhaust the stack.
void freeAll(std::shared_ptr<CyclePlan> retired) {
    while (retired)
        retired = std::move(retired->retiredBefore);
}

} // namespace

CycleGate::~CycleGate() {
    freeAll(std::move(retired_));
}

CyclePlan* CycleGate::begin() {
    std::unique_lock lock(mutex_);
    if (isMine())
        return nullptr;
    finished_.wait(lock, [this] { return !running_; });
    if (!current_)
        return nullptr;
    running_ = true;
    owner_ = std::this_thread::get_id();
    return current_.get();
}

void CycleGate::end() {
    {
        const std::scoped_lock guard(mutex_);
        running_ = false;
        ++cycles_;
        if (next_) {
            retire(std::move(current_));
            current_ = std::move(next_);
        }
    }
    finished_.notify_all();
}

void CycleGate::install(std::shared_ptr<CyclePlan> plan) {
    std::unique_lock lock(mutex_);
    if (plan->sequence > newest_) {
        newest_ = plan->sequence;
        (running_ ? next_ : current_).swap(plan);
    }
    if (plan)
        retire(std::move(plan));
    ++events_;
    event_.notify_all();
    if (isMine())
        return;
    if (running_) {
        const std::uint64_t seen = cycles_;
        finished_.wait(lock, [&] { return cycles_ != seen; });
    }
    std::shared_ptr<CyclePlan> retired = std::move(retired_);
    lock.unlock();
    freeAll(std::move(retired));
}

bool CycleGate::isInsideCycle() const {
    const std::scoped_lock guard(mutex_);
    return isMine();
}

std::uint64_t CycleGate::events() const {
    const std::scoped_lock guard(mutex_);
    return events_;
}

void CycleGate::wake() {
    const std::scoped_lock guard(mutex_);
    ++events_;
    event_.notify_all();
}

void CycleGate::waitForEvent(std::uint64_t seen, std::optional<Clock::time_point> until) {
    std::unique_lock lock(mutex_);
    const auto happened = [&] {
        return events_ != seen;
    };
    if (until)
        event_.wait_until(lock, *until, happened);
    else
        event_.wait(lock, happened);
}

void CycleGate::retire(std::shared_ptr<CyclePlan> plan) {
    plan->retiredBefore = std::move(retired_);
    retired_ = std::move(plan);
}

bool CycleGate::isMine() const {
    return running_ && owner_ == std::this_thread::get_id();
}

} // namespace orvanta::embedded
