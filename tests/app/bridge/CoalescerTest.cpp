#include "app/bridge/Coalescer.h"

#include "platform/runloop/VirtualRunLoop.h"

#include <gtest/gtest.h>

#include <optional>

namespace orvanta {
namespace {

TEST(Coalescer, UpdatesOnceForManyChanges) {
    VirtualRunLoop loop;
    int updates = 0;
    Coalescer coalescer(loop, [&] { ++updates; });
    for (int change = 0; change < 100; ++change)
        coalescer.ask();
    EXPECT_EQ(updates, 0);
    loop.runUntilIdle();
    EXPECT_EQ(updates, 1);
    loop.runUntilIdle();
    EXPECT_EQ(updates, 1);
    coalescer.ask();
    loop.runUntilIdle();
    EXPECT_EQ(updates, 2);
}

TEST(Coalescer, UpdatesAgainForWhatAnUpdateChanges) {
    VirtualRunLoop loop;
    int updates = 0;
    std::optional<Coalescer> coalescer;
    coalescer.emplace(loop, [&] {
        if (++updates < 3)
            coalescer->ask();
    });
    coalescer->ask();
    loop.runUntilIdle();
    EXPECT_EQ(updates, 3);
}

TEST(Coalescer, UpdatesNothingOnceItHasGone) {
    VirtualRunLoop loop;
    int updates = 0;
    {
        Coalescer coalescer(loop, [&] { ++updates; });
        coalescer.ask();
    }
    loop.runUntilIdle();
    EXPECT_EQ(updates, 0);
}

} // namespace
} // namespace orvanta
