#include "platform/qt/eventloop/EventLoopPump.h"

#include "platform/runloop/DrivenRunLoop.h"
#include "tests/platform/qt/support/EventLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

constexpr Seconds kTurnBound{20.0};

/// A main queue on Qt's event loop.
class EventLoopPumpTest : public testing::Test {
protected:
    EventLoopPumpTest() { startQt(); }

    bool eventuallyRan(int count) {
        return eventuallyInEventLoop(kTurnBound, [&] { return ran_ >= count; });
    }

    int turns_ = 0;
    int ran_ = 0;
    std::unique_ptr<EventLoopPump> pump_ = std::make_unique<EventLoopPump>([this] {
        ++turns_;
        loop_.runDue();
        return loop_.timeToNextTask();
    });
    DrivenRunLoop loop_{[this] {
        if (pump_)
            pump_->wake();
    }};
};

TEST_F(EventLoopPumpTest, RunsATaskInTheNextTurnAndThenRests) {
    loop_.post([this] { ++ran_; });
    EXPECT_EQ(ran_, 0);
    EXPECT_TRUE(eventuallyRan(1));
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_LE(turns_, 2);
}

TEST_F(EventLoopPumpTest, RunsALaterTaskWhenItIsDue) {
    loop_.postAfter(Seconds(0.03), [this] { ++ran_; });
    const Seconds posted = loop_.now();
    EXPECT_TRUE(eventuallyRan(1));
    EXPECT_GE(loop_.now() - posted, Seconds(0.029));
}

TEST_F(EventLoopPumpTest, TicksATimerUntilItIsInvalidated) {
    auto timer = loop_.repeat(Seconds(0.002), [this] { ++ran_; });
    EXPECT_TRUE(eventuallyRan(5));
    timer->invalidate();
    const int ticks = ran_;
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_EQ(ran_, ticks);
}

TEST_F(EventLoopPumpTest, TakesManyTasksOfAnotherThreadInFewTurns) {
    std::thread other([this] {
        for (int number = 0; number < 1000; ++number)
            loop_.post([this] { ++ran_; });
    });
    other.join();
    EXPECT_TRUE(eventuallyRan(1000));
    EXPECT_LE(turns_, 10);
}

TEST_F(EventLoopPumpTest, MayBeDestroyedByATask) {
    loop_.post([this] {
        ++ran_;
        pump_.reset();
    });
    EXPECT_TRUE(eventuallyRan(1));
    loop_.post([this] { ++ran_; });
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_EQ(ran_, 1);
}

} // namespace
} // namespace orvanta::test
