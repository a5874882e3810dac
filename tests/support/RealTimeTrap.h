#pragma once

#include <cstdint>

/// The allocation and lock trap. Linked into a program (or preloaded), it stands before the C
/// library's allocation, locking and blocking calls and aborts with the name of the call when a
/// thread inside a RealTimeSection reaches one. Sanitizer builds go without it: both want to stand
/// in the same place.
namespace orvanta::test {

/// How many real-time sections have been entered since the program started, over all threads: lets
/// a test make sure that the trap stood around what it looked at.
std::uint64_t realTimeSectionsEntered() noexcept;

} // namespace orvanta::test
