#include "platform/runloop/ThreadSerialQueue.h"
#include "tests/platform/runloop/ThreadStatus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <future>
#include <iterator>
#include <memory>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;

/// What `question` answers on the queue's thread.
template <typename Question>
auto askedOn(SerialQueue& queue, Question question) {
    std::promise<decltype(question())> answer;
    queue.post([&] { answer.set_value(question()); });
    return answer.get_future().get();
}

class ThreadSerialQueueTest : public ::testing::Test {
protected:
    ThreadSerialQueues queues_;
};

TEST_F(ThreadSerialQueueTest, KnowsItsLabelAndQuality) {
    const auto queue = queues_.make("com.example.work", QualityOfService::userInteractive);
    EXPECT_EQ(queue->label(), "com.example.work");
    EXPECT_EQ(queue->qualityOfService(), QualityOfService::userInteractive);
}

TEST_F(ThreadSerialQueueTest, RunsItsTasksInOrderOnOneThreadOfItsOwn) {
    const auto queue = queues_.make("work", QualityOfService::standard);
    std::vector<int> ran;
    const auto thread = askedOn(*queue, [] { return std::this_thread::get_id(); });
    bool isSameThread = true;
    for (int number = 0; number < 100; ++number) {
        queue->post([&, number] {
            ran.push_back(number);
            isSameThread = isSameThread && std::this_thread::get_id() == thread;
        });
    }
    const auto result = askedOn(*queue, [&] { return ran; });
    ASSERT_EQ(result.size(), 100U);
    for (int number = 0; number < 100; ++number)
        ASSERT_EQ(result[static_cast<std::size_t>(number)], number);
    EXPECT_TRUE(isSameThread);
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(ThreadSerialQueueTest, WaitsForATaskAndAllThatWasPostedBefore) {
    const auto queue = queues_.make("work", QualityOfService::standard);
    std::vector<int> ran;
    for (int number = 0; number < 3; ++number)
        queue->post([&, number] { ran.push_back(number); });
    queue->postAndWait([&] { ran.push_back(3); });
    EXPECT_EQ(ran, (std::vector<int>{0, 1, 2, 3}));
}

TEST_F(ThreadSerialQueueTest, HasNoThreadUntilItHasATask) {
    const auto count = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    };
    // A program's first thread may bring one of a sanitizer along.
    const auto first = queues_.make("first", QualityOfService::standard);
    first->postAndWait([] {});
    const auto before = count();
    const auto queue = queues_.make("work", QualityOfService::standard);
    EXPECT_EQ(count(), before);
    queue->postAndWait([&] { EXPECT_EQ(count(), before + 1); });
}

TEST_F(ThreadSerialQueueTest, NamesItsThreadAfterTheLastPartOfTheLabel) {
    const auto name = [this](const char* label) {
        const auto queue = queues_.make(label, QualityOfService::standard);
        return askedOn(*queue, [] { return statusOf(thisThreadID(), "Name"); });
    };
    EXPECT_EQ(name("com.example.discovery"), "discovery");
    EXPECT_EQ(name("plain"), "plain");
    EXPECT_EQ(name("com.example.averyverylongname"), "averyverylongna");
}

TEST_F(ThreadSerialQueueTest, YieldsToTheRestWhenItsWorkIsUtility) {
    const auto niceValue = [this](QualityOfService quality) {
        const auto queue = queues_.make("work", quality);
        return askedOn(*queue, [] { return getpriority(PRIO_PROCESS, 0); });
    };
    const int own = getpriority(PRIO_PROCESS, 0);
    EXPECT_EQ(niceValue(QualityOfService::standard), own);
    EXPECT_GE(niceValue(QualityOfService::utility), own);
    EXPECT_GE(niceValue(QualityOfService::utility), 10);
    EXPECT_LE(niceValue(QualityOfService::userInitiated), own);
    EXPECT_LE(niceValue(QualityOfService::userInteractive), own);
    // Whoever may go below zero gets all of it.
    if (niceValue(QualityOfService::userInteractive) == -10) {
        EXPECT_EQ(niceValue(QualityOfService::userInitiated), -5);
    }
}

TEST_F(ThreadSerialQueueTest, WaitsForTheRunningTaskAndDropsTheRestAtItsEnd) {
    std::atomic<bool> hasFinished = false;
    std::promise<void> begun;
    auto queue = queues_.make("work", QualityOfService::standard);
    queue->post([&] {
        begun.set_value();
        std::this_thread::sleep_for(20ms);
        hasFinished = true;
    });
    queue->post([] { ADD_FAILURE() << "a dropped task ran"; });
    const auto timer = queue->repeat(1h, [] {});
    begun.get_future().wait();
    queue.reset();
    EXPECT_TRUE(hasFinished);
    EXPECT_FALSE(timer->isValid());
}

TEST_F(ThreadSerialQueueTest, MayEndInsideItsOwnTask) {
    std::promise<void> ended;
    {
        auto queue = std::make_shared<std::unique_ptr<SerialQueue>>();
        *queue = queues_.make("work", QualityOfService::standard);
        (*queue)->post([queue, &ended] {
            queue->reset();
            ended.set_value();
        });
    }
    EXPECT_EQ(ended.get_future().wait_for(60s), std::future_status::ready);
}

TEST_F(ThreadSerialQueueTest, MayEndBeforeItsThreadHasBegun) {
    for (int round = 0; round < 100; ++round) {
        const auto queue = queues_.make("work", QualityOfService::standard);
        queue->post([] {});
    }
}

TEST_F(ThreadSerialQueueTest, WaitsWithoutWakingForATaskOfLater) {
    const auto queue = queues_.make("work", QualityOfService::standard);
    const pid_t thread = askedOn(*queue, thisThreadID);
    queue->postAfter(1h, [] {});
    ASSERT_TRUE(becomesTrue([&] { return isAsleep(thread); }));
    const long before = timesPutToSleep(thread);
    std::this_thread::sleep_for(200ms);
    EXPECT_LE(timesPutToSleep(thread) - before, 1);
}

} // namespace
} // namespace orvanta::test
