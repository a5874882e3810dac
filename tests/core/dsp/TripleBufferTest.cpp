#include "core/dsp/TripleBuffer.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace orvanta {
namespace {

using Row = std::array<int, 5>;

Row rowOf(int value) {
    Row row{};
    row.fill(value);
    return row;
}

TEST(TripleBuffer, GivesTheInitialValueUntilOneIsPublished) {
    TripleBuffer<int> buffer(7);
    EXPECT_EQ(buffer.latest(), 7);
    EXPECT_EQ(buffer.latest(), 7);
}

TEST(TripleBuffer, GivesTheNewestValueAndKeepsIt) {
    TripleBuffer<int> buffer(0);
    buffer.publish(1);
    buffer.publish(2);
    buffer.publish(3);
    EXPECT_EQ(buffer.latest(), 3);
    EXPECT_EQ(buffer.latest(), 3);
    buffer.publish(4);
    EXPECT_EQ(buffer.latest(), 4);
}

TEST(TripleBuffer, NeverShowsAValueHalfWrittenOrAnOlderOneAgain) {
    constexpr int count = 200'000;
    TripleBuffer<Row> buffer(rowOf(0));
    std::thread writer([&] {
        for (int value = 1; value <= count; ++value)
            buffer.publish(rowOf(value));
    });
    bool isWhole = true;
    bool isInOrder = true;
    int last = 0;
    while (last < count) {
        const Row& row = buffer.latest();
        isWhole = isWhole && row == rowOf(row.front());
        isInOrder = isInOrder && row.front() >= last;
        last = row.front();
    }
    writer.join();
    EXPECT_TRUE(isWhole);
    EXPECT_TRUE(isInOrder);
}

} // namespace
} // namespace orvanta
