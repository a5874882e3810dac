#pragma once

#include <chrono>
#include <csignal>

namespace orvanta::cli {

/// Holds SIGINT, SIGTERM and SIGHUP back from every thread started while it lives, so that the
/// program can take its taps down before it ends.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// True as soon as one of the signals arrives, false when the time has come.
    bool waitUntil(
        std::chrono::time_point<std::chrono::steady_clock, std::chrono::duration<double>> time);

    /// Returns when one of the signals arrives.
    void wait();

    /// To be polled beside other files: readable from the arrival of a signal until `wait` or
    /// `waitUntil` has taken it.
    [[nodiscard]] int descriptor() const { return descriptor_; }

private:
    sigset_t signals_{};
    sigset_t before_{};
    int descriptor_ = -1;
};

} // namespace orvanta::cli
