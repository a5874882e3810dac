#pragma once

#include "core/platform/KeyMonitor.h"

namespace orvanta {

/// For a desktop that shows no program the keys of another: sees none.
class UnavailableKeyMonitor final : public KeyMonitor {
public:
    void addGlobalMonitor(Handler /*handler*/) override {}
};

} // namespace orvanta
