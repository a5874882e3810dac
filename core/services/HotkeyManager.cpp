#include "core/services/HotkeyManager.h"

#include <utility>

namespace orvanta {
namespace {

constexpr FourCharCode kSignature = fourCharCode("ORVT");

/// Lets the event handler, a plain function, reach the manager.
struct CurrentManager {
    std::mutex mutex;
    std::shared_ptr<HotkeyManager> manager;
};

/// Never destroyed: what a manager refers to may be gone when the process's statics go.
CurrentManager& current() {
    static auto& theOne = *new CurrentManager;
    return theOne;
}

/// The manager before is let go outside the lock, for its end waits for the handler.
void makeCurrent(std::shared_ptr<HotkeyManager> manager) {
    const std::scoped_lock guard(current().mutex);
    current().manager.swap(manager);
}

} // namespace

std::optional<HotkeyManager::KeyCode> HotkeyManager::keyCodeFrom(std::uint32_t rawValue) noexcept {
    const auto keyCode = static_cast<KeyCode>(rawValue);
    switch (keyCode) {
    case KeyCode::upArrow:
    case KeyCode::downArrow:
    case KeyCode::m:
    case KeyCode::c:
    case KeyCode::key1:
    case KeyCode::key2:
    case KeyCode::key3:
    case KeyCode::key4:
    case KeyCode::key5:
    case KeyCode::key6:
    case KeyCode::key7:
    case KeyCode::key8:
    case KeyCode::key9:
        return keyCode;
    }
    return std::nullopt;
}

std::shared_ptr<HotkeyManager> HotkeyManager::create(HotKeyCenter& center, RunLoop& mainRunLoop,
                                                     SystemLog& log) {
    std::shared_ptr<HotkeyManager> manager(new HotkeyManager(center, mainRunLoop, log));
    makeCurrent(manager);
    // Without a handler no press arrives, and there is nothing to be done about it.
    center.installHandler(handleEvent, manager->eventHandlerRef_);
    return manager;
}

void HotkeyManager::releaseCurrent() {
    makeCurrent(nullptr);
}

HotkeyManager::HotkeyManager(HotKeyCenter& center, RunLoop& mainRunLoop, SystemLog& log)
    : center_(center), mainRunLoop_(mainRunLoop), logger_(log, "hotkeys") {}

/// The process refers to it no more, else it would live on: there is no reference to clear.
HotkeyManager::~HotkeyManager() {
    unregisterAll();
    if (eventHandlerRef_ != HotKeyCenter::HandlerReference::none)
        center_.removeHandler(eventHandlerRef_);
}

std::uint32_t HotkeyManager::registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            Task action) {
    const std::uint32_t id = nextID_++;
    auto ref = HotKeyCenter::Reference::none;
    const OSStatus status =
        center_.registerHotKey(keyCode, modifiers, {.signature = kSignature, .id = id}, ref);
    if (status != noErr) {
        logger_.error("Failed to register hotkey: %d", status);
        return id;
    }
    {
        const std::scoped_lock guard(mutex_);
        hotkeys_.emplace(id, Hotkey{id, keyCode, modifiers, std::move(action), ref});
    }
    logger_.info("Registered hotkey %u: keyCode=%u modifiers=%u", id, keyCode, modifiers);
    return id;
}

void HotkeyManager::unregister(std::uint32_t id) {
    decltype(hotkeys_)::node_type removed;
    {
        const std::scoped_lock guard(mutex_);
        removed = hotkeys_.extract(id);
    }
    if (removed && removed.mapped().ref != HotKeyCenter::Reference::none)
        center_.unregisterHotKey(removed.mapped().ref);
}

void HotkeyManager::unregisterAll() {
    for (const auto& [id, hotkey] : hotkeys_)
        if (hotkey.ref != HotKeyCenter::Reference::none)
            center_.unregisterHotKey(hotkey.ref);
    decltype(hotkeys_) removed;
    const std::scoped_lock guard(mutex_);
    hotkeys_.swap(removed);
}

void HotkeyManager::registerDefaults(Task onVolumeUp, Task onVolumeDown, Task onMuteToggle) {
    registerHotkey(rawValue(KeyCode::upArrow), cmdShift, std::move(onVolumeUp));
    registerHotkey(rawValue(KeyCode::downArrow), cmdShift, std::move(onVolumeDown));
    registerHotkey(rawValue(KeyCode::m), cmdShift, std::move(onMuteToggle));
}

OSStatus HotkeyManager::handleEvent(const HotKeyEvent* event) {
    if (event == nullptr)
        return eventNotHandledErr;
    HotKeyID hotKeyID;
    if (const OSStatus status = event->getHotKeyID(hotKeyID); status != noErr)
        return status;
    // Held while the action is queued, so that the manager and its main queue are still there; a
    // reference of the handler's own could be the last one and end the manager on this thread.
    const std::scoped_lock guard(current().mutex);
    if (current().manager == nullptr)
        return eventNotHandledErr;
    // Of every signature: all registrations of this process are the manager's.
    return current().manager->queueAction(hotKeyID.id);
}

OSStatus HotkeyManager::queueAction(std::uint32_t id) {
    const std::scoped_lock guard(mutex_);
    const auto found = hotkeys_.find(id);
    if (found == hotkeys_.end())
        return eventNotHandledErr;
    mainRunLoop_.post(found->second.action);
    return noErr;
}

} // namespace orvanta
