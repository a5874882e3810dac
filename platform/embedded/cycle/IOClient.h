#pragma once

#include "core/platform/AudioHardware.h"
#include "core/platform/RealTimeSection.h"

#include <atomic>

namespace orvanta::embedded {

/// A registered IOProc, as the cycle sees it.
class IOClient {
public:
    IOClient(AudioObjectID device, const AudioDeviceIOClient& client)
        : device_(device), client_(client) {}

    /// The device or aggregate it is registered on.
    [[nodiscard]] AudioObjectID device() const noexcept { return device_; }

    [[nodiscard]] const AudioDeviceIOClient& client() const noexcept { return client_; }

    [[nodiscard]] bool isStarted() const noexcept {
        return started_.load(std::memory_order_relaxed);
    }

    /// Control side. A stop holds at once, even for a cycle that has the client before it.
    void setStarted(bool started) noexcept { started_.store(started, std::memory_order_relaxed); }

    /// Cycle side: whether it may be left out while its input is silent. Never before it has had a
    /// cycle since its start, which is the `start`-th.
    [[nodiscard]] bool isAtRest(unsigned start) const noexcept {
        if (servedStart_ != start || client_.isAtRest == nullptr)
            return false;
        const RealTimeSection section;
        return client_.isAtRest(client_.clientData);
    }

    /// Cycle side: it has had a cycle.
    void noteServed(unsigned start) noexcept { servedStart_ = start; }

private:
    const AudioObjectID device_;
    const AudioDeviceIOClient client_;
    std::atomic<bool> started_ = false;
    unsigned servedStart_ = 0;
};

} // namespace orvanta::embedded
