#pragma once

#include "core/platform/WallClock.h"

#include <string>

namespace orvanta::crash {

/// "2026-11-21T12:34:56Z": universal time, whole seconds.
[[nodiscard]] std::string iso8601(WallTime time);

} // namespace orvanta::crash
