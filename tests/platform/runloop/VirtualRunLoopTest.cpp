#include "platform/runloop/VirtualRunLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace orvanta {
namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

class VirtualRunLoopTest : public ::testing::Test {
protected:
    [[nodiscard]] Task note(const std::string& name) {
        return [this, name] {
            ran_.push_back(name);
        };
    }

    VirtualRunLoop loop_;
    Names ran_;
};

TEST_F(VirtualRunLoopTest, RunsNothingWhilePosting) {
    loop_.post(note("a"));
    EXPECT_TRUE(ran_.empty());
    EXPECT_EQ(loop_.runUntilIdle(), 1U);
    EXPECT_EQ(ran_, Names({"a"}));
}

TEST_F(VirtualRunLoopTest, RunsTasksInDueOrder) {
    loop_.postAfter(3s, note("third"));
    loop_.postAfter(1s, note("first"));
    loop_.postAfter(2s, note("second"));
    EXPECT_EQ(loop_.advance(10s), 3U);
    EXPECT_EQ(ran_, Names({"first", "second", "third"}));
}

TEST_F(VirtualRunLoopTest, RunsTasksOfEqualTimesInPostingOrder) {
    loop_.postAfter(1s, note("a"));
    loop_.postAfter(0s, note("b"));
    loop_.post(note("c"));
    loop_.postAfter(1s, note("d"));
    loop_.advance(1s);
    EXPECT_EQ(ran_, Names({"b", "c", "a", "d"}));
}

TEST_F(VirtualRunLoopTest, RunsWhatIsDueAtTheEndOfTheAdvanceAndNothingLater) {
    loop_.postAfter(1s, note("at the end"));
    loop_.postAfter(Seconds(1.000000001), note("a nanosecond later"));
    loop_.advance(1s);
    EXPECT_EQ(ran_, Names({"at the end"}));
    loop_.advance(Seconds(1e-9));
    EXPECT_EQ(ran_, Names({"at the end", "a nanosecond later"}));
}

TEST_F(VirtualRunLoopTest, TellsEachTaskItsOwnTime) {
    std::vector<double> times;
    for (const double delay : {0.25, 0.5, 2.0})
        loop_.postAfter(Seconds(delay), [&] { times.push_back(loop_.now().count()); });
    loop_.advance(5s);
    EXPECT_EQ(times, std::vector<double>({0.25, 0.5, 2.0}));
    EXPECT_EQ(loop_.now(), 5s);
}

TEST_F(VirtualRunLoopTest, RunsInTheSameAdvanceWhatTasksPostForTheSameTime) {
    loop_.postAfter(1s, [this] {
        ran_.emplace_back("outer");
        loop_.post([this] {
            ran_.emplace_back("inner");
            loop_.post(note("innermost"));
        });
    });
    loop_.postAfter(1s, note("posted before"));
    loop_.advance(1s);
    EXPECT_EQ(ran_, Names({"outer", "posted before", "inner", "innermost"}));
}

TEST_F(VirtualRunLoopTest, CountsDelaysFromTheTimeOfTheTaskThatPosts) {
    loop_.postAfter(1s, [this] { loop_.postAfter(1s, note("at two seconds")); });
    loop_.advance(Seconds(1.5));
    EXPECT_TRUE(ran_.empty());
    loop_.advance(Seconds(0.5));
    EXPECT_EQ(ran_, Names({"at two seconds"}));
}

TEST_F(VirtualRunLoopTest, DoesNotMoveTheClockToGetIdle) {
    loop_.postAfter(1s, note("later"));
    loop_.post(note("now"));
    EXPECT_EQ(loop_.runUntilIdle(), 1U);
    EXPECT_EQ(ran_, Names({"now"}));
    EXPECT_EQ(loop_.now(), 0s);
}

TEST_F(VirtualRunLoopTest, TellsHowLongUntilTheNextTask) {
    EXPECT_FALSE(loop_.timeToNextTask());
    loop_.postAfter(5s, note("later"));
    loop_.advance(2s);
    EXPECT_EQ(loop_.timeToNextTask(), 3s);
    loop_.advance(3s);
    EXPECT_FALSE(loop_.timeToNextTask());
}

TEST_F(VirtualRunLoopTest, TakesDelaysBelowZeroAsNow) {
    loop_.postAfter(-5s, note("a"));
    EXPECT_EQ(loop_.runUntilIdle(), 1U);
    EXPECT_EQ(loop_.now(), 0s);
}

TEST_F(VirtualRunLoopTest, MayBeAdvancedByATaskWithoutGoingBackAfterwards) {
    loop_.postAfter(1s, [this] {
        loop_.advance(5s);
        ran_.emplace_back("outer");
    });
    loop_.postAfter(3s, note("inner"));
    loop_.advance(2s);
    EXPECT_EQ(ran_, Names({"inner", "outer"}));
    EXPECT_EQ(loop_.now(), 6s);
}

TEST_F(VirtualRunLoopTest, TakesTasksFromAnotherThread) {
    std::thread([this] { loop_.post(note("from elsewhere")); }).join();
    loop_.runUntilIdle();
    EXPECT_EQ(ran_, Names({"from elsewhere"}));
}

TEST(VirtualRunLoop, DropsWaitingTasksAtItsEndWithoutRunningThem) {
    bool hasRun = false;
    auto held = std::make_shared<int>();
    {
        VirtualRunLoop loop;
        loop.postAfter(1s, [&hasRun, held] { hasRun = true; });
        EXPECT_EQ(held.use_count(), 2);
    }
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(hasRun);
}

TEST(VirtualRunLoop, BearsADroppedTaskThatPostsWhenItIsDestroyed) {
    struct PostsAtItsEnd {
        RunLoop& loop;

        explicit PostsAtItsEnd(RunLoop& runLoop) : loop(runLoop) {}

        PostsAtItsEnd(const PostsAtItsEnd&) = delete;
        PostsAtItsEnd& operator=(const PostsAtItsEnd&) = delete;

        ~PostsAtItsEnd() {
            loop.post([] { ADD_FAILURE() << "a dropped task ran"; });
        }
    };

    VirtualRunLoop loop;
    auto last = std::make_shared<PostsAtItsEnd>(loop);
    loop.postAfter(1s, [last] { ADD_FAILURE() << "a dropped task ran"; });
    last.reset();
}

TEST(VirtualRunLoop, MayBeDestroyedByATaskThatItRuns) {
    auto loop = std::make_unique<VirtualRunLoop>();
    VirtualRunLoop& running = *loop;
    loop->post([&] { loop.reset(); });
    loop->post([] { ADD_FAILURE() << "a task ran after the end"; });
    EXPECT_EQ(running.advance(1s), 1U);
    loop = std::make_unique<VirtualRunLoop>();
    VirtualRunLoop& idle = *loop;
    loop->post([&] { loop.reset(); });
    EXPECT_EQ(idle.runUntilIdle(), 1U);
}

TEST(VirtualRunLoop, TellsWhatWaits) {
    VirtualRunLoop loop;
    loop.post([] {});
    loop.postAfter(3s, [] {});
    const auto slow = loop.repeat(2s, [] {});
    const auto fast = loop.repeat(1s, [] {});
    EXPECT_EQ(loop.waiting().posted, 2U);
    EXPECT_EQ(loop.waiting().timerIntervals, (std::vector<Seconds>{1s, 2s}));
    loop.advance(2s);
    fast->invalidate();
    EXPECT_EQ(loop.waiting().posted, 1U);
    EXPECT_EQ(loop.waiting().timerIntervals, (std::vector<Seconds>{2s}));
}

} // namespace
} // namespace orvanta
