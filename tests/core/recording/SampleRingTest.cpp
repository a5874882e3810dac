#include "core/recording/SampleRing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <deque>
#include <limits>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Samples = std::vector<float>;

constexpr std::int64_t ringCapacity = SampleRing::bufferCapacity;

Samples rampOf(std::int64_t count, float first = 0.0F) {
    Samples samples(static_cast<std::size_t>(count));
    std::iota(samples.begin(), samples.end(), first);
    return samples;
}

class StereoRing : public testing::Test {
protected:
    bool write(const Samples& samples) {
        const std::int64_t before = ring.usedFrames();
        ring.writeInterleavedSamples(samples.data(), std::ssize(samples));
        return ring.usedFrames() > before;
    }

    void writeChannel(int channel, const Samples& samples) {
        ring.writeSamples(samples.data(), std::ssize(samples), channel);
    }

    Samples readChannel(int channel, std::int64_t frames) {
        Samples samples(static_cast<std::size_t>(frames));
        ring.copyChannel(channel, frames, samples.data());
        return samples;
    }

    /// All there is, frame by frame.
    Samples readAll() {
        const std::int64_t frames = ring.usedFrames();
        const Samples left = readChannel(0, frames);
        const Samples right = readChannel(1, frames);
        ring.consume(frames);
        Samples both;
        for (std::size_t i = 0; i < left.size(); ++i) {
            both.push_back(left[i]);
            both.push_back(right[i]);
        }
        return both;
    }

    SampleRing ring{2};
};

