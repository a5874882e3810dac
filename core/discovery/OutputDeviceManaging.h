#pragma once

#include "core/discovery/OutputDevice.h"

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
};

} // namespace orvanta
