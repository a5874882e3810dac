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

TEST(Published, IsNotToldAnObserverWhoseObservingEndsInItsOwnCall) {
    Published<int> value;
    std::vector<int> told;
    Observation own = value.observe([&](int coming) {
        told.push_back(coming);
        own = {};
        value.set(coming + 1);
    });
    value.set(1);
    EXPECT_THAT(told, ElementsAre(1));
}

TEST(Published, ChangesInPlaceAsByAnAssignment) {
    Published<std::vector<int>> value;
    value.update([](std::vector<int>& list) { list.push_back(1); });
    EXPECT_THAT(value.get(), ElementsAre(1)) << "with nobody to tell";
    std::vector<std::size_t> sizes;
    const auto observation = value.observe([&](const std::vector<int>& coming) {
        sizes.push_back(value.get().size());
        sizes.push_back(coming.size());
    });
    value.update([](std::vector<int>& list) { list.push_back(2); });
    EXPECT_THAT(sizes, ElementsAre(1U, 2U));
    EXPECT_THAT(value.get(), ElementsAre(1, 2));
}

TEST(Published, LetsGoOfAnObserverWithItsObservation) {
    Published<int> value;
    const auto kept = std::make_shared<int>(0);
    auto observation = value.observe([kept](int) {});
    EXPECT_EQ(kept.use_count(), 2);
    observation = {};
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(Published, RunsWhatFollowsAnAssignmentWhenItHasTakenEffect) {
    ObjectWillChange object;
    std::vector<int> seen;
    Published<int> value(object, 1, [&] { seen.push_back(value.get()); });
    EXPECT_TRUE(seen.empty());
    value.set(2);
    value.set(2);
    value.update([](int& number) { ++number; });
    EXPECT_THAT(seen, ElementsAre(2, 2, 3));
}

TEST(ObjectWillChange, IsToldOfEveryValueOfTheObjectBeforeTheValuesOwnObservers) {
    ObjectWillChange object;
    Published<int> number(object, 1);
    Published<std::string> text(object, "a");
    std::string told;
    const auto whole = object.observe([&] { told += std::to_string(number.get()) + text.get(); });
    const auto own =
        number.observe([&](int coming) { told += "<" + std::to_string(coming) + ">"; });
    number.set(2);
    EXPECT_EQ(told, "1a<2>");
    text.update([](std::string& value) { value += "b"; });
    EXPECT_EQ(told, "1a<2>2a");
    text.set("ab");
    EXPECT_EQ(told, "1a<2>2a2ab") << "also of an equal value";
}

TEST(Published, MayGoBeforeItsObservations) {
    auto value = std::make_unique<Published<int>>();
    auto observation = value->observe([](int) {});
    auto moved = std::move(observation);
    value.reset();
}

} // namespace
} // namespace orvanta::test
