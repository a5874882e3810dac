#pragma once

#include <memory>
#include <utility>

namespace orvanta {

/// Its end ends an observing, at once also while observers are told. May outlive what it observes.
class Observation {
public:
    /// What is told; kept alive by the observation, and by a telling for as long as it lasts.
    struct Slot {
        Slot() = default;
        Slot(const Slot&) = delete;
        Slot& operator=(const Slot&) = delete;
        virtual ~Slot() = default;

        bool isObserving = true;
    };

    /// Observes nothing.
    Observation() = default;

    explicit Observation(std::shared_ptr<Slot> slot) : slot_(std::move(slot)) {}

    Observation(Observation&&) noexcept = default;

    Observation& operator=(Observation&& other) noexcept {
        if (this != &other) {
            end();
            slot_ = std::move(other.slot_);
        }
        return *this;
    }

    ~Observation() { end(); }

private:
    void end() {
        // The slot's end may run foreign code, which finds this observation over already.
        if (const auto slot = std::exchange(slot_, nullptr))
            slot->isObserving = false;
    }

    std::shared_ptr<Slot> slot_;
};

} // namespace orvanta
