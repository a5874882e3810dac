#include "platform/embedded/cycle/CycleGate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace orvanta::embedded {
namespace {

std::shared_ptr<CyclePlan> plan(std::uint64_t sequence) {
    auto made = std::make_shared<CyclePlan>();
    made->sequence = sequence;
    return made;
}

TEST(CycleGate, HasNoCycleWithoutAPlan) {
    CycleGate gate;
    EXPECT_EQ(gate.begin(), nullptr);
}

TEST(CycleGate, AnOlderPlanDoesNotReplaceANewerOne) {
    CycleGate gate;
    gate.install(plan(2));
    gate.install(plan(1));
    EXPECT_EQ(gate.begin()->sequence, 2U);
    gate.end();
}

TEST(CycleGate, ACycleInsideACycleIsNone) {
    CycleGate gate;
    gate.install(plan(1));
    ASSERT_NE(gate.begin(), nullptr);
    EXPECT_EQ(gate.begin(), nullptr);
    gate.end();
}

TEST(CycleGate, APlanGivenInsideACycleHoldsFromTheNext) {
    CycleGate gate;
    gate.install(plan(1));
    const std::weak_ptr<CyclePlan> next = [&] {
        auto made = plan(2);
        CyclePlan* current = gate.begin();
        gate.install(made);
        EXPECT_EQ(current->sequence, 1U);
        return made;
    }();
    gate.end();
    EXPECT_EQ(gate.begin(), next.lock().get());
    gate.end();
}

TEST(CycleGate, AnInstallReturnsWhenNoOlderCycleIsInFlight) {
    CycleGate gate;
    gate.install(plan(1));
    std::atomic<bool> quit = false;
    std::atomic<bool> begun = false;
    std::atomic<std::uint64_t> inFlight = 0;
    std::thread cycles([&] {
        while (!quit) {
            inFlight = gate.begin()->sequence;
            begun = true;
            std::this_thread::sleep_for(std::chrono::microseconds(50));
            inFlight = 0;
            gate.end();
        }
    });
    while (!begun)
        std::this_thread::yield();
    for (std::uint64_t sequence = 2; sequence < 500; ++sequence) {
        gate.install(plan(sequence));
        const std::uint64_t seen = inFlight;
        EXPECT_TRUE(seen == 0 || seen >= sequence) << seen << " after " << sequence;
    }
    quit = true;
    cycles.join();
}

TEST(CycleGate, TheInstallerFreesThePlanThatWasReplaced) {
    CycleGate gate;
    std::weak_ptr<CyclePlan> old;
    {
        const auto first = plan(1);
        old = first;
        gate.install(first);
    }
    gate.install(plan(2));
    EXPECT_TRUE(old.expired());
}

TEST(CycleGate, TheCycleFreesNoPlanAndAChangeFromOutsideFreesThemAll) {
    CycleGate gate;
    std::vector<std::weak_ptr<CyclePlan>> replaced;
    std::uint64_t sequence = 0;
    const auto install = [&] {
        auto made = plan(++sequence);
        replaced.emplace_back(made);
        gate.install(std::move(made));
    };
    install();
    for (int cycle = 0; cycle < 3; ++cycle) {
        gate.begin();
        install();
        install();
        gate.end();
    }
    for (const auto& old : replaced)
        EXPECT_FALSE(old.expired());
    gate.install(plan(++sequence));
    for (const auto& old : replaced)
        EXPECT_TRUE(old.expired());
}

TEST(CycleGate, WaitsForAnEventOrForATime) {
    CycleGate gate;
    const std::uint64_t seen = gate.events();
    gate.waitForEvent(seen, CycleGate::Clock::now());
    gate.wake();
    gate.waitForEvent(seen, std::nullopt);
    EXPECT_NE(gate.events(), seen);
}

} // namespace
} // namespace orvanta::embedded
