#include "platform/runloop/VirtualSerialQueue.h"

#include "platform/runloop/VirtualRunLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanta {
namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

class VirtualSerialQueueTest : public ::testing::Test {
protected:
    [[nodiscard]] Task note(const std::string& name) {
        return [this, name] {
            ran_.push_back(name);
        };
    }

    VirtualRunLoop loop_;
    VirtualSerialQueues queues_{loop_};
    Names ran_;
};

TEST_F(VirtualSerialQueueTest, KnowsItsLabelAndQuality) {
    const auto queue = queues_.make("com.example.work", QualityOfService::utility);
    EXPECT_EQ(queue->label(), "com.example.work");
    EXPECT_EQ(queue->qualityOfService(), QualityOfService::utility);
}

TEST_F(VirtualSerialQueueTest, RunsWithTheLoopInOneOrderOfTimeAndPosting) {
    const auto first = queues_.make("first", QualityOfService::standard);
    const auto second = queues_.make("second", QualityOfService::standard);
    second->postAfter(1s, note("a"));
    loop_.postAfter(1s, note("b"));
    first->postAfter(1s, note("c"));
    first->post(note("now"));
    loop_.advance(1s);
    EXPECT_EQ(ran_, Names({"now", "a", "b", "c"}));
}

TEST_F(VirtualSerialQueueTest, SharesTheClock) {
    loop_.advance(3s);
    const auto queue = queues_.make("queue", QualityOfService::standard);
    EXPECT_EQ(queue->now(), 3s);
}

TEST_F(VirtualSerialQueueTest, CarriesWorkThereAndBackWithoutTimePassing) {
    const auto queue = queues_.make("queue", QualityOfService::standard);
    queue->post([&] {
        ran_.emplace_back("work");
        loop_.post(note("result"));
    });
    EXPECT_EQ(loop_.runUntilIdle(), 2U);
    EXPECT_EQ(ran_, Names({"work", "result"}));
    EXPECT_EQ(loop_.now(), 0s);
}

TEST_F(VirtualSerialQueueTest, RunsWhatIsDueAtOnceWhenItIsWaitedFor) {
    const auto queue = queues_.make("queue", QualityOfService::standard);
    queue->post(note("due"));
    queue->postAfter(1s, note("later"));
    queue->postAndWait(note("waited for"));
    queue->post(note("after"));
    EXPECT_EQ(ran_, Names({"due", "waited for"}));
    loop_.advance(1s);
    EXPECT_EQ(ran_, Names({"due", "waited for", "after", "later"}));
}

TEST_F(VirtualSerialQueueTest, DropsItsOwnTasksOnlyWhenItEnds) {
    auto ended = queues_.make("ended", QualityOfService::standard);
    ended->post(note("dropped"));
    const auto timer = ended->repeat(1s, note("dropped"));
    loop_.post(note("kept"));
    ended.reset();
    EXPECT_FALSE(timer->isValid());
    loop_.advance(2s);
    EXPECT_EQ(ran_, Names({"kept"}));
}

TEST_F(VirtualSerialQueueTest, MayEndInsideItsOwnTask) {
    auto queue = queues_.make("queue", QualityOfService::standard);
    const auto timer = queue->repeat(1s, [&] {
        ran_.emplace_back("last");
        queue.reset();
    });
    loop_.advance(5s);
    EXPECT_EQ(ran_, Names({"last"}));
    EXPECT_FALSE(timer->isValid());
}

TEST(VirtualSerialQueue, OutlivesTheLoop) {
    std::optional<VirtualRunLoop> loop(std::in_place);
    VirtualSerialQueues queues(*loop);
    const auto queue = queues.make("queue", QualityOfService::standard);
    loop.reset();
    queue->post([] { ADD_FAILURE() << "nobody advances the clock any more"; });
    EXPECT_EQ(queue->now(), 0s);
}

} // namespace
} // namespace orvanta
