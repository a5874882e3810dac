#pragma once

#include <functional>
#include <list>
#include <memory>
#include <utility>
#include <vector>

namespace orvanta {

/// A value that tells its observers of every assignment, equal ones included, before it takes
/// effect: an observer sees the coming value, and the present one through `get`. Belongs to one
/// thread.
template <class Value>
class Published {
    using Observers = std::list<std::shared_ptr<std::function<void(const Value&)>>>;

public:
    using Observer = std::function<void(const Value& coming)>;

    /// Its end ends the observing. May outlive the value.
    class Observation {
    public:
        Observation() = default;
        Observation(Observation&&) noexcept = default;

        Observation& operator=(Observation&& other) noexcept {
            end();
            observers_ = std::move(other.observers_);
            place_ = other.place_;
            return *this;
        }

        ~Observation() { end(); }

    private:
        friend class Published;

        Observation(const std::shared_ptr<Observers>& observers, typename Observers::iterator place)
            : observers_(observers), place_(place) {}

        void end() {
            if (const auto observers = observers_.lock())
                observers->erase(place_);
            observers_.reset();
        }

        std::weak_ptr<Observers> observers_;
        typename Observers::iterator place_;
    };

    Published() = default;

    explicit Published(Value initial) : value_(std::move(initial)) {}

    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;
    ~Published() = default;

    [[nodiscard]] const Value& get() const { return value_; }

    /// Observers that come or go while they are told are told from the next assignment on.
    void set(Value value) {
        const std::vector<typename Observers::value_type> told(observers_->begin(),
                                                               observers_->end());
        for (const auto& observer : told)
            (*observer)(value);
        value_ = std::move(value);
    }

    /// From the next assignment on.
    [[nodiscard]] Observation observe(Observer observer) {
        observers_->push_back(std::make_shared<Observer>(std::move(observer)));
        return Observation(observers_, std::prev(observers_->end()));
    }

private:
    Value value_{};
    std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
};

} // namespace orvanta
