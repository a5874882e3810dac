#include "platform/runloop/TaskHeap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace orvanta {
namespace {

TEST(TaskHeap, HandsOutByTimeAndAtEqualTimesByOrder) {
    constexpr unsigned kSeed = 20251121;
    std::mt19937 random(kSeed);
    std::vector<TaskPosition> positions;
    for (std::uint64_t order = 0; order < 1000; ++order)
        positions.push_back({Instant(random() % 50), order});
    std::vector<TaskPosition> expected = positions;
    std::sort(expected.begin(), expected.end());
    std::shuffle(positions.begin(), positions.end(), random);

    TaskHeap heap;
    for (const TaskPosition& position : positions)
        heap.push({position, [] {}, nullptr});
    std::vector<TaskPosition> popped;
    while (!heap.isEmpty()) {
        const TaskPosition first = heap.first();
        popped.push_back(heap.pop().position);
        ASSERT_EQ(popped.back(), first);
    }
    EXPECT_EQ(popped, expected);
}

TEST(TaskHeap, GivesUpEverythingAtOnce) {
    TaskHeap heap;
    heap.push({{Instant(1), 1}, [] {}, nullptr});
    heap.push({{Instant(2), 2}, [] {}, nullptr});
    EXPECT_EQ(heap.takeAll().size(), 2U);
    EXPECT_TRUE(heap.isEmpty());
}

} // namespace
} // namespace orvanta
