#include "core/publishing/Published.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

TEST(Published, TellsOfAnAssignmentBeforeItTakesEffect) {
    Published<int> value(1);
    std::vector<std::pair<int, int>> seen;
    const auto observation =
        value.observe([&](int coming) { seen.emplace_back(value.get(), coming); });
    EXPECT_TRUE(seen.empty()) << "not of the value that is there";
    value.set(2);
    value.set(2);
    EXPECT_THAT(seen, ElementsAre(std::pair(1, 2), std::pair(2, 2)));
    EXPECT_EQ(value.get(), 2);
}

TEST(Published, TellsInTheOrderOfObservingUntilAnObservationEnds) {
    Published<int> value;
    std::string told;
    std::optional first = value.observe([&](int) { told += "a"; });
    const auto second = value.observe([&](int) { told += "b"; });
    value.set(1);
    first.reset();
    value.set(2);
    EXPECT_EQ(told, "abb");
}

TEST(Published, LetsObserversComeAndGoWhileTheyAreTold) {
    Published<int> value;
    std::string told;
    std::optional<Published<int>::Observation> late;
    Published<int>::Observation own = value.observe([&](int) {
        told += "a";
        late = value.observe([&](int) { told += "b"; });
        own = {};
    });
    value.set(1);
    value.set(2);
    EXPECT_EQ(told, "ab");
}

TEST(Published, TellsNobodyWhoseObservingHasJustEnded) {
    Published<int> value;
    std::string told;
    std::optional<Published<int>::Observation> second;
    const auto first = value.observe([&](int) {
        told += "a";
        second.reset();
    });
    second = value.observe([&](int) { told += "b"; });
    value.set(1);
    EXPECT_EQ(told, "a");
}

TEST(Published, TakesAnAssignmentOfAnObserverAtOnce) {
    Published<int> value;
    std::vector<int> told;
    const auto observation = value.observe([&](int coming) {
        told.push_back(coming);
        if (coming == 1)
            value.set(2);
    });
    value.set(1);
    EXPECT_THAT(told, ElementsAre(1, 2));
    EXPECT_EQ(value.get(), 1) << "the one under way comes last";
}

TEST(Published, MayGoBeforeItsObservations) {
    auto value = std::make_unique<Published<int>>();
    auto observation = value->observe([](int) {});
    auto moved = std::move(observation);
    value.reset();
}

} // namespace
} // namespace orvanta::test
