#pragma once

#include <atomic>
#include <cstdint>

namespace orvanta::crash {

/// Where `fatalSignalHandler` writes to; negative for nowhere.
extern std::atomic<std::int32_t> crashMarkerDescriptor;

/// Writes one line to the marker, gives the signal back to the system and raises it again: crash
/// handling and exit status are the system's own. May interrupt anything, so it allocates nothing,
/// takes no lock and calls `write`, `signal` and `raise` only.
void fatalSignalHandler(int signal) noexcept;

} // namespace orvanta::crash
