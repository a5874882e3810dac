#pragma once

#include "core/platform/WallClock.h"

namespace orvanta::test {

/// A calendar that a test sets.
class ScriptedWallClock final : public WallClock {
public:
    /// 2026-11-21 12:34:56 UTC at first.
    WallTime time{std::chrono::seconds{1795264496}};

    [[nodiscard]] WallTime now() const override { return time; }
};

} // namespace orvanta::test
