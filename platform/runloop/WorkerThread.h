#pragma once

#include "core/platform/SerialQueue.h"

#include <string_view>
#include <thread>

namespace orvanta {

/// Longer names of threads are refused by Linux.
inline constexpr std::size_t kMaximumThreadNameLength = 15;

/// Names the calling thread, as debuggers and process viewers show it; cut to fit.
void nameThisThread(std::string_view name);

/// Gives the calling thread its share of the processor: utility work yields to the rest, work that
/// a user waits for goes first where the system permits it.
void applyToThisThread(QualityOfService quality);

/// Waits for the end of a thread that has been told to end. On that very thread, where waiting
/// would be for ever, it lets go of it instead: it ends after the running task. Nothing for a
/// thread that never started.
void endThread(std::thread& thread);

} // namespace orvanta
