#pragma once

#include "platform/embedded/cycle/CycleGate.h"

#include <atomic>
#include <thread>

namespace orvanta::embedded {

/// Real time: a thread of its own runs every cycle when it is due on the monotonic clock. Deadlines
/// are counted from the start of a device, so they do not drift. The thread asks for real-time
/// priority and goes on without. While no device needs a cycle it sleeps and nothing wakes it but a
/// change; a device that needs none is left out. A device that is late by more than 100 ms, as
/// after a suspend of the machine, passes over the cycles it missed.
class RealTimeClock {
public:
    explicit RealTimeClock(CycleGate& gate) : gate_(gate) {}

    RealTimeClock(const RealTimeClock&) = delete;
    RealTimeClock& operator=(const RealTimeClock&) = delete;

    ~RealTimeClock() { stop(); }

    void start();
    /// Returns when the last cycle is over.
    void stop();

    [[nodiscard]] bool isRunning() const noexcept { return thread_.joinable(); }

    /// Nanoseconds of the monotonic clock.
    [[nodiscard]] static std::uint64_t nowNs();

    /// How often the thread has looked for work: stands still while there is none.
    [[nodiscard]] std::uint64_t passes() const noexcept { return passes_.load(); }

private:
    void run();
    void adoptDevices();
    /// Runs the cycle that is due first, if one is. When the next look is worth while, none for
    /// not before a change.
    static std::optional<std::uint64_t> serve(CyclePlan& plan, std::uint64_t now);

    CycleGate& gate_;
    std::thread thread_;
    std::atomic<bool> quit_ = false;
    std::atomic<std::uint64_t> passes_ = 0;
};

} // namespace orvanta::embedded
