#include "platform/embedded/clock/RealTimeClock.h"

#include "platform/embedded/cycle/DeviceCycle.h"

#include <pthread.h>
#include <sched.h>

namespace orvanta::embedded {

namespace {

constexpr std::uint64_t kLargestLagNs = 100'000'000;
constexpr int kRealTimePriority = 20;

void askForRealTimePriority() {
    sched_param parameters{};
    parameters.sched_priority = kRealTimePriority;
    // Refused on most machines to most users; the demonstration then runs as it can.
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters);
}

/// Whether the device takes part now; one that has slept goes on from here.
bool isAwake(const DevicePlan& device, std::uint64_t now) noexcept {
    DeviceIO& io = *device.io;
    if (!needsCycle(device)) {
        io.sleeps = true;
        return false;
    }
    io.timeline.setSampleRate(device.sampleRate);
    if (io.sleeps || now > io.timeline.nextStart() + kLargestLagNs)
        io.timeline.skipTo(now);
    io.sleeps = false;
    return true;
}

} // namespace

void RealTimeClock::start() {
    if (isRunning())
        return;
    quit_ = false;
    thread_ = std::thread([this] { run(); });
}

void RealTimeClock::stop() {
    if (!isRunning())
        return;
    quit_ = true;
    gate_.wake();
    thread_.join();
}

std::uint64_t RealTimeClock::nowNs() {
    const auto now = CycleGate::Clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

void RealTimeClock::run() {
    askForRealTimePriority();
    adoptDevices();
    while (!quit_) {
        const std::uint64_t seen = gate_.events();
        const std::uint64_t now = nowNs();
        CyclePlan* plan = gate_.begin();
        const auto next = serve(*plan, now);
        gate_.end();
        ++passes_;
        if (!next)
            gate_.waitForEvent(seen, std::nullopt);
        else if (*next > now)
            gate_.waitForEvent(seen, CycleGate::Clock::time_point(std::chrono::nanoseconds(*next)));
    }
}

void RealTimeClock::adoptDevices() {
    CyclePlan* plan = gate_.begin();
    for (DevicePlan& device : plan->devices) {
        device.io->timeline.rebase(nowNs());
        device.io->sleeps = true;
    }
    gate_.end();
}

std::optional<std::uint64_t> RealTimeClock::serve(CyclePlan& plan, std::uint64_t now) {
    DevicePlan* first = nullptr;
    for (DevicePlan& device : plan.devices) {
        if (!isAwake(device, now))
            continue;
        const std::uint64_t start = device.io->timeline.nextStart();
        if (first == nullptr || start < first->io->timeline.nextStart())
            first = &device;
    }
    if (first == nullptr)
        return std::nullopt;
    const std::uint64_t start = first->io->timeline.nextStart();
    if (start > now)
        return start;
    runCycle(*first, Rest::heeded);
    return now;
}

} // namespace orvanta::embedded
