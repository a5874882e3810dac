#pragma once

#include "core/discovery/OutputDevice.h"
#include "core/publishing/Observation.h"

#include <functional>
#include <string>
#include <vector>

namespace orvanta {

/// The devices that sound can go to.
class OutputDeviceManaging {
public:
    OutputDeviceManaging() = default;
    OutputDeviceManaging(const OutputDeviceManaging&) = delete;
    OutputDeviceManaging& operator=(const OutputDeviceManaging&) = delete;
    virtual ~OutputDeviceManaging() = default;

    /// By name. Main thread.
    [[nodiscard]] virtual const std::vector<OutputDevice>& availableDevices() const = 0;
    /// Empty when unknown. Main thread.
    [[nodiscard]] virtual const std::string& defaultDeviceUID() const = 0;
    /// Reads everything anew; what it finds appears on the next turn of the main run loop.
    virtual void refresh() = 0;
    /// Told on the main thread when the devices, what is known of one, or the default have become
    /// others: once, with all of it in effect. What has been read anew and is the same tells
    /// nobody.
    [[nodiscard]] virtual Observation observe(std::function<void()> observer) = 0;
};

} // namespace orvanta