TEST_F(StereoRing, GivesAnInterleavedBlockBack) {
    write({1, 2, 3, 4});
    EXPECT_EQ(ring.usedFrames(), 2);
    EXPECT_THAT(readAll(), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(readAll(), IsEmpty());
}

TEST_F(StereoRing, CanBeFilledToTheLastSample) {
    EXPECT_TRUE(write(rampOf(ringCapacity - 10)));
    EXPECT_TRUE(write(rampOf(10, 5.0F))) << "exactly what is free";
    EXPECT_EQ(ring.usedFrames(), ringCapacity / 2);
    EXPECT_FALSE(write({1, 2})) << "full";
    const Samples all = readAll();
    EXPECT_EQ(all[static_cast<std::size_t>(ringCapacity) - 1], 14.0F);
    EXPECT_TRUE(write(rampOf(ringCapacity))) << "the whole ring at once, when it is empty";
}

TEST_F(StereoRing, DropsABlockThatDoesNotFitAsAWhole) {
    ASSERT_TRUE(write(rampOf(ringCapacity - 10)));
    EXPECT_FALSE(write(rampOf(12)));
    EXPECT_EQ(ring.usedFrames(), (ringCapacity - 10) / 2) << "nothing partial is kept";
    EXPECT_TRUE(write(rampOf(10))) << "a smaller one still fits";
}

TEST_F(StereoRing, NeverTakesABlockLongerThanItself) {
    for (int round = 0; round < 3; ++round)
        EXPECT_FALSE(write(rampOf(300000)));
    EXPECT_THAT(readAll(), IsEmpty());
}

TEST_F(StereoRing, ReadsABlockAcrossItsEndBackInOrder) {
    write(rampOf(ringCapacity - 6));
    readAll();
    write(rampOf(20, 100.0F));
    EXPECT_EQ(readAll(), rampOf(20, 100.0F));
}

TEST_F(StereoRing, ReadsAPlanarBlockAcrossItsEndBackInOrder) {
    write(rampOf(ringCapacity - 6));
    readAll();
    writeChannel(0, {1, 3, 5, 7, 9});
    writeChannel(1, {2, 4, 6, 8, 10});
    EXPECT_THAT(readAll(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(StereoRing, PublishesAPlanarBlockWithItsLastChannel) {
    writeChannel(0, {1, 3});
    EXPECT_EQ(ring.usedFrames(), 0);
    writeChannel(1, {2, 4});
    EXPECT_THAT(readAll(), ElementsAre(1, 2, 3, 4));
}

TEST_F(StereoRing, PublishesNothingWhenTheLastChannelNeverComes) {
    for (int round = 0; round < 3; ++round)
        writeChannel(0, {1, 3});
    EXPECT_EQ(ring.usedFrames(), 0);
}

TEST_F(StereoRing, MakesAChannelThatWasLeftOutSilent) {
    write(rampOf(ringCapacity, 1.0F));
    readAll();
    writeChannel(1, {2, 4});
    EXPECT_THAT(readAll(), ElementsAre(0, 2, 0, 4)) << "and not what was there a round ago";
}

TEST_F(StereoRing, IgnoresChannelsThatItDoesNotHave) {
    writeChannel(0, {1, 3});
    writeChannel(2, {8, 8});
    writeChannel(-1, {9, 9});
    writeChannel(1, {2, 4});
    EXPECT_THAT(readAll(), ElementsAre(1, 2, 3, 4));
}

TEST_F(StereoRing, TakesOrDropsAPlanarBlockWhole) {
    ASSERT_TRUE(write(rampOf(ringCapacity - 2)));
    writeChannel(0, {1, 3});
    ring.consume(ringCapacity / 2 - 1); // room appears between the channels
    writeChannel(1, {2, 4});
    EXPECT_THAT(readAll(), IsEmpty()) << "half a block would tear the frames";
    writeChannel(0, {5});
    writeChannel(1, {6});
    EXPECT_THAT(readAll(), ElementsAre(5, 6));
}

TEST_F(StereoRing, LosesTheRestOfABlockOfWhichAChannelWasPassedOver) {
    ring.passOver(0);
    writeChannel(1, {2, 4});
    EXPECT_THAT(readAll(), IsEmpty()) << "half a block would tear the frames";
    writeChannel(0, {5});
    writeChannel(1, {6});
    EXPECT_THAT(readAll(), ElementsAre(5, 6));
    ring.passOver(1);
    writeChannel(1, {8});
    EXPECT_THAT(readAll(), ElementsAre(0, 8)) << "a block of its own";
}

TEST_F(StereoRing, EndsAShorterChannelInSilence) {
    write(rampOf(ringCapacity, 1.0F));
    readAll();
    writeChannel(0, {1});
    writeChannel(1, {2, 4, 6});
    EXPECT_THAT(readAll(), ElementsAre(1, 2, 0, 4, 0, 6));
}

TEST_F(StereoRing, AsksForRoomAgainWhenALaterChannelIsLonger) {
    ASSERT_TRUE(write(rampOf(ringCapacity - 4)));
    writeChannel(0, {1, 3});
    writeChannel(1, {2, 4, 6});
    EXPECT_EQ(ring.usedFrames(), (ringCapacity - 4) / 2);
}

TEST_F(StereoRing, KeepsTheSampleOfAFrameThatIsNotWhole) {
    write({1, 2, 3});
    EXPECT_EQ(ring.usedFrames(), 1);
    EXPECT_THAT(readAll(), ElementsAre(1, 2));
    write({4});
    EXPECT_THAT(readAll(), ElementsAre(3, 4));
}

TEST_F(StereoRing, IsEmptyAfterItWasCleared) {
    write({1, 2, 3});
    ring.clear();
    EXPECT_EQ(ring.usedFrames(), 0);
    write({7, 8});
    EXPECT_THAT(readAll(), ElementsAre(7, 8));
}

TEST_F(StereoRing, ForgetsAHalfWrittenPlanarBlockWhenItIsCleared) {
    writeChannel(0, {1, 3});
    ring.clear();
    writeChannel(1, {2, 4});
    EXPECT_THAT(readAll(), IsEmpty()) << "half a block would tear the frames";
    writeChannel(0, {5});
    writeChannel(1, {6});
    EXPECT_THAT(readAll(), ElementsAre(5, 6));
}

TEST_F(StereoRing, TakesBlocksOfNothing) {
    write({});
    writeChannel(0, {});
    writeChannel(1, {});
    EXPECT_EQ(ring.usedFrames(), 0);
}

TEST_F(StereoRing, KeepsEveryBit) {
    const Samples odd{-0.0F, 1e-42F, std::numeric_limits<float>::infinity(), 3.0F};
    write(odd);
    const Samples back = readAll();
    EXPECT_TRUE(std::signbit(back[0]));
    EXPECT_EQ(back, odd);
}

/// The same, plainly: a queue of samples that takes whole blocks while they fit.
class PlainRing {
public:
    void write(const Samples& samples) {
        if (std::ssize(queue_) + std::ssize(samples) <= ringCapacity)
            queue_.insert(queue_.end(), samples.begin(), samples.end());
    }

    Samples read(std::int64_t frames) {
        const auto end = queue_.begin() + frames * 2;
        Samples samples(queue_.begin(), end);
        queue_.erase(queue_.begin(), end);
        return samples;
    }

    [[nodiscard]] std::int64_t usedFrames() const { return std::ssize(queue_) / 2; }

private:
    std::deque<float> queue_;
};

TEST_F(StereoRing, IsAQueueOfWholeBlocksInWhateverOrderItIsUsed) {
    std::mt19937 random(4711);
    const auto upTo = [&](std::int64_t highest) {
        return std::uniform_int_distribution<std::int64_t>(0, highest)(random);
    };
    PlainRing plain;
    float next = 0.0F;
    for (int step = 0; step < 2000; ++step) {
        const auto action = upTo(3);
        if (action == 0) {
            const std::int64_t frames = std::min(upTo(60000), ring.usedFrames());
            const Samples left = readChannel(0, frames);
            const Samples right = readChannel(1, frames);
            ring.consume(frames);
            const Samples expected = plain.read(frames);
            for (std::size_t i = 0; i < left.size(); ++i) {
                ASSERT_EQ(left[i], expected[2 * i]);
                ASSERT_EQ(right[i], expected[2 * i + 1]);
            }
        } else {
            const Samples block = rampOf(2 * upTo(20000), next);
            next = std::fmod(next + 1000.0F, 1e6F);
            plain.write(block);
            if (action == 1) {
                write(block);
            } else {
                Samples sides[2];
                for (std::size_t i = 0; i < block.size(); ++i)
                    sides[i % 2].push_back(block[i]);
                writeChannel(0, sides[0]);
                writeChannel(1, sides[1]);
            }
        }
        ASSERT_EQ(ring.usedFrames(), plain.usedFrames()) << "step " << step;
    }
}

TEST_F(StereoRing, LetsAWriteThatWasClearedAwayInItsMiddlePublishNothing) {
    constexpr int rounds = 2000;
    constexpr std::int64_t blockFrames = 50000;
    const Samples block = rampOf(2 * blockFrames);
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    std::thread producer([&] {
        for (int round = 1; round <= rounds; ++round) {
            while (begun.load() < round)
                std::this_thread::yield();
            ring.writeInterleavedSamples(block.data(), std::ssize(block));
            ended = round;
        }
    });
    for (int round = 1; round <= rounds; ++round) {
        ring.clear();
        ring.writeInterleavedSamples(block.data(), std::ssize(block));
        begun = round;
        for (volatile int wait = round % 500 * 20; wait > 0;)
            wait = wait - 1;
        ring.clear();
        while (ended.load() < round)
            std::this_thread::yield();
        const std::int64_t frames = ring.usedFrames();
        if (frames != 0 && frames != blockFrames) {
            ADD_FAILURE() << frames << " frames, although at most one block came after clearing";
            break;
        }
    }
    begun = rounds;
    producer.join();
}

TEST(SampleRing, OfOneChannelPublishesEveryWrite) {
    SampleRing ring(1);
    const Samples samples{1, 2, 3};
    ring.writeSamples(samples.data(), 3, 0);
    EXPECT_EQ(ring.usedFrames(), 3);
}

TEST(SampleRing, OfThreeChannelsFillsAGapWithinABlockByNothingOld) {
    SampleRing ring(3);
    const Samples old(static_cast<std::size_t>(ringCapacity), 9.0F);
    ring.writeInterleavedSamples(old.data(), std::ssize(old));
    ring.clear();
    const Samples samples{5};
    ring.writeSamples(samples.data(), 1, 0);
    ring.writeSamples(samples.data(), 1, 2);
    Samples frame(3, -1.0F);
    for (int channel = 0; channel < 3; ++channel)
        ring.copyChannel(channel, 1, &frame[static_cast<std::size_t>(channel)]);
    EXPECT_THAT(frame, ElementsAre(5, 0, 5));
}

} // namespace
} // namespace orvanta::test
