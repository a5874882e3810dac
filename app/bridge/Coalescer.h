#pragma once

#include "core/platform/RunLoop.h"

#include <memory>
#include <utility>

namespace orvanta {

/// Turns any number of changes within one turn of a queue into one update after them. Belongs to
/// the queue's thread.
class Coalescer {
public:
    /// `queue` must outlive it; `update` is not called once it has gone.
    Coalescer(TaskQueue& queue, Task update)
        : queue_(queue), state_(std::make_shared<State>(std::move(update))) {}

    /// An update comes, if none is coming yet.
    void ask() {
        if (std::exchange(state_->isComing, true))
            return;
        queue_.post([weak = std::weak_ptr(state_)] {
            if (const auto state = weak.lock()) {
                // Before the update: what it changes asks for the next.
                state->isComing = false;
                state->update();
            }
        });
    }

private:
    struct State {
        explicit State(Task task) : update(std::move(task)) {}

        const Task update;
        bool isComing = false;
    };

    TaskQueue& queue_;
    const std::shared_ptr<State> state_;
};

} // namespace orvanta
