#pragma once

#include "core/platform/HotKeyCenter.h"
#include "core/platform/Logger.h"
#include "core/platform/RunLoop.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

namespace orvanta {

/// Runs a task on the main queue when a key combination is pressed, whichever program has the
/// focus. All operations are for the main thread.
///
/// The newest manager is the process's current one, which alone is told of presses. The process
/// keeps it alive until the next one replaces it or `releaseCurrent` lets it go; a program that
/// ends without doing so leaves it as it is.
class HotkeyManager {
public:
    /// Virtual key codes: they number the places of a keyboard, so 5 and 6, and 7, 8 and 9, are out
    /// of order.
    enum class KeyCode : std::uint32_t {
        upArrow = 126,
        downArrow = 125,
        m = 46,
        c = 8,
        key1 = 18,
        key2 = 19,
        key3 = 20,
        key4 = 21,
        key5 = 23,
        key6 = 22,
        key7 = 26,
        key8 = 28,
        key9 = 25,
    };

    /// Command and shift, in Carbon's bits.
    static constexpr std::uint32_t cmdShift = 256U + 512U;

    [[nodiscard]] static constexpr std::uint32_t rawValue(KeyCode keyCode) noexcept {
        return static_cast<std::uint32_t>(keyCode);
    }

    /// Nothing for a number that is none of them.
    [[nodiscard]] static std::optional<KeyCode> keyCodeFrom(std::uint32_t rawValue) noexcept;

    /// Makes the current manager. What it is given must outlive it.
    [[nodiscard]] static std::shared_ptr<HotkeyManager>
    create(HotKeyCenter& center, RunLoop& mainRunLoop, SystemLog& log);

    /// The process has no current manager any more; presses are left unhandled.
    static void releaseCurrent();

    HotkeyManager(const HotkeyManager&) = delete;
    HotkeyManager& operator=(const HotkeyManager&) = delete;
    ~HotkeyManager();

    /// Returns the registration's id, 1 for the first. A combination that cannot be had is logged
    /// and uses its id up all the same.
    std::uint32_t registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers, Task action);

    /// Does nothing for an id that is not registered. An action that is queued already still runs.
    void unregister(std::uint32_t id);

    /// Ids go on from where they are.
    void unregisterAll();

    /// Command and shift with up arrow, down arrow and M.
    void registerDefaults(Task onVolumeUp, Task onVolumeDown, Task onMuteToggle);

private:
    struct Hotkey {
        std::uint32_t id = 0;
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;
        Task action;
        HotKeyCenter::Reference ref = HotKeyCenter::Reference::none;
    };

    HotkeyManager(HotKeyCenter& center, RunLoop& mainRunLoop, SystemLog& log);

    /// On a thread of the desktop's.
    static OSStatus handleEvent(const HotKeyEvent* event);
    OSStatus queueAction(std::uint32_t id);

    HotKeyCenter& center_;
    RunLoop& mainRunLoop_;
    const Logger logger_;
    /// For the handler, which only reads. The main thread alone changes `hotkeys_`, so it locks to
    /// write, and never calls the center under the lock: that may be waiting for the handler.
    std::mutex mutex_;
    std::map<std::uint32_t, Hotkey> hotkeys_;
    std::uint32_t nextID_ = 1;
    HotKeyCenter::HandlerReference eventHandlerRef_ = HotKeyCenter::HandlerReference::none;
};

} // namespace orvanta
