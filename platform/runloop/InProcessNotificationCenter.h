#pragma once

#include "core/platform/NotificationCenter.h"

#include <vector>

namespace orvanta {

/// Observers may come and go while a name is being told. One that comes is told from the next post
/// on; one that goes before its turn is not told any more. Observations may outlive the center.
class InProcessNotificationCenter final : public NotificationCenter {
public:
    void post(std::string_view name) override;
    [[nodiscard]] std::unique_ptr<Observation> observe(std::string name, Task task) override;

private:
    struct Observer;
    class Observing;

    /// In the order in which they came. Their observations own them.
    std::vector<std::weak_ptr<const Observer>> observers_;
};

} // namespace orvanta
