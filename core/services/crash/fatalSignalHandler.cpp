// Nothing but the handler stands here: a check looks at what this object file calls.
#include "core/services/crash/fatalSignalHandler.h"

#include "core/services/crash/MarkerLine.h"

#include <csignal>
#include <cstddef>
#include <unistd.h>

namespace orvanta::crash {
namespace {

constexpr std::size_t kBufferSize = 4096;
/// Threads that die at the same time compose a line each, none in another's.
constexpr std::size_t kSlotSize = 64;
constexpr std::size_t kSlots = kBufferSize / kSlotSize;
static_assert(kLongestMarkerLine <= kSlotSize);

char buffer[kBufferSize];
std::atomic<std::size_t> slotsTaken{0};
static_assert(std::atomic<std::size_t>::is_always_lock_free);
static_assert(std::atomic<std::int32_t>::is_always_lock_free);

} // namespace

std::atomic<std::int32_t> crashMarkerDescriptor{-1};

void fatalSignalHandler(int signal) noexcept {
    const std::int32_t marker = crashMarkerDescriptor.load(std::memory_order_relaxed);
    if (marker >= 0) {
        const std::size_t slot = slotsTaken.fetch_add(1, std::memory_order_relaxed) % kSlots;
        char* const line = buffer + slot * kSlotSize;
        // A disk that is full takes no line; there is nobody left to tell.
        [[maybe_unused]] const ssize_t written = ::write(marker, line, putMarkerLine(line, signal));
    }
    // The signal is blocked while it is handled: it strikes on return, where it struck before.
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace orvanta::crash
