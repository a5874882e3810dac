#pragma once

#include <functional>
#include <utility>

namespace orvanta {

/// An application's volume under a hand: every move of a drag reaches the model, whose value the
/// slider follows only while nobody drags. A key, the wheel and an assistive tool begin and end a
/// drag of one step.
class VolumeSlider {
public:
    explicit VolumeSlider(std::function<void(float)> setVolume)
        : setVolume_(std::move(setVolume)) {}

    /// 0 to 2, as shown.
    [[nodiscard]] float volume() const noexcept { return volume_; }

    [[nodiscard]] bool isDragging() const noexcept { return isDragging_; }

    /// The view appears, or the model's value changes.
    void follow(float volume) noexcept {
        if (!isDragging_)
            volume_ = volume;
    }

    void beginDrag() noexcept { isDragging_ = true; }

    void move(float volume) {
        volume_ = volume;
        if (isDragging_)
            setVolume_(volume_);
    }

    void endDrag() {
        isDragging_ = false;
        setVolume_(volume_);
    }

    /// The slider goes away under the hand: it is over, and nothing is written.
    void abandonDrag() noexcept { isDragging_ = false; }

private:
    std::function<void(float)> setVolume_;
    float volume_ = 1.0F;
    bool isDragging_ = false;
};

} // namespace orvanta
