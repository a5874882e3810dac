#include "platform/pipewire/SilentCycles.h"

#include <pipewire/data-loop.h>
#include <pipewire/loop.h>

#include <ctime>

namespace orvanta::pipewire {
namespace {

constexpr std::uint64_t kSecond = 1'000'000'000;

/// So long without a cycle and without a word why, and the graph counts as standing still.
constexpr std::uint64_t kStandstill = kSecond / 2;

std::uint64_t monotonicTime() noexcept {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * kSecond +
           static_cast<std::uint64_t>(time.tv_nsec);
}

} // namespace

SilentCycles::SilentCycles(ControlLoop& loop, TapCycle& cycle) : loop_(loop), cycle_(cycle) {
    loop_.onDataThread([this] {
        const auto expire = [](void* data, std::uint64_t) {
            static_cast<SilentCycles*>(data)->expired();
        };
        timer_ = pw_loop_add_timer(pw_data_loop_get_loop(loop_.dataLoop()), expire, this);
    });
}

SilentCycles::~SilentCycles() {
    // Whatever was posted before has run when this has.
    loop_.onDataThread([this] {
        if (timer_ != nullptr)
            pw_loop_destroy_source(pw_data_loop_get_loop(loop_.dataLoop()), timer_);
    });
}

void SilentCycles::wake() {
    wakeIsAsked_.store(true, std::memory_order_release);
    askDataThread();
}

void SilentCycles::graphPaused() {
    pauseIsTold_.store(true, std::memory_order_release);
    askDataThread();
}

void SilentCycles::askDataThread() {
    const auto run = [](spa_loop*, bool, std::uint32_t, const void*, std::size_t, void* data) {
        static_cast<SilentCycles*>(data)->answer();
        return 0;
    };
    pw_data_loop_invoke(loop_.dataLoop(), run, 0, nullptr, 0, false, this);
}

void SilentCycles::answer() noexcept {
    if (pauseIsTold_.exchange(false, std::memory_order_acquire))
        graphPausedNow();
    if (wakeIsAsked_.exchange(false, std::memory_order_acquire))
        wakeNow();
}

void SilentCycles::wakeNow() noexcept {
    armAt(monotonicTime());
}

void SilentCycles::graphPausedNow() noexcept {
    graphRuns_ = false;
    if (cycle_.isStarted())
        armAt(lastRun_ + cycle_.lastTime().nanoseconds());
}

void SilentCycles::graphRan() noexcept {
    lastRun_ = monotonicTime();
    graphRuns_ = true;
    if (!armed_ && cycle_.isStarted())
        armAt(lastRun_ + kStandstill);
}

void SilentCycles::expired() noexcept {
    armed_ = false;
    const std::uint64_t now = monotonicTime();
    if (graphRuns_ && now - lastRun_ < kStandstill) {
        if (cycle_.isStarted())
            armAt(now + kStandstill);
        return;
    }
    graphRuns_ = false;
    if (!cycle_.runSilent(now))
        return;
    const std::uint64_t period = cycle_.lastTime().nanoseconds();
    // Deadlines follow from the last one, so that the pace is exact; but what was slept through
    // (the machine was suspended, say) is not made up for.
    const std::uint64_t next = deadline_ + period;
    armAt(now > next + kStandstill ? now + period : next);
}

void SilentCycles::armAt(std::uint64_t time) noexcept {
    deadline_ = time;
    armed_ = true;
    timespec value{};
    value.tv_sec = static_cast<time_t>(time / kSecond);
    // A time of zero would disarm.
    value.tv_nsec = static_cast<long>(time % kSecond) | 1;
    pw_loop_update_timer(pw_data_loop_get_loop(loop_.dataLoop()), timer_, &value, nullptr, true);
}

} // namespace orvanta::pipewire
