#include "platform/runloop/InProcessNotificationCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Announcements : public testing::Test {
protected:
    using Observation = std::unique_ptr<NotificationCenter::Observation>;

    /// Writes `mark` down when it is told.
    [[nodiscard]] Observation observe(const std::string& name, int mark) {
        return center->observe(name, [this, mark] { told.push_back(mark); });
    }

    std::optional<InProcessNotificationCenter> center{std::in_place};
    std::vector<int> told;
};

TEST_F(Announcements, ReachWhoeverObservesTheNameInTheOrderInWhichTheyCame) {
    const auto first = observe("changed", 1);
    const auto other = observe("closed", 2);
    const auto second = observe("changed", 3);
    const auto third = observe("changed", 4);
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(1, 3, 4));
    center->post("closed");
    EXPECT_THAT(told, ElementsAre(1, 3, 4, 2));
}

TEST_F(Announcements, ReachNobodyWhereNobodyObserves) {
    center->post("changed");
    const auto observation = observe("changed", 1);
    center->post("change");
    center->post("changed ");
    center->post("");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(Announcements, ReachAnObserverAsOftenAsItObserves) {
    const auto first = observe("changed", 1);
    const auto second = observe("changed", 1);
    center->post("changed");
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(1, 1, 1, 1));
}

TEST_F(Announcements, EndWithTheObservation) {
    auto first = observe("changed", 1);
    const auto second = observe("changed", 2);
    first.reset();
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(2));
}

TEST_F(Announcements, LetGoOfWhatATaskHoldsWhenTheObservationEnds) {
    const auto held = std::make_shared<int>(1);
    auto observation = center->observe("changed", [held] {});
    EXPECT_EQ(held.use_count(), 2);
    observation.reset();
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(Announcements, ReachNobodyWhoHasGoneBeforeItsTurn) {
    Observation second;
    const auto first = center->observe("changed", [&] { second.reset(); });
    second = observe("changed", 2);
    const auto third = observe("changed", 3);
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(3));
}

TEST_F(Announcements, ReachWhoeverComesMeanwhileFromTheNextOneOn) {
    std::vector<Observation> newcomers;
    const auto first = center->observe("changed", [&] {
        told.push_back(1);
        newcomers.push_back(observe("changed", 2));
    });
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(1));
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(1, 1, 2));
}

TEST_F(Announcements, SurviveCrowdsThatComeAndGoMeanwhile) {
    constexpr int kCrowd = 1000;
    std::vector<Observation> crowd;
    const auto first = center->observe("changed", [&] {
        crowd.clear();
        for (int mark = 0; mark < kCrowd; ++mark)
            crowd.push_back(observe("changed", mark));
    });
    center->post("changed");
    EXPECT_THAT(told, IsEmpty());
    center->post("changed");
    EXPECT_THAT(told, IsEmpty()) << "the first observer replaces the crowd before its turn";
    const auto last = observe("changed", kCrowd);
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(kCrowd));
}

TEST_F(Announcements, MayBeMadeWhileOneIsTold) {
    const auto first = center->observe("outer", [&] {
        told.push_back(1);
        center->post("inner");
        told.push_back(3);
    });
    const auto second = observe("inner", 2);
    const auto third = observe("outer", 4);
    center->post("outer");
    EXPECT_THAT(told, ElementsAre(1, 2, 3, 4));
}

TEST_F(Announcements, DoNotReachATaskAgainThatHasEndedItsOwnObservation) {
    Observation observation;
    const auto held = std::make_shared<int>(7);
    observation = center->observe("changed", [this, &observation, held] {
        observation.reset();
        told.push_back(*held);
        center->post("changed");
    });
    center->post("changed");
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(7));
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(Announcements, MayBeObservedLongerThanTheCenterLives) {
    auto observation = observe("changed", 1);
    center.reset();
    observation.reset();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(Announcements, AreToldToTheEndWhenAnObserverEndsTheCenter) {
    const auto first = center->observe("changed", [&] { center.reset(); });
    const auto second = observe("changed", 2);
    center->post("changed");
    EXPECT_THAT(told, ElementsAre(2));
    EXPECT_FALSE(center);
}

} // namespace
} // namespace orvanta::test
