#pragma once

#include "core/publishing/Observers.h"

#include <functional>
#include <utility>

namespace orvanta {

/// Told before any of an object's published values changes.
using ObjectWillChange = Observers<>;

/// A value that tells its observers of every assignment, equal ones included, before it takes
/// effect: an observer sees the coming value, and the present one through `get`. A value that
/// belongs to an object tells the object's observers first. Belongs to one thread. An assignment
/// from within an observer is told and takes effect at once; the one under way follows it.
/// Observers must neither throw nor end the value.
template <class Value>
class Published {
public:
    using Observation = orvanta::Observation;
    using Observer = typename Observers<Value>::Observer;

    Published() = default;

    explicit Published(Value initial) : value_(std::move(initial)) {}

    /// `object` must outlive the value. `didSet` runs when an assignment has taken effect, equal
    /// ones included.
    explicit Published(ObjectWillChange& object, Value initial = {},
                       std::function<void()> didSet = nullptr)
        : object_(&object), value_(std::move(initial)), didSet_(std::move(didSet)) {}

    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;
    ~Published() = default;

    [[nodiscard]] const Value& get() const { return value_; }

    void set(Value value) {
        tellObject();
        observers_.tell(value);
        value_ = std::move(value);
        if (didSet_)
            didSet_();
    }

    /// One assignment of the value as `change` leaves it: a change of a part, which keeps what an
    /// observer does to other parts meanwhile. Such a change is made twice.
    template <class Change>
    void update(Change change) {
        tellObject();
        if (!observers_.isEmpty()) {
            Value coming = value_;
            change(coming);
            observers_.tell(coming);
        }
        change(value_);
        if (didSet_)
            didSet_();
    }

    /// From the next assignment on.
    [[nodiscard]] Observation observe(Observer observer) {
        return observers_.observe(std::move(observer));
    }

private:
    void tellObject() {
        if (object_ != nullptr)
            object_->tell();
    }

    ObjectWillChange* object_ = nullptr;
    Value value_{};
    std::function<void()> didSet_;
    Observers<Value> observers_;
};

} // namespace orvanta
