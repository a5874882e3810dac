#include "core/engine/DriftRingBuffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <limits>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using testing::Each;
using testing::ElementsAre;

using Samples = std::vector<float>;

/// Frames of one channel that count on from `first`.
Samples counting(float first, std::size_t count) {
    Samples samples(count);
    std::iota(samples.begin(), samples.end(), first);
    return samples;
}

void write(DriftRingBuffer& ring, const Samples& samples) {
    ring.write(samples.data(), static_cast<std::int64_t>(samples.size()));
}

Samples read(DriftRingBuffer& ring, std::int64_t count) {
    Samples samples(static_cast<std::size_t>(count), -1.0F);
    ring.read(samples.data(), count);
    return samples;
}

TEST(DriftRingBuffer, IsEmptyAtFirst) {
    DriftRingBuffer ring(8, 1);
    EXPECT_EQ(ring.available(), 0);
    EXPECT_EQ(ring.written(), 0U);
    EXPECT_EQ(ring.readCount(), 0U);
    EXPECT_THAT(read(ring, 3), ElementsAre(0.0F, 0.0F, 0.0F));
    EXPECT_EQ(ring.readCount(), 3U);
    write(ring, {1.0F});
    EXPECT_THAT(read(ring, 1), ElementsAre(1.0F)) << "the reader has not moved before";
}

TEST(DriftRingBuffer, HoldsOneFrameLessThanItsCapacityAndForgetsTheOldest) {
    DriftRingBuffer ring(8, 1);
    write(ring, counting(1, 7));
    EXPECT_EQ(ring.available(), 7);
    write(ring, {8.0F});
    EXPECT_EQ(ring.available(), 7);
    EXPECT_EQ(ring.written(), 8U);
    EXPECT_THAT(read(ring, 7), ElementsAre(2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F, 8.0F));
}

TEST(DriftRingBuffer, FillsUpWithZerosWhatIsNotThere) {
    DriftRingBuffer ring(8, 1);
    write(ring, {1.0F, 2.0F});
    EXPECT_THAT(read(ring, 4), ElementsAre(1.0F, 2.0F, 0.0F, 0.0F));
    EXPECT_EQ(ring.readCount(), 4U);
    EXPECT_EQ(ring.available(), 0);
}

TEST(DriftRingBuffer, WrapsAroundItsEndWithoutAnOverrun) {
    DriftRingBuffer ring(8, 1);
    write(ring, counting(1, 6));
    read(ring, 5);
    write(ring, counting(7, 5));
    EXPECT_EQ(ring.written(), 11U);
    EXPECT_EQ(ring.available(), 6);
    EXPECT_THAT(read(ring, 7), ElementsAre(6.0F, 7.0F, 8.0F, 9.0F, 10.0F, 11.0F, 0.0F));
}

TEST(DriftRingBuffer, OfManyMoreFramesKeepsTheLastThatFit) {
    DriftRingBuffer ring(5, 1);
    write(ring, counting(1, 100));
    EXPECT_EQ(ring.written(), 100U);
    EXPECT_EQ(ring.available(), 4);
    EXPECT_THAT(read(ring, 4), ElementsAre(97.0F, 98.0F, 99.0F, 100.0F));
}

TEST(DriftRingBuffer, OfNothingLeavesWhatItHolds) {
    DriftRingBuffer ring(4, 1);
    write(ring, counting(1, 3));
    read(ring, 2);
    write(ring, counting(4, 2));
    ring.write(nullptr, 0);
    ring.read(nullptr, 0);
    EXPECT_EQ(ring.available(), 3);
    EXPECT_THAT(read(ring, 4), ElementsAre(3.0F, 4.0F, 5.0F, 0.0F));
}

TEST(DriftRingBuffer, OfNothingTakesAndGivesNothing) {
    DriftRingBuffer ring(8, 2);
    ring.write(nullptr, 0);
    ring.read(nullptr, 0);
    EXPECT_EQ(ring.available(), 0);
    EXPECT_EQ(ring.written(), 0U);
    EXPECT_EQ(ring.readCount(), 0U);
    DriftRingBuffer none(0, 2);
    none.write(nullptr, 0);
    none.read(nullptr, 0);
    EXPECT_EQ(none.available(), 0);
}

TEST(DriftRingBuffer, KeepsTheSamplesOfAFrameTogether) {
    DriftRingBuffer ring(4, 2);
    const Samples frames{1, -1, 2, -2, 3, -3};
    ring.write(frames.data(), 3);
    Samples out(8, 9.0F);
    ring.read(out.data(), 2);
    ring.write(frames.data(), 2);
    ring.read(out.data(), 4);
    EXPECT_THAT(out, ElementsAre(3, -3, 1, -1, 2, -2, 0, 0));
}

