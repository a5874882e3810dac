#pragma once

#include "core/platform/RunLoop.h"

#include <memory>
#include <mutex>
#include <utility>

namespace orvanta {

/// Lets tasks that run later reach an object that may have gone by then, from whichever thread it
/// goes. A member of that object. Its tasks must not nest: one that runs a loop of its own must not
/// let another of the same object run in it.
template <class Object>
class WeakAccess {
public:
    explicit WeakAccess(Object& object) : link_(std::make_shared<Link>()) {
        link_->object = &object;
    }

    ~WeakAccess() { end(); }

    WeakAccess(const WeakAccess&) = delete;
    WeakAccess& operator=(const WeakAccess&) = delete;

    /// From now on tasks find nothing. Waits for one in flight, so not to be called by one.
    void end() {
        const std::scoped_lock guard(link_->mutex);
        link_->object = nullptr;
    }

    /// A task that calls `body` with the object, or does nothing once that has gone.
    template <class Body>
    [[nodiscard]] Task task(Body body) const {
        return [link = link_, body = std::move(body)] {
            const std::scoped_lock guard(link->mutex);
            if (link->object != nullptr)
                body(*link->object);
        };
    }

private:
    struct Link {
        std::mutex mutex;
        Object* object = nullptr;
    };

    std::shared_ptr<Link> link_;
};

} // namespace orvanta
