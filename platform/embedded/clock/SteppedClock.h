#pragma once

#include "core/platform/RunLoop.h"
#include "platform/embedded/cycle/CycleGate.h"

#include <atomic>

namespace orvanta::embedded {

/// Virtual time: cycles run when and as far as the caller says, on the caller's thread. A call from
/// within a cycle does nothing.
class SteppedClock {
public:
    explicit SteppedClock(CycleGate& gate) : gate_(gate) {}

    /// Cycles of one device. It may run ahead of the others so, and its time becomes the present;
    /// they catch up with the next `advance`.
    void step(AudioObjectID device, unsigned cycles);

    /// Cycles of every device in turn.
    void stepAll(unsigned cycles);

    /// Moves the present on and runs, in the order in which they end, all cycles of all devices
    /// that end by then.
    void advance(Seconds duration);

    /// Nanoseconds from the start of the server.
    [[nodiscard]] std::uint64_t nowNs() const noexcept { return nowNs_.load(); }

    /// Lets all devices go on from the present, whatever clock drove them before.
    void adopt();

private:
    bool runEarliest(std::uint64_t untilNs);
    void run(const CyclePlan& plan, DevicePlan& device);

    CycleGate& gate_;
    std::atomic<std::uint64_t> nowNs_ = 0;
};

} // namespace orvanta::embedded
