#pragma once

#include "core/engine/CallbackEpoch.h"

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

namespace orvanta {

/// A tap's optional processor: owned by the control side, borrowed by the callback. Borrowing is
/// one load. A dropped processor is freed by a control thread, and only when no callback can still
/// be using it; what is not yet free waits for the next change or for the end of the owner.
///
/// `replace`, `get` and `collect` belong to control threads that exclude one another; `borrow`
/// belongs to the callback, inside a `CallbackEpoch::Callback` of the same epoch. No callback may
/// run when the reference is destroyed.
template <class Processor>
class ProcessorRef {
public:
    explicit ProcessorRef(CallbackEpoch& epoch) noexcept : epoch_(epoch) {}

    /// Publishes `next` (null for none) and drops the one before.
    void replace(std::unique_ptr<Processor> next) {
        retired_.reserve(retired_.size() + 1); // nothing may fail once the callback can see `next`
        published_.store(next.get(), std::memory_order_release);
        std::unique_ptr<Processor> dropped = std::exchange(owned_, std::move(next));
        if (dropped)
            retired_.push_back({std::move(dropped), epoch_.mark()});
        collect();
    }

    /// Frees what no callback can hold any more.
    void collect() {
        std::erase_if(retired_,
                      [this](const Retired& each) { return epoch_.hasPassed(each.mark); });
    }

    /// The control side's own view; null when there is none.
    [[nodiscard]] Processor* get() const noexcept { return owned_.get(); }

    /// Dropped processors that a callback may still hold.
    [[nodiscard]] std::size_t retiredCount() const noexcept { return retired_.size(); }

    [[nodiscard]] Processor* borrow() const noexcept {
        return published_.load(std::memory_order_acquire);
    }

private:
    struct Retired {
        std::unique_ptr<Processor> processor;
        CallbackEpoch::Mark mark;
    };

    CallbackEpoch& epoch_;
    std::unique_ptr<Processor> owned_;
    std::atomic<Processor*> published_{nullptr};
    std::vector<Retired> retired_;
};

} // namespace orvanta
