#pragma once

#include "core/platform/OSStatus.h"

#include <cstdint>
#include <functional>

namespace orvanta {

/// Key combinations that reach the program while another one has the focus.
class HotKeyCenter {
public:
    /// Names a registered combination; null names none.
    using Reference = struct OpaqueHotKey*;

    /// Told the id of a combination that was pressed, on a thread of the desktop's.
    using Handler = std::function<void(std::uint32_t id)>;

    HotKeyCenter() = default;
    HotKeyCenter(const HotKeyCenter&) = delete;
    HotKeyCenter& operator=(const HotKeyCenter&) = delete;
    virtual ~HotKeyCenter() = default;

    /// An empty handler removes the one before; after the return that one is not called any more.
    virtual OSStatus setHandler(Handler handler) = 0;

    /// `keyCode` is a virtual key code of a US keyboard, `modifiers` are Carbon's bits (256
    /// command, 512 shift). Any status but `noErr` when the combination is taken or unknown.
    virtual OSStatus registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                    std::uint32_t id, Reference& outReference) = 0;
    virtual void unregisterHotKey(Reference reference) = 0;
};

} // namespace orvanta
