#pragma once

#include "platform/pipewire/ControlLoop.h"
#include "platform/pipewire/TapCycle.h"

#include <atomic>
#include <cstdint>

struct spa_source;

namespace orvanta::pipewire {

/// Gives a tap's IOProc silent cycles at the pace of the last ones while the graph has none for
/// it: its program paused, its device or the server is gone. Tails then ring out, meters fall and
/// recordings keep their length, until the IOProc says it is at rest; from there on it costs
/// nothing.
///
/// All of it happens on the data thread, where the graph's cycles run too. While those come, the
/// timer only looks twice a second whether they still do.
class SilentCycles {
public:
    /// With the control loop's lock held, like the destructor, `wake` and `graphPaused`.
    SilentCycles(ControlLoop& loop, TapCycle& cycle);
    ~SilentCycles();
    SilentCycles(const SilentCycles&) = delete;
    SilentCycles& operator=(const SilentCycles&) = delete;

    /// False where the system had no descriptor left for the timer: then nothing else may be
    /// called.
    [[nodiscard]] bool isUsable() const { return timer_ != nullptr; }

    /// From the control side: an IOProc was started, it must get a cycle at once.
    void wake();

    /// From the control side: the graph gives no more cycles until one comes.
    void graphPaused();

    /// On the data thread: a cycle of the graph has run.
    void graphRan() noexcept;

private:
    void expired() noexcept;
    void armAt(std::uint64_t time) noexcept;
    void askDataThread();
    void answer() noexcept;
    void wakeNow() noexcept;
    void graphPausedNow() noexcept;

    ControlLoop& loop_;
    TapCycle& cycle_;
    spa_source* timer_ = nullptr;
    std::atomic<bool> wakeIsAsked_{false};
    std::atomic<bool> pauseIsTold_{false};
    // On the data thread only, in nanoseconds of the monotonic clock.
    std::uint64_t lastRun_ = 0;
    std::uint64_t deadline_ = 0;
    bool graphRuns_ = false;
    bool armed_ = false;
};

} // namespace orvanta::pipewire
