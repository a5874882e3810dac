#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace orvanta::test {

/// Another program on an X display: has a window with the focus, grabs keys, changes the keyboard.
class OtherProgram {
public:
    /// Throws std::runtime_error when the display does not answer.
    explicit OtherProgram(const std::string& display);

    /// Opens a window and waits until it has the focus; false when it does not get it.
    [[nodiscard]] bool openWindow();

    /// The keysyms of what the window was told since the last call, but for modifiers.
    std::vector<std::uint32_t> takeKeys();

    /// The first key that says this without modifiers; 0 for none.
    [[nodiscard]] std::uint8_t keycodeOf(std::uint32_t keysym) const;

    /// False when somebody else has it.
    [[nodiscard]] bool grab(std::uint8_t keycode, std::uint16_t state, int screen = 0);
    void ungrab(std::uint8_t keycode, std::uint16_t state, int screen = 0);

    void setKeysym(std::uint8_t keycode, std::uint32_t keysym);
    void swapKeys(std::uint8_t one, std::uint8_t other);

    /// The keys that are the modifier (3 to 7 for Mod1 to Mod5), in place of those before.
    void setModifier(std::size_t modifier, const std::vector<std::uint8_t>& keycodes);

private:
    struct End {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void setKeysyms(std::uint8_t keycode, const std::vector<std::uint32_t>& keysyms);
    [[nodiscard]] std::vector<std::uint32_t> keysymsOf(std::uint8_t keycode) const;
    [[nodiscard]] xcb_window_t root(int screen) const;

    std::unique_ptr<xcb_connection_t, End> connection_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

} // namespace orvanta::test
