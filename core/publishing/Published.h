#pragma once

#include <functional>
#include <list>
#include <memory>
#include <utility>
#include <vector>

namespace orvanta {

/// A value that tells its observers of every assignment, equal ones included, before it takes
/// effect: an observer sees the coming value, and the present one through `get`. Belongs to one
/// thread. An assignment from within an observer is told and takes effect at once; the one under
/// way follows it.
template <class Value>
class Published {
public:
    using Observer = std::function<void(const Value& coming)>;

private:
    /// Emptied when the observing ends.
    using Slot = std::shared_ptr<Observer>;
    using Slots = std::list<Slot>;

public:
    /// Its end ends the observing, at once also while observers are told. May outlive the value.
    class Observation {
    public:
        Observation() = default;
        Observation(Observation&&) noexcept = default;

        Observation& operator=(Observation&& other) noexcept {
            if (this != &other) {
                end();
                slots_ = std::move(other.slots_);
                place_ = other.place_;
            }
            return *this;
        }

        ~Observation() { end(); }

    private:
        friend class Published;

        Observation(const std::shared_ptr<Slots>& slots, typename Slots::iterator place)
            : slots_(slots), place_(place) {}

        void end() {
            const auto slots = slots_.lock();
            slots_.reset();
            if (!slots)
                return;
            const Slot slot = *place_;
            slots->erase(place_);
            *slot = nullptr;
        }

        std::weak_ptr<Slots> slots_;
        typename Slots::iterator place_;
    };

    Published() = default;

    explicit Published(Value initial) : value_(std::move(initial)) {}

    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;
    ~Published() = default;

    [[nodiscard]] const Value& get() const { return value_; }

    void set(Value value) {
        const std::vector<Slot> told(slots_->begin(), slots_->end());
        for (const Slot& slot : told)
            // A copy: the observer may end its own observing.
            if (const Observer observer = *slot)
                observer(value);
        value_ = std::move(value);
    }

    /// From the next assignment on.
    [[nodiscard]] Observation observe(Observer observer) {
        slots_->push_back(std::make_shared<Observer>(std::move(observer)));
        return Observation(slots_, std::prev(slots_->end()));
    }

private:
    Value value_{};
    std::shared_ptr<Slots> slots_ = std::make_shared<Slots>();
};

} // namespace orvanta
