// The recorder between a real producer thread and a real writer thread.

#include "core/recording/AudioRecorder.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/runloop/ThreadSerialQueue.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <numeric>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

using Samples = std::vector<float>;

constexpr double rate = 48000.0;
constexpr std::int64_t blockFrames = 480;
constexpr int blocksPerSecond = 100;
/// Blocks before a stall and after it: the first write may come late on a busy machine.
constexpr std::int64_t kMargin = 100;

/// Hands a block over as a callback does, interleaved and planar by turns. Left tells the block and
/// right the place in it, so that a torn or moved frame shows.
void handOver(AudioRecorder& recorder, std::int64_t number) {
    if (!recorder.isRecording())
        return;
    const Samples left(blockFrames, static_cast<float>(number));
    Samples right(blockFrames);
    std::iota(right.begin(), right.end(), 0.0F);
    if (number % 2 == 0) {
        recorder.writeSamples(left.data(), blockFrames, 0);
        recorder.writeSamples(right.data(), blockFrames, 1);
        return;
    }
    Samples both;
    for (std::size_t frame = 0; frame < blockFrames; ++frame) {
        both.push_back(left[frame]);
        both.push_back(right[frame]);
    }
    recorder.writeInterleavedSamples(both.data(), blockFrames, 2);
}

/// The numbers of the blocks in a file. Fails the test where a block is not whole.
std::vector<std::int64_t> blocksIn(const MemoryAudioFile& file) {
    std::vector<std::int64_t> numbers;
    const auto& block = file.channels.at(0);
    const auto& place = file.channels.at(1);
    EXPECT_EQ(block.size() % blockFrames, 0U);
    for (std::size_t frame = 0; frame < block.size(); ++frame) {
        const auto expected = static_cast<float>(frame % blockFrames);
        if (place[frame] != expected || (expected > 0.0F && block[frame] != block[frame - 1])) {
            ADD_FAILURE() << "torn at frame " << frame;
            break;
        }
        if (expected == 0.0F)
            numbers.push_back(static_cast<std::int64_t>(block[frame]));
    }
    return numbers;
}

/// Counts what was produced, and lets a writer wait for it.
class Progress {
public:
    void step() {
        const std::scoped_lock guard(mutex_);
        ++count_;
        changed_.notify_all();
    }

    [[nodiscard]] std::int64_t count() const {
        const std::scoped_lock guard(mutex_);
        return count_;
    }

    void waitFor(std::int64_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return count_ >= count; });
    }

private:
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::int64_t count_ = 0;
};

class RecorderThreads : public testing::Test {
protected:
    [[nodiscard]] Platform platform() { return fakes.platformWith(server, queues); }

    /// Hands blocks over at the pace of 48 kHz.
    void produce(AudioRecorder& recorder, std::int64_t blocks) {
        using Clock = std::chrono::steady_clock;
        const auto start = Clock::now();
        for (std::int64_t number = 0; number < blocks; ++number) {
            std::this_thread::sleep_until(start + number * std::chrono::milliseconds(1000) /
                                                      blocksPerSecond);
            handOver(recorder, number);
            produced.step();
            if (produced.count() == endOfStall)
                written.waitFor(2);
        }
    }

    /// The first write takes as long as this many blocks do. Then the producer waits for the next
    /// write: what the writer's thread takes to get a processor says nothing of the ring.
    void stallTheFirstWriteFor(std::int64_t blocks) {
        fakes.audioFiles.beforeEachWrite([this, blocks] {
            if (!hasStalled.exchange(true)) {
                endOfStall = std::min(produced.count() + blocks, lastBlock.load());
                produced.waitFor(endOfStall);
            }
            written.step();
        });
    }

    /// Records `blocks` from a thread of its own and answers those that are in the file.
    std::vector<std::int64_t> recorded(std::int64_t blocks) {
        AudioRecorder recorder(rate, 2, platform());
        const auto path = recorder.startRecording("P", RecordingFormat::wav, folder.path());
        lastBlock = blocks;
        std::thread producer([&] { produce(recorder, blocks); });
        producer.join();
        recorder.stopRecording();
        // Starting waits for the tail of the file before.
        fakes.wallClock.time += std::chrono::seconds(1);
        recorder.startRecording("P", RecordingFormat::wav, folder.path());
        return blocksIn(fakes.audioFiles.file(path.value()));
    }

    static std::vector<std::int64_t> everyBlock(std::int64_t blocks) {
        std::vector<std::int64_t> numbers;
        for (std::int64_t number = 0; number < blocks; ++number)
            numbers.push_back(number);
        return numbers;
    }

    EmbeddedAudioServer server;
    PlatformFakes fakes;
    ThreadSerialQueues queues;
    TemporaryDirectory folder;
    Progress produced;
    Progress written;
    std::atomic<bool> hasStalled = false;
    std::atomic<std::int64_t> endOfStall = -1;
    std::atomic<std::int64_t> lastBlock = 0;
};

TEST_F(RecorderThreads, LoseNothingWhenTheWriterStallsFor2600Milliseconds) {
    constexpr std::int64_t stall = 260;
    stallTheFirstWriteFor(stall);
    const auto numbers = recorded(stall + kMargin);
    EXPECT_EQ(numbers, everyBlock(stall + kMargin));
    EXPECT_TRUE(hasStalled);
}

TEST_F(RecorderThreads, DropWholeBlocksAndKeepTheOrderWhenTheWriterStallsForLonger) {
    constexpr std::int64_t stall = 350;
    stallTheFirstWriteFor(stall);
    const auto numbers = recorded(stall + kMargin);
    EXPECT_TRUE(hasStalled);
    EXPECT_LT(std::ssize(numbers), stall + kMargin);
    EXPECT_GE(std::ssize(numbers), SampleRing::bufferCapacity / (blockFrames * 2));
    EXPECT_TRUE(std::ranges::is_sorted(numbers, std::less_equal<>())) << "each block once";
}

TEST_F(RecorderThreads, SurviveStartsAndStopsAtAnyMoment) {
    AudioRecorder recorder(rate, 2, platform());
    std::atomic<bool> isOver = false;
    std::thread producer([&] {
        // Counts only what is handed over: a float holds numbers of 24 bits.
        for (std::int64_t number = 1; !isOver;) {
            if (recorder.isRecording()) {
                handOver(recorder, number++);
                produced.step();
            }
        }
    });
    std::vector<std::filesystem::path> paths;
    for (int round = 0; round < 300; ++round) {
        fakes.wallClock.time += std::chrono::seconds(1);
        const auto path = recorder.startRecording("P", RecordingFormat::wav, folder.path());
        ASSERT_TRUE(path);
        paths.push_back(*path);
        // One block may have begun before the start; the next lies within the recording.
        if (round % 3 != 0)
            produced.waitFor(produced.count() + 2);
        recorder.stopRecording();
    }
    isOver = true;
    producer.join();
    recorder.startRecording("Q", RecordingFormat::wav, folder.path());
    // No block is in two recordings, and none in a later one than it was made for.
    std::vector<std::int64_t> all;
    for (const auto& path : paths) {
        EXPECT_TRUE(fakes.audioFiles.file(path).isFinished);
        const auto numbers = blocksIn(fakes.audioFiles.file(path));
        all.insert(all.end(), numbers.begin(), numbers.end());
    }
    EXPECT_GE(all.size(), 200U);
    EXPECT_TRUE(std::ranges::is_sorted(all, std::less_equal<>()));
    EXPECT_EQ(std::ranges::count(all, 0), 0) << "a side is missing";
}

} // namespace
} // namespace orvanta::test
