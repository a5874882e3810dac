#pragma once

#include "core/platform/FourCharCode.h"
#include "core/platform/OSStatus.h"

#include <cstdint>
#include <functional>

namespace orvanta {

/// What a registration is known by when its combination is pressed: whose it is, and which.
struct HotKeyID {
    FourCharCode signature = 0;
    std::uint32_t id = 0;

    bool operator==(const HotKeyID&) const = default;
};

/// One press, as the desktop delivers it. Valid during the handler's call only.
class HotKeyEvent {
public:
    HotKeyEvent() = default;
    HotKeyEvent(const HotKeyEvent&) = delete;
    HotKeyEvent& operator=(const HotKeyEvent&) = delete;
    virtual ~HotKeyEvent() = default;

    /// Any status but `noErr` when the event does not tell; `outID` is then as before.
    [[nodiscard]] virtual OSStatus getHotKeyID(HotKeyID& outID) const = 0;
};

/// Key combinations that reach the program while another one has the focus. Its operations are
/// called on the main thread and by no handler.
class HotKeyCenter {
public:
    enum class Reference : std::uint64_t { none = 0 };
    enum class HandlerReference : std::uint64_t { none = 0 };

    /// Told of each press once, however long the keys are held, on a thread of the desktop's. To
    /// answer `eventNotHandledErr` is to leave the event to the handler installed before. The event
    /// may be null.
    using Handler = std::function<OSStatus(const HotKeyEvent* event)>;

    HotKeyCenter() = default;
    HotKeyCenter(const HotKeyCenter&) = delete;
    HotKeyCenter& operator=(const HotKeyCenter&) = delete;
    virtual ~HotKeyCenter() = default;

    virtual OSStatus installHandler(Handler handler, HandlerReference& outReference) = 0;

    /// After the return the handler is not called any more.
    virtual void removeHandler(HandlerReference reference) = 0;

    /// `keyCode` is a virtual key code of a US keyboard, `modifiers` are Carbon's bits (256
    /// command, 512 shift). Any status but `noErr` when the combination is taken or unknown.
    virtual OSStatus registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                    const HotKeyID& id, Reference& outReference) = 0;
    virtual void unregisterHotKey(Reference reference) = 0;
};

} // namespace orvanta
