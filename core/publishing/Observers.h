#pragma once

#include "core/publishing/Observation.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace orvanta {

/// Those who are told of something, in the order in which they came. Belongs to one thread.
template <class... Told>
class Observers {
public:
    using Observer = std::function<void(const Told&...)>;

    Observers() = default;
    Observers(const Observers&) = delete;
    Observers& operator=(const Observers&) = delete;
    ~Observers() = default;

    /// From the next telling on.
    [[nodiscard]] Observation observe(Observer observer) {
        auto slot = std::make_shared<Slot>(std::move(observer));
        forgetEnded();
        slots_.push_back(slot);
        return Observation(std::move(slot));
    }

    /// Whoever comes meanwhile is not told, whoever goes neither.
    void tell(const Told&... told) {
        if (slots_.empty())
            return;
        forgetEnded();
        const std::vector<std::weak_ptr<Slot>> present = slots_;
        for (const std::weak_ptr<Slot>& each : present)
            if (const auto slot = each.lock(); slot && slot->isObserving)
                slot->observer(told...);
    }

    [[nodiscard]] bool isEmpty() const { return slots_.empty(); }

private:
    struct Slot final : Observation::Slot {
        explicit Slot(Observer toTell) : observer(std::move(toTell)) {}

        const Observer observer;
    };

    void forgetEnded() {
        std::erase_if(slots_, [](const std::weak_ptr<Slot>& slot) { return slot.expired(); });
    }

    std::vector<std::weak_ptr<Slot>> slots_;
};

} // namespace orvanta
