#include "platform/runloop/DrivenRunLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DrivenRunLoopTest : public testing::Test {
protected:
    Task note(int number) {
        return [this, number] {
            ran_.push_back(number);
        };
    }

    std::atomic<int> wakes_ = 0;
    std::vector<int> ran_;
    std::unique_ptr<DrivenRunLoop> loop_ = std::make_unique<DrivenRunLoop>([this] { ++wakes_; });
};

TEST_F(DrivenRunLoopTest, RunsNothingByItself) {
    loop_->post(note(1));
    EXPECT_THAT(ran_, IsEmpty());
    EXPECT_EQ(loop_->runDue(), 1U);
    EXPECT_THAT(ran_, ElementsAre(1));
    EXPECT_EQ(loop_->runDue(), 0U);
}

TEST_F(DrivenRunLoopTest, WakesItsEventLoopForAnEarlierTaskOnly) {
    loop_->postAfter(Seconds(60.0), note(1));
    EXPECT_EQ(wakes_, 1);
    loop_->postAfter(Seconds(120.0), note(2));
    EXPECT_EQ(wakes_, 1);
    loop_->postAfter(Seconds(30.0), note(3));
    EXPECT_EQ(wakes_, 2);
    loop_->post(note(4));
    EXPECT_EQ(wakes_, 3);
}

TEST_F(DrivenRunLoopTest, TellsHowLongItsEventLoopMayRest) {
    EXPECT_EQ(loop_->timeToNextTask(), std::nullopt);
    loop_->postAfter(Seconds(60.0), note(1));
    const auto time = loop_->timeToNextTask();
    ASSERT_TRUE(time);
    EXPECT_GT(*time, Seconds(1.0));
    EXPECT_LE(*time, Seconds(60.0));
    loop_->post(note(2));
    EXPECT_EQ(loop_->timeToNextTask(), Seconds(0.0));
}

TEST_F(DrivenRunLoopTest, LeavesWhatIsPostedMeanwhileToTheNextTurn) {
    loop_->post([this] {
        ran_.push_back(1);
        loop_->post(note(3));
    });
    loop_->post(note(2));
    loop_->runDue();
    EXPECT_THAT(ran_, ElementsAre(1, 2));
    loop_->runDue();
    EXPECT_THAT(ran_, ElementsAre(1, 2, 3));
}

TEST_F(DrivenRunLoopTest, DropsWhatWaitsWhenItGoesEvenFromATask) {
    auto timer = loop_->repeat(Seconds(60.0), note(7));
    loop_->post([this] {
        ran_.push_back(1);
        loop_.reset();
    });
    loop_->post(note(2));
    DrivenRunLoop* const loop = loop_.get();
    loop->runDue();
    EXPECT_THAT(ran_, ElementsAre(1));
    EXPECT_FALSE(timer->isValid());
}

TEST_F(DrivenRunLoopTest, TakesTasksFromAnyThread) {
    std::thread other([this] {
        for (int number = 0; number < 100; ++number)
            loop_->post(note(number));
    });
    other.join();
    EXPECT_EQ(loop_->runDue(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(ran_));
    EXPECT_GE(wakes_, 1);
}

} // namespace
} // namespace orvanta::test
