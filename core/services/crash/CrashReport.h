#pragma once

#include "core/platform/HostInfo.h"
#include "core/services/crash/UncaughtException.h"

#include <string>
#include <string_view>

namespace orvanta::crash {

/// What people read of an uncaught exception: UTF-8, the last line without an end.
[[nodiscard]] std::string crashReport(const HostInfo& host, std::string_view timestamp,
                                      const UncaughtException& exception);

} // namespace orvanta::crash
