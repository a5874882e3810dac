#include "platform/runloop/InProcessNotificationCenter.h"

#include <utility>

namespace orvanta {

struct InProcessNotificationCenter::Observer {
    std::string name;
    Task task;
    /// A task that ends its own observation lives on until it returns, and may post meanwhile.
    bool isObserving = true;
};

class InProcessNotificationCenter::Observing final : public Observation {
public:
    explicit Observing(std::shared_ptr<Observer> observer) : observer_(std::move(observer)) {}

    Observing(const Observing&) = delete;
    Observing& operator=(const Observing&) = delete;

    ~Observing() override { observer_->isObserving = false; }

private:
    const std::shared_ptr<Observer> observer_;
};

void InProcessNotificationCenter::post(std::string_view name) {
    // Tasks change the list, and may even end the center.
    const auto present = observers_;
    for (const auto& each : present) {
        const auto observer = each.lock();
        if (observer && observer->isObserving && observer->name == name)
            observer->task();
    }
}

std::unique_ptr<NotificationCenter::Observation>
InProcessNotificationCenter::observe(std::string name, Task task) {
    std::erase_if(observers_, [](const auto& each) { return each.expired(); });
    auto observer = std::make_shared<Observer>();
    observer->name = std::move(name);
    observer->task = std::move(task);
    observers_.emplace_back(observer);
    return std::make_unique<Observing>(std::move(observer));
}

} // namespace orvanta
