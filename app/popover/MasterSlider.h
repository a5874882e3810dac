#pragma once

#include "core/platform/RunLoop.h"

#include <functional>

namespace orvanta {

/// The master volume under a hand. The devices follow a drag at most about thirty times a second;
/// the model's value is written once, when the drag ends, and what the model says meanwhile waits.
/// A key, the wheel and an assistive tool begin and end a drag of one step.
class MasterSlider {
public:
    /// Time between two writes to the devices is longer than this.
    static constexpr Seconds writeInterval{0.033};

    struct Writers {
        /// Must not wait for devices.
        std::function<void(float)> applyToDevices;
        std::function<void(float)> setMasterVolume;
    };

    explicit MasterSlider(Writers writers) : writers_(std::move(writers)) {}

    /// 0 to 1, as shown.
    [[nodiscard]] float volume() const noexcept { return volume_; }

    [[nodiscard]] bool isDragging() const noexcept { return isDragging_; }

    /// The view appears, or the model's value changes.
    void follow(float masterVolume) noexcept {
        if (!isDragging_)
            volume_ = masterVolume;
    }

    void beginDrag() noexcept { isDragging_ = true; }

    void move(float volume, Seconds now) {
        volume_ = volume;
        if (!isDragging_ || now - lastWrite_ <= writeInterval)
            return;
        lastWrite_ = now;
        writers_.applyToDevices(volume_);
    }

    void endDrag() {
        isDragging_ = false;
        writers_.setMasterVolume(volume_);
    }

private:
    Writers writers_;
    float volume_ = 1.0F;
    bool isDragging_ = false;
    Seconds lastWrite_{0.0};
};

} // namespace orvanta
