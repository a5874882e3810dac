#include "core/platform/WeakAccess.h"

#include "platform/runloop/VirtualRunLoop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace orvanta::test {
namespace {

struct Counter {
    Counter() = default;

    explicit Counter(bool& gone) : hasGone(&gone) {}

    ~Counter() {
        access.end();
        if (hasGone != nullptr)
            *hasGone = true;
    }

    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;

    int count = 0;
    bool* hasGone = nullptr;
    WeakAccess<Counter> access{*this};
};

TEST(WeakAccess, LetsATaskReachAnObjectThatIsThere) {
    VirtualRunLoop loop;
    Counter counter;
    loop.post(counter.access.task([](Counter& self) { ++self.count; }));
    loop.runUntilIdle();
    EXPECT_EQ(counter.count, 1);
}

TEST(WeakAccess, LetsATaskPassByWhenTheObjectHasGone) {
    VirtualRunLoop loop;
    auto counter = std::make_unique<Counter>();
    bool hasRun = false;
    loop.post(counter->access.task([&](Counter&) { hasRun = true; }));
    counter.reset();
    loop.runUntilIdle();
    EXPECT_FALSE(hasRun);
}

TEST(WeakAccess, HoldsTheObjectsEndUpWhileATaskIsWithIt) {
    bool hasGone = false;
    auto counter = std::make_unique<Counter>(hasGone);
    std::promise<void> begun;
    bool hadGoneDuringTheTask = true;
    std::thread other([&, task = counter->access.task([&](Counter&) {
        begun.set_value();
        // Long enough for an end that does not wait.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        hadGoneDuringTheTask = hasGone;
    })] { task(); });
    begun.get_future().wait();
    counter.reset();
    EXPECT_TRUE(hasGone);
    other.join();
    EXPECT_FALSE(hadGoneDuringTheTask);
}

} // namespace
} // namespace orvanta::test