TEST(DriftRingBuffer, OfOneFrameHoldsNone) {
    DriftRingBuffer ring(1, 1);
    write(ring, {1.0F, 2.0F});
    EXPECT_EQ(ring.available(), 0);
    EXPECT_THAT(read(ring, 2), Each(0.0F));
}

TEST(DriftRingBuffer, DoesWhatAQueueWithABoundDoes) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        const auto capacity = std::uniform_int_distribution<std::int64_t>(1, 40)(random);
        DriftRingBuffer ring(capacity, 1);
        std::deque<float> queue;
        float next = 1.0F;
        for (int step = 0; step < 100; ++step) {
            const auto count = std::uniform_int_distribution<std::int64_t>(0, 60)(random);
            if (step % 2 == 0) {
                const Samples block = counting(next, static_cast<std::size_t>(count));
                next += static_cast<float>(count);
                write(ring, block);
                queue.insert(queue.end(), block.begin(), block.end());
                while (std::ssize(queue) > capacity - 1)
                    queue.pop_front();
            } else {
                for (const float sample : read(ring, count)) {
                    ASSERT_EQ(sample, queue.empty() ? 0.0F : queue.front());
                    if (!queue.empty())
                        queue.pop_front();
                }
            }
            ASSERT_EQ(ring.available(), std::ssize(queue));
        }
    }
}

/// A producer that never overruns and its consumer see every frame once and in order.
TEST(DriftRingBufferThreads, HandEveryFrameOverOnceAndInOrder) {
    constexpr std::int64_t total = 300'000;
    DriftRingBuffer ring(64, 2);
    std::thread producer([&] {
        Samples block;
        for (std::int64_t sent = 0; sent < total;) {
            const auto count = std::min<std::int64_t>(1 + sent % 17, total - sent);
            if (63 - ring.available() < count) {
                std::this_thread::yield();
                continue;
            }
            block.clear();
            for (std::int64_t frame = 0; frame < count; ++frame) {
                block.push_back(static_cast<float>(sent + frame));
                block.push_back(-static_cast<float>(sent + frame));
            }
            ring.write(block.data(), count);
            sent += count;
        }
    });
    Samples block(2UL * 32UL);
    bool isInOrder = true;
    for (std::int64_t received = 0; received < total;) {
        const auto count = std::min<std::int64_t>(ring.available(), 32);
        if (count == 0)
            std::this_thread::yield();
        ring.read(block.data(), count);
        for (std::int64_t frame = 0; frame < count; ++frame) {
            const auto expected = static_cast<float>(received + frame);
            isInOrder = isInOrder && block[static_cast<std::size_t>(2 * frame)] == expected &&
                        block[static_cast<std::size_t>(2 * frame + 1)] == -expected;
        }
        received += count;
    }
    producer.join();
    EXPECT_TRUE(isInOrder);
    EXPECT_EQ(ring.written(), static_cast<std::uint64_t>(total));
}

TEST(DriftRingBufferThreads, SurviveAProducerThatNeverWaits) {
    DriftRingBuffer ring(16, 1);
    std::atomic<bool> isDone = false;
    std::thread producer([&] {
        const Samples block = counting(1, 8);
        while (!isDone.load(std::memory_order_relaxed))
            write(ring, block);
    });
    for (int round = 0; round < 20'000; ++round) {
        read(ring, 5);
        const std::int64_t available = ring.available();
        ASSERT_GE(available, 0);
        ASSERT_LT(available, 16);
    }
    isDone = true;
    producer.join();
    EXPECT_EQ(ring.readCount(), 100'000U);
}

TEST(DriftRingBufferDeathTest, MisuseEndsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    float sample = 0;
    EXPECT_DEATH(DriftRingBuffer(std::numeric_limits<std::int64_t>::max(), 2), "");
    EXPECT_DEATH(DriftRingBuffer(std::numeric_limits<std::int64_t>::max() / 2, 2), "");
    EXPECT_DEATH(DriftRingBuffer(-1, 2), "");
    EXPECT_DEATH(DriftRingBuffer(8, 1).write(&sample, -1), "");
    EXPECT_DEATH(DriftRingBuffer(8, 1).read(&sample, -1), "");
    EXPECT_DEATH(DriftRingBuffer(0, 1).write(&sample, 1), "");
    EXPECT_DEATH(DriftRingBuffer(0, 1).read(&sample, 1), "");
}

} // namespace
} // namespace orvanta::test
