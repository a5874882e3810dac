#include "core/platform/WeakAccess.h"

#include "platform/runloop/VirtualRunLoop.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>

namespace orvanta::test {
namespace {

struct Counter {
    int count = 0;
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
    auto counter = std::make_unique<Counter>();
    std::promise<void> begun;
    std::promise<void> mayEnd;
    int seen = 0;
    std::thread other([&, task = counter->access.task([&](Counter& self) {
        begun.set_value();
        mayEnd.get_future().wait();
        seen = ++self.count;
    })] { task(); });
    begun.get_future().wait();
    std::thread ending([&] { counter.reset(); });
    mayEnd.set_value();
    ending.join();
    other.join();
    EXPECT_EQ(seen, 1);
}

} // namespace
} // namespace orvanta::test
