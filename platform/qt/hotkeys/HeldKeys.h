#pragma once

#include <cstdint>
#include <map>

namespace orvanta {

/// Tells a press from the repeats of a key that is held. A display tells those as pairs of a
/// release and a press at the same moment; one that passes another machine's keys on may leave the
/// releases out.
class HeldKeys {
public:
    /// Whether this is a press of the user's. `time` is the server's, in milliseconds.
    bool press(std::uint8_t keycode, std::uint32_t time) {
        Key& key = keys_[keycode];
        const bool isRepeat = key.isDown || (key.wasReleased && key.releaseTime == time);
        key.isDown = true;
        return !isRepeat;
    }

    void release(std::uint8_t keycode, std::uint32_t time) {
        keys_[keycode] = {.isDown = false, .wasReleased = true, .releaseTime = time};
    }

private:
    struct Key {
        bool isDown = false;
        bool wasReleased = false;
        std::uint32_t releaseTime = 0;
    };

    std::map<std::uint8_t, Key> keys_;
};

} // namespace orvanta
