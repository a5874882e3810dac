#include "platform/runloop/WorkerRunLoop.h"

#include "tests/platform/runloop/ThreadStatus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;

TEST(WorkerRunLoop, RunsOnTheCallingThreadUntilItIsToldToQuit) {
    WorkerRunLoop loop;
    std::thread::id ranOn;
    loop.post([&] {
        ranOn = std::this_thread::get_id();
        loop.quit();
    });
    loop.run();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST(WorkerRunLoop, FinishesTheTaskThatQuitsAndKeepsTheRestForTheNextRun) {
    WorkerRunLoop loop;
    std::vector<int> ran;
    loop.post([&] {
        loop.quit();
        ran.push_back(1);
    });
    loop.post([&] {
        ran.push_back(2);
        loop.quit();
    });
    loop.run();
    EXPECT_EQ(ran, std::vector<int>({1}));
    loop.run();
    EXPECT_EQ(ran, std::vector<int>({1, 2}));
}

TEST(WorkerRunLoop, ReturnsAtOnceWhenItWasToldToQuitBefore) {
    WorkerRunLoop loop;
    loop.post([] { ADD_FAILURE() << "a task ran after quit"; });
    loop.quit();
    loop.run();
}

TEST(WorkerRunLoop, RunsInDueOrderAndAtEqualTimesInPostingOrder) {
    WorkerRunLoop loop;
    std::vector<int> ran;
    loop.postAfter(60ms, [&] {
        ran.push_back(4);
        loop.quit();
    });
    loop.postAfter(20ms, [&] { ran.push_back(3); });
    loop.post([&] { ran.push_back(1); });
    loop.post([&] { ran.push_back(2); });
    loop.run();
    EXPECT_EQ(ran, std::vector<int>({1, 2, 3, 4}));
}

TEST(WorkerRunLoop, RunsNoTaskBeforeItsTime) {
    WorkerRunLoop loop;
    const Seconds posted = loop.now();
    Seconds ran{};
    loop.postAfter(50ms, [&] {
        ran = loop.now();
        loop.quit();
    });
    loop.run();
    EXPECT_GE(ran - posted, 50ms);
}

TEST(WorkerRunLoop, WakesForAnEarlierTaskThanTheOneItSleepsFor) {
    WorkerRunLoop loop;
    loop.start("loop");
    loop.postAfter(1h, [] { ADD_FAILURE() << "an hour cannot have passed"; });
    std::promise<void> ran;
    loop.postAfter(1ms, [&] { ran.set_value(); });
    EXPECT_EQ(ran.get_future().wait_for(60s), std::future_status::ready);
}

TEST(WorkerRunLoop, TicksARepeatingTimerUntilItsTaskInvalidatesIt) {
    WorkerRunLoop loop;
    std::vector<Seconds> times;
    std::unique_ptr<RepeatingTimer> timer;
    const Seconds start = loop.now();
    timer = loop.repeat(5ms, [&] {
        times.push_back(loop.now() - start);
        if (times.size() == 3) {
            timer->invalidate();
            loop.postAfter(20ms, [&] { loop.quit(); });
        }
    });
    loop.run();
    ASSERT_EQ(times.size(), 3U);
    for (std::size_t tick = 0; tick < times.size(); ++tick)
        EXPECT_GE(times[tick], 5ms * static_cast<double>(tick + 1));
}

TEST(WorkerRunLoop, StopsATimerThatAnotherThreadInvalidates) {
    WorkerRunLoop loop;
    loop.start("loop");
    std::atomic<int> ticks = 0;
    const auto timer = loop.repeat(1ms, [&] { ++ticks; });
    ASSERT_TRUE(becomesTrue([&] { return ticks > 2; }));
    timer->invalidate();
    // A tick may still be ending; it has ended when a task posted now runs.
    std::promise<int> after;
    loop.post([&] { after.set_value(ticks); });
    const int ended = after.get_future().get();
    std::promise<void> later;
    loop.postAfter(20ms, [&] { later.set_value(); });
    later.get_future().wait();
    EXPECT_EQ(ticks, ended);
}

TEST(WorkerRunLoop, FinishesTheRunningTaskAndDropsTheRestAtItsEnd) {
    std::atomic<bool> hasFinished = false;
    std::atomic<bool> hasRunDropped = false;
    std::promise<void> begun;
    std::optional<WorkerRunLoop> loop(std::in_place);
    loop->start("loop");
    loop->post([&] {
        begun.set_value();
        std::this_thread::sleep_for(20ms);
        hasFinished = true;
    });
    auto held = std::make_shared<int>();
    loop->postAfter(1h, [&hasRunDropped, held] { hasRunDropped = true; });
    begun.get_future().wait();
    loop.reset();
    EXPECT_TRUE(hasFinished);
    EXPECT_FALSE(hasRunDropped);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(WorkerRunLoop, MayBeDestroyedByATaskThatItRuns) {
    auto held = std::make_shared<int>();
    auto loop = std::make_unique<WorkerRunLoop>();
    WorkerRunLoop& running = *loop;
    loop->post([&] { loop.reset(); });
    loop->post([held] { ADD_FAILURE() << "a task ran after the end"; });
    running.run();
    EXPECT_EQ(loop, nullptr);
    EXPECT_EQ(held.use_count(), 1);
}

TEST(WorkerRunLoop, MayBeDestroyedByATaskOnItsOwnThread) {
    std::promise<void> started;
    std::promise<void> gone;
    auto loop = std::make_unique<WorkerRunLoop>();
    loop->post([&] {
        started.get_future().wait();
        loop.reset();
        gone.set_value();
    });
    loop->start("loop");
    started.set_value();
    gone.get_future().wait();
    EXPECT_EQ(loop, nullptr);
}

TEST(WorkerRunLoop, StartedTwiceKeepsItsOneThread) {
    WorkerRunLoop loop;
    loop.start("first");
    loop.start("second");
    std::promise<std::string> name;
    loop.post([&] { name.set_value(statusOf(thisThreadID(), "Name")); });
    EXPECT_EQ(name.get_future().get(), "first");
}

TEST(WorkerRunLoop, TakesSeveralQuitsBeforeARunForOne) {
    WorkerRunLoop loop;
    bool hasRun = false;
    loop.quit();
    loop.quit();
    loop.run();
    loop.post([&] {
        hasRun = true;
        loop.quit();
    });
    loop.run();
    EXPECT_TRUE(hasRun);
}

TEST(WorkerRunLoop, SleepsThroughWhileNothingIsDue) {
    WorkerRunLoop loop;
    loop.start("sleeper");
    loop.postAfter(1h, [] {});
    const auto timer = loop.repeat(30min, [] {});
    std::promise<pid_t> thread;
    loop.post([&] { thread.set_value(thisThreadID()); });
    const pid_t id = thread.get_future().get();
    ASSERT_TRUE(becomesTrue([&] { return isAsleep(id); }));
    const long before = timesPutToSleep(id);
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(timesPutToSleep(id), before);
}

TEST(WorkerRunLoop, TakesTasksFromManyThreadsAndKeepsTheOrderOfEach) {
    constexpr int kThreads = 4;
    constexpr int kTasks = 2000;
    WorkerRunLoop loop;
    loop.start("loop");
    std::vector<int> last(kThreads, -1);
    std::atomic<int> inOrder = 0;
    std::vector<std::thread> posters;
    for (std::size_t poster = 0; poster < kThreads; ++poster) {
        posters.emplace_back([&, poster] {
            for (int number = 0; number < kTasks; ++number) {
                loop.post([&, poster, number] {
                    if (last[poster] == number - 1)
                        ++inOrder;
                    last[poster] = number;
                });
            }
        });
    }
    for (std::thread& poster : posters)
        poster.join();
    std::promise<void> done;
    loop.post([&] { done.set_value(); });
    done.get_future().wait();
    EXPECT_EQ(inOrder, kThreads * kTasks);
}

TEST(WorkerRunLoop, BearsTimersMadeAndDroppedByManyThreadsWhileTheyTick) {
    std::atomic<int> ticks = 0;
    WorkerRunLoop loop;
    loop.start("loop");
    std::vector<std::thread> makers;
    for (int maker = 0; maker < 3; ++maker) {
        makers.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                const auto timer = loop.repeat(Seconds(10e-6), [&] { ++ticks; });
                std::this_thread::yield();
                if (round % 2 == 0)
                    timer->invalidate();
            }
        });
    }
    for (std::thread& maker : makers)
        maker.join();
    std::promise<int> after;
    loop.post([&] { after.set_value(ticks); });
    const int ended = after.get_future().get();
    std::promise<void> later;
    loop.postAfter(10ms, [&] { later.set_value(); });
    later.get_future().wait();
    EXPECT_EQ(ticks, ended);
}

TEST(WorkerRunLoop, CountsTimeForwards) {
    const WorkerRunLoop loop;
    Seconds last = loop.now();
    EXPECT_GE(last, 0s);
    for (int reading = 0; reading < 1000; ++reading) {
        const Seconds now = loop.now();
        ASSERT_GE(now, last);
        last = now;
    }
}

} // namespace
} // namespace orvanta::test
