#pragma once

#include "core/platform/HotKeyCenter.h"

namespace orvanta {

/// For a desktop that offers no way to have hot keys: refuses everything.
class UnavailableHotKeyCenter final : public HotKeyCenter {
public:
    OSStatus installHandler(Handler /*handler*/, HandlerReference& /*outReference*/) override {
        return eventInternalErr;
    }

    void removeHandler(HandlerReference /*reference*/) override {}

    OSStatus registerHotKey(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/,
                            const HotKeyID& /*id*/, Reference& /*outReference*/) override {
        return eventInternalErr;
    }

    void unregisterHotKey(Reference /*reference*/) override {}
};

} // namespace orvanta
