#include "cli/StopSignals.h"

#include <algorithm>
#include <cerrno>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace orvanta::cli {

StopSignals::StopSignals() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    sigaddset(&signals_, SIGHUP);
    descriptor_ = signalfd(-1, &signals_, SFD_CLOEXEC);
    if (descriptor_ < 0)
        throw std::system_error(errno, std::generic_category(), "cannot watch for signals");
    pthread_sigmask(SIG_BLOCK, &signals_, &before_);
}

StopSignals::~StopSignals() {
    close(descriptor_);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void StopSignals::wait() {
    while (sigwaitinfo(&signals_, nullptr) < 0)
        continue;
}

bool StopSignals::waitUntil(
    std::chrono::time_point<std::chrono::steady_clock, std::chrono::duration<double>> time) {
    using Nanoseconds = std::chrono::nanoseconds;
    for (;;) {
        const auto left =
            std::chrono::duration_cast<Nanoseconds>(time - std::chrono::steady_clock::now());
        const auto wait = std::max(left, Nanoseconds{0}).count();
        timespec span{};
        span.tv_sec = wait / 1'000'000'000;
        span.tv_nsec = wait % 1'000'000'000;
        if (sigtimedwait(&signals_, nullptr, &span) > 0)
            return true;
        if (left <= Nanoseconds{0})
            return false;
    }
}

} // namespace orvanta::cli
