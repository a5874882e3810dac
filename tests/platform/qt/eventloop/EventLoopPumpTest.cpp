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

    [[nodiscard]] bool eventuallyRan(int count) const {
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

TEST_F(EventLoopPumpTest, TakesOneTurnForManyCallsOfAnotherThread) {
    std::thread other([this] {
        for (int call = 0; call < 1000; ++call)
            pump_->wake();
    });
    other.join();
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_EQ(turns_, 1);
}

TEST_F(EventLoopPumpTest, RunsEveryTaskThatAnotherThreadPostsMeanwhile) {
    std::thread other([this] {
        for (int number = 0; number < 1000; ++number)
            loop_.post([this] { ++ran_; });
    });
    EXPECT_TRUE(eventuallyRan(1000));
    other.join();
}

TEST_F(EventLoopPumpTest, GoesOnWithinAnEventLoopThatATaskRuns) {
    const auto timer = loop_.repeat(Seconds(0.002), [this] { ++ran_; });
    bool hasTicked = false;
    loop_.post([&] { hasTicked = eventuallyRan(ran_ + 5); });
    EXPECT_TRUE(eventuallyInEventLoop(kTurnBound, [&] { return hasTicked; }));
}

TEST_F(EventLoopPumpTest, MayBeDestroyedByATask) {
    loop_.post([this] {
        ++ran_;
        pump_.reset();
    });
    EXPECT_TRUE(eventuallyRan(1));
    EXPECT_TRUE(eventLoopComesToRest());
}

TEST_F(EventLoopPumpTest, MayBeDestroyedByALaterTask) {
    loop_.postAfter(Seconds(0.005), [this] {
        ++ran_;
        pump_.reset();
    });
    EXPECT_TRUE(eventuallyRan(1));
    EXPECT_TRUE(eventLoopComesToRest());
}

} // namespace
} // namespace orvanta::test
