#include "platform/embedded/cycle/Tape.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace orvanta::embedded {
namespace {

std::vector<float> countingFrom(std::size_t first, std::size_t count) {
    std::vector<float> samples(count);
    for (std::size_t index = 0; index < count; ++index)
        samples[index] = static_cast<float>(first + index);
    return samples;
}

TEST(Tape, KeepsEverythingAcrossItsChunks) {
    Tape tape(2);
    EXPECT_TRUE(tape.contents().empty());
    std::size_t written = 0;
    for (const std::size_t count : {1UL, 32767UL, 32768UL, 5UL, 100000UL}) {
        tape.append(countingFrom(written, count));
        written += count;
        ASSERT_EQ(tape.size(), written);
    }
    EXPECT_EQ(tape.contents(), countingFrom(0, written));
    EXPECT_EQ(tape.channels(), 2U);
}

TEST(Tape, IsReadWhileItIsWritten) {
    constexpr std::size_t kBlock = 1000;
    constexpr std::size_t kBlocks = 500;
    Tape tape(1);
    std::atomic<bool> finished = false;
    std::thread writer([&] {
        for (std::size_t block = 0; block < kBlocks; ++block)
            tape.append(countingFrom(block * kBlock, kBlock));
        finished = true;
    });
    while (!finished) {
        const auto contents = tape.contents();
        ASSERT_EQ(contents.size() % kBlock, 0U);
        if (!contents.empty()) {
            ASSERT_EQ(contents.back(), static_cast<float>(contents.size() - 1));
        }
    }
    writer.join();
    EXPECT_EQ(tape.size(), kBlock * kBlocks);
}

} // namespace
} // namespace orvanta::embedded
