#pragma once

#include "core/platform/WallClock.h"

namespace orvanta {

/// The machine's own calendar.
class SystemWallClock final : public WallClock {
public:
    [[nodiscard]] WallTime now() const override { return std::chrono::system_clock::now(); }
};

} // namespace orvanta
