#pragma once

#include <chrono>
#include <csignal>

namespace orvanta::cli {

/// Holds SIGINT, SIGTERM and SIGHUP back from every thread started while it lives, so that the
/// program can take its tap down before it ends.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// True as soon as one of the signals arrives, false when the time has come.
    bool waitUntil(
        std::chrono::time_point<std::chrono::steady_clock, std::chrono::duration<double>> time);

private:
    sigset_t signals_{};
    sigset_t before_{};
};

} // namespace orvanta::cli
