#pragma once

#include "core/discovery/NameOrder.h"
#include "core/discovery/OutputDeviceManaging.h"
#include "core/platform/Platform.h"
#include "core/platform/WeakAccess.h"
#include "core/publishing/Published.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvanta {

/// Keeps the list of devices that can play and the default among them, and follows the system's
/// changes. The aggregates that taps play through are no devices in this sense.
class OutputDeviceManager final : public OutputDeviceManaging {
public:
    /// Both values are empty until the main run loop has had its next turn.
    explicit OutputDeviceManager(const Platform& platform);
    /// On the main thread, not from an observer.
    ~OutputDeviceManager() override;

    [[nodiscard]] const std::vector<OutputDevice>& availableDevices() const override {
        return availableDevices_.get();
    }

    [[nodiscard]] const std::string& defaultDeviceUID() const override {
        return defaultDeviceUID_.get();
    }

    /// Reads on the calling thread, which may be any.
    void refresh() override;

    [[nodiscard]] Observation observe(std::function<void()> observer) override {
        return changed_.observe(std::move(observer));
    }

    // The values with their observers, who are told on the main thread: of every reading, also one
    // that has found nothing new, and of each value before it takes effect.

    [[nodiscard]] Published<std::vector<OutputDevice>>& publishedDevices() {
        return availableDevices_;
    }

    [[nodiscard]] Published<std::string>& publishedDefaultUID() { return defaultDeviceUID_; }

private:
    static OSStatus changeListener(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                   void* clientData);
    [[nodiscard]] std::vector<OutputDevice> readDevices() const;
    [[nodiscard]] std::optional<OutputDevice> readDevice(AudioObjectID device) const;
    [[nodiscard]] std::string readDefaultUID() const;
    void publish(std::vector<OutputDevice> devices, const std::string& defaultUID);

    AudioHardware& hardware_;
    RunLoop& mainRunLoop_;
    NameOrder nameOrder_;
    Published<std::vector<OutputDevice>> availableDevices_;
    Published<std::string> defaultDeviceUID_;
    Observers<> changed_;
    /// Last, so that no task meets a manager that is half gone.
    WeakAccess<OutputDeviceManager> access_{*this};
};

} // namespace orvanta
