#pragma once

#include "platform/embedded/cycle/CyclePlan.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace orvanta::embedded {

/// Lets one cycle run at a time and changes plans between cycles. The lock inside is never held
/// while a cycle runs, only while pointers change hands, so a cycle never waits for control.
class CycleGate {
public:
    using Clock = std::chrono::steady_clock;

    CycleGate() = default;
    CycleGate(const CycleGate&) = delete;
    CycleGate& operator=(const CycleGate&) = delete;
    ~CycleGate();

    /// Opens a cycle: waits until no other runs and gives the plan, which stays as it is until
    /// `end`. Null inside a cycle of this very thread, or as long as there is no plan.
    CyclePlan* begin();
    void end();

    /// Makes this the plan of the next cycle, unless a newer one was given already. Returns when
    /// no cycle with an older plan is in flight, except inside a cycle of this very thread: there
    /// at once. Outside of cycles it frees the plans that were replaced until now; a cycle frees
    /// none.
    void install(std::shared_ptr<CyclePlan> plan);

    /// Whether this thread is inside a cycle.
    [[nodiscard]] bool isInsideCycle() const;

    /// Number of plans installed and wakes made so far.
    [[nodiscard]] std::uint64_t events() const;
    void wake();
    /// Waits until `events` is no longer `seen` or, if given, this time has come.
    void waitForEvent(std::uint64_t seen, std::optional<Clock::time_point> until);

private:
    [[nodiscard]] bool isMine() const;
    void retire(std::shared_ptr<CyclePlan> plan);

    mutable std::mutex mutex_;
    std::condition_variable finished_;
    std::condition_variable event_;
    std::shared_ptr<CyclePlan> current_;
    /// Waits for the end of the cycle in flight to become the current one.
    std::shared_ptr<CyclePlan> next_;
    /// Plans that were replaced, each linked to the one before: they wait for an installer to free
    /// them.
    std::shared_ptr<CyclePlan> retired_;
    std::uint64_t newest_ = 0;
    std::uint64_t cycles_ = 0;
    std::uint64_t events_ = 0;
    bool running_ = false;
    std::thread::id owner_;
};

} // namespace orvanta::embedded
