#pragma once

#include "platform/embedded/cycle/Timeline.h"
#include "platform/embedded/cycle/VolumeControls.h"

namespace orvanta::embedded {

/// What lasts of a device from cycle to cycle. Only the cycle touches it, but for the atomics.
struct DeviceIO {
    DeviceIO(std::uint64_t originNs, double sampleRate, std::span<const VolumeElement> elements)
        : timeline(originNs, sampleRate), volume(elements) {}

    Timeline timeline;
    VolumeControls volume;
    std::atomic<std::uint64_t> cycles = 0;
    /// In real time: nothing needed a cycle when it was last looked at.
    bool sleeps = true;
};

} // namespace orvanta::embedded
