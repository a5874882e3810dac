#pragma once

#include "platform/embedded/DeviceSettings.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <span>

namespace orvanta::embedded {

/// The volume of a device while it plays. Set on the control side, read by the cycle.
class VolumeControls {
public:
    static constexpr AudioObjectPropertyElement kElements = 3;

    explicit VolumeControls(std::span<const VolumeElement> elements) {
        for (auto& scalar : scalars_)
            scalar.store(1.0F, std::memory_order_relaxed);
        for (const VolumeElement& element : elements)
            set(element.element, element.scalar);
    }

    /// Clamped to 0..1. Elements that no device has are passed over.
    void set(AudioObjectPropertyElement element, float scalar) noexcept {
        if (element < kElements)
            scalars_[element].store(std::clamp(scalar, 0.0F, 1.0F), std::memory_order_relaxed);
    }

    [[nodiscard]] float scalar(AudioObjectPropertyElement element) const noexcept {
        return scalars_[element].load(std::memory_order_relaxed);
    }

    /// What a channel, counted from 0, is multiplied with: the cube of the device's scalar times
    /// the cube of the channel's own.
    [[nodiscard]] float gain(std::size_t channel) const noexcept {
        const float own = channel < 2 ? cube(scalar(static_cast<std::uint32_t>(channel) + 1)) : 1;
        return cube(scalar(kAudioObjectPropertyElementMain)) * own;
    }

private:
    static float cube(float value) noexcept { return value * value * value; }

    std::array<std::atomic<float>, kElements> scalars_;
};

} // namespace orvanta::embedded
