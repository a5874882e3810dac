#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace orvanta {

/// NSEvent, as far as keys go.
struct KeyDownEvent {
    /// NSEventModifierFlags: the keys that are held, from bit 16 on.
    std::uint64_t modifierFlags = 0;
    std::string charactersIgnoringModifiers;
};

inline constexpr std::uint64_t NSEventModifierFlagShift = 1U << 17U;
inline constexpr std::uint64_t NSEventModifierFlagControl = 1U << 18U;
inline constexpr std::uint64_t NSEventModifierFlagOption = 1U << 19U;
inline constexpr std::uint64_t NSEventModifierFlagCommand = 1U << 20U;

/// Sees which keys are pressed while another program has the keyboard.
class KeyMonitor {
public:
    using Handler = std::function<void(const KeyDownEvent&)>;

    KeyMonitor() = default;
    KeyMonitor(const KeyMonitor&) = delete;
    KeyMonitor& operator=(const KeyMonitor&) = delete;
    virtual ~KeyMonitor() = default;

    /// addGlobalMonitorForEventsMatchingMask:handler: for key presses. Called on the main thread,
    /// for as long as the monitor lives. A press that reached the program as a hot key of its own
    /// is not told.
    virtual void addGlobalMonitor(Handler handler) = 0;
};

} // namespace orvanta
