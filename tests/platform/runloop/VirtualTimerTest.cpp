#include "platform/runloop/VirtualRunLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace orvanta {
namespace {

using namespace std::chrono_literals;

class VirtualTimerTest : public ::testing::Test {
protected:
    [[nodiscard]] Task noteTime() {
        return [this] {
            times_.push_back(loop_.now().count());
        };
    }

    VirtualRunLoop loop_;
    std::vector<double> times_;
};

TEST_F(VirtualTimerTest, TicksFirstAfterOneIntervalAndThenRegularly) {
    const auto timer = loop_.repeat(2s, noteTime());
    loop_.advance(7s);
    EXPECT_EQ(times_, std::vector<double>({2, 4, 6}));
}

TEST_F(VirtualTimerTest, TellsItsInterval) {
    const auto timer = loop_.repeat(Seconds(1.0 / 60.0), noteTime());
    EXPECT_EQ(timer->interval(), Seconds(1.0 / 60.0));
    EXPECT_TRUE(timer->isValid());
}

TEST_F(VirtualTimerTest, TicksSixtyTimesASecondAtSixtyHertz) {
    const auto timer = loop_.repeat(Seconds(1.0 / 60.0), noteTime());
    loop_.advance(1s);
    EXPECT_EQ(times_.size(), 60U);
    loop_.advance(59s);
    EXPECT_EQ(times_.size(), 3600U);
}

TEST_F(VirtualTimerTest, TicksOncePerAdvanceByItsInterval) {
    for (const double interval : {0.1, 1.0 / 3.0, 1.0 / 60.0, 0.57, 1e-6}) {
        times_.clear();
        const auto timer = loop_.repeat(Seconds(interval), noteTime());
        for (std::size_t count = 1; count <= 1000; ++count) {
            loop_.advance(Seconds(interval));
            ASSERT_EQ(times_.size(), count) << "interval " << interval;
        }
    }
}

TEST_F(VirtualTimerTest, KeepsItsPhaseWhateverTheAdvances) {
    loop_.advance(Seconds(0.25));
    const auto timer = loop_.repeat(1s, noteTime());
    for (const double step : {0.5, 0.1, 1.7, 0.05, 0.65})
        loop_.advance(Seconds(step));
    EXPECT_EQ(times_, std::vector<double>({1.25, 2.25, 3.25}));
}

TEST_F(VirtualTimerTest, LeavesOutTicksThatItsOwnTaskTookTooLongFor) {
    const auto timer = loop_.repeat(1s, [this] {
        times_.push_back(loop_.now().count());
        if (times_.size() == 1)
            loop_.advance(Seconds(2.5));
    });
    loop_.advance(1s);
    loop_.advance(Seconds(1.5));
    EXPECT_EQ(times_, std::vector<double>({1, 4, 5}));
}

TEST_F(VirtualTimerTest, TicksNoMoreOnceInvalidated) {
    const auto timer = loop_.repeat(1s, noteTime());
    loop_.advance(1s);
    timer->invalidate();
    EXPECT_FALSE(timer->isValid());
    loop_.advance(10s);
    EXPECT_EQ(times_.size(), 1U);
    timer->invalidate();
    EXPECT_FALSE(timer->isValid());
}

TEST_F(VirtualTimerTest, LeavesNothingWaitingOnceInvalidated) {
    const auto other = loop_.repeat(5s, noteTime());
    const auto timer = loop_.repeat(1s, noteTime());
    timer->invalidate();
    EXPECT_EQ(loop_.timeToNextTask(), 5s);
}

TEST_F(VirtualTimerTest, TicksNoMoreOnceDestroyed) {
    {
        const auto timer = loop_.repeat(1s, noteTime());
        loop_.advance(1s);
    }
    loop_.advance(10s);
    EXPECT_EQ(times_.size(), 1U);
    EXPECT_FALSE(loop_.timeToNextTask());
}

TEST_F(VirtualTimerTest, MayBeInvalidatedByItsOwnTask) {
    std::unique_ptr<RepeatingTimer> timer;
    timer = loop_.repeat(1s, [&] {
        times_.push_back(loop_.now().count());
        if (times_.size() == 3)
            timer->invalidate();
    });
    loop_.advance(10s);
    EXPECT_EQ(times_, std::vector<double>({1, 2, 3}));
    EXPECT_FALSE(loop_.timeToNextTask());
}

TEST_F(VirtualTimerTest, MayBeDestroyedByItsOwnTask) {
    std::unique_ptr<RepeatingTimer> timer;
    auto held = std::make_shared<int>(7);
    timer = loop_.repeat(1s, [this, &timer, held] {
        timer.reset();
        // What the task holds stays alive until it ends.
        times_.push_back(*held);
    });
    loop_.advance(10s);
    EXPECT_EQ(times_, std::vector<double>({7}));
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(VirtualTimerTest, MayBeInvalidatedByAnEarlierTaskOfTheSameTime) {
    std::unique_ptr<RepeatingTimer> timer;
    loop_.postAfter(1s, [&] { timer->invalidate(); });
    timer = loop_.repeat(1s, noteTime());
    loop_.advance(1s);
    EXPECT_TRUE(times_.empty());
}

TEST(VirtualTimer, IsInvalidAfterTheEndOfItsLoop) {
    std::optional<VirtualRunLoop> loop(std::in_place);
    const auto timer = loop->repeat(1s, [] {});
    loop.reset();
    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(timer->interval(), 1s);
    timer->invalidate();
}

} // namespace
} // namespace orvanta
