#pragma once

#include "core/platform/RunLoop.h"

#include <memory>
#include <string>
#include <string_view>

namespace orvanta {

/// Announcements by name within the program. All of it belongs to the main thread.
class NotificationCenter {
public:
    /// Its end ends the observing.
    class Observation {
    public:
        Observation() = default;
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        virtual ~Observation() = default;
    };

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;
    virtual ~NotificationCenter() = default;

    /// Calls everyone who observes `name`, before the return, in the order in which they came.
    virtual void post(std::string_view name) = 0;
    [[nodiscard]] virtual std::unique_ptr<Observation> observe(std::string name, Task task) = 0;
};

} // namespace orvanta
