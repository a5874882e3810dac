#include "core/services/crash/FatalSignals.h"

#include "core/services/crash/PrivateFile.h"
#include "core/services/crash/fatalSignalHandler.h"

#include <csignal>
#include <cstddef>
#include <unistd.h>

namespace orvanta::crash {
namespace {

constexpr int kFatalSignals[] = {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL, SIGTRAP};

/// The registers that the system puts there take up to 11 KiB on today's processors.
constexpr std::size_t kAlternateStackSize = 64U << 10U;
alignas(std::max_align_t) std::byte alternateStack[kAlternateStackSize];

void provideAlternateStack() noexcept {
    stack_t present{};
    // One that somebody else has provided does as well.
    if (sigaltstack(nullptr, &present) != 0 || (present.ss_flags & SS_DISABLE) == 0)
        return;
    stack_t ours{};
    ours.ss_sp = alternateStack;
    ours.ss_size = kAlternateStackSize;
    sigaltstack(&ours, nullptr);
}

} // namespace

void openCrashMarker(const std::filesystem::path& file) {
    const int descriptor = PrivateFile(file).release();
    const int before = crashMarkerDescriptor.exchange(descriptor);
    if (before >= 0)
        ::close(before);
}

void handleFatalSignals() noexcept {
    provideAlternateStack();

    struct sigaction action {};

    action.sa_handler = fatalSignalHandler;
    action.sa_flags = SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (const int signal : kFatalSignals)
        sigaction(signal, &action, nullptr);
}

} // namespace orvanta::crash
