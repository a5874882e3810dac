#include "platform/embedded/clock/SteppedClock.h"

#include "platform/embedded/cycle/DeviceCycle.h"

#include <algorithm>
#include <cmath>

namespace orvanta::embedded {

void SteppedClock::step(AudioObjectID id, unsigned cycles) {
    for (unsigned count = 0; count < cycles; ++count) {
        CyclePlan* plan = gate_.begin();
        if (plan == nullptr)
            return;
        for (DevicePlan& device : plan->devices) {
            if (device.device == id)
                run(*plan, device);
        }
        gate_.end();
    }
}

void SteppedClock::stepAll(unsigned cycles) {
    for (unsigned count = 0; count < cycles; ++count) {
        CyclePlan* plan = gate_.begin();
        if (plan == nullptr)
            return;
        for (DevicePlan& device : plan->devices)
            run(*plan, device);
        gate_.end();
    }
}

void SteppedClock::advance(Seconds duration) {
    const double nanoseconds = std::max(duration.count(), 0.0) * 1e9;
    const std::uint64_t untilNs = nowNs() + static_cast<std::uint64_t>(std::llround(nanoseconds));
    while (runEarliest(untilNs)) {
    }
    nowNs_.store(std::max(nowNs(), untilNs));
}

bool SteppedClock::runEarliest(std::uint64_t untilNs) {
    CyclePlan* plan = gate_.begin();
    if (plan == nullptr)
        return false;
    const auto end = [](const DevicePlan& device) {
        device.io->timeline.setSampleRate(device.sampleRate);
        return device.io->timeline.nextEnd(device.frames);
    };
    const auto earliest = std::min_element(
        plan->devices.begin(), plan->devices.end(),
        [&](const DevicePlan& left, const DevicePlan& right) { return end(left) < end(right); });
    const bool isDue = earliest != plan->devices.end() && end(*earliest) <= untilNs;
    if (isDue)
        run(*plan, *earliest);
    gate_.end();
    return isDue;
}

void SteppedClock::run(const CyclePlan& plan, DevicePlan& device) {
    device.io->timeline.setSampleRate(device.sampleRate);
    runCycle(device, plan.restsWhenStepped ? Rest::heeded : Rest::ignored);
    nowNs_.store(std::max(nowNs(), device.io->timeline.nextStart()));
}

void SteppedClock::adopt() {
    CyclePlan* plan = gate_.begin();
    if (plan == nullptr)
        return;
    for (DevicePlan& device : plan->devices)
        device.io->timeline.rebase(nowNs());
    gate_.end();
}

} // namespace orvanta::embedded
