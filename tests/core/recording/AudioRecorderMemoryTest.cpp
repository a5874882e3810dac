// Without sanitizers: they allocate for the program themselves.

#include "core/recording/AudioRecorder.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <sys/resource.h>
#include <vector>

namespace {
bool thereIsNoMemory = false;
} // namespace

/// Stands in for the library's own in this program: arrays find no memory on demand.
void* operator new[](std::size_t size) {
    if (thereIsNoMemory)
        throw std::bad_alloc();
    return ::operator new(size);
}

void operator delete[](void* memory) noexcept {
    ::operator delete(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    ::operator delete(memory);
}

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;

/// How often this thread has waited for the system to hand out a page.
long pageFaults() {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_minflt;
}

constexpr long kPagesOfARing = SampleRing::bufferCapacity * sizeof(float) / 4096;

TEST(ASampleRing, HoldsNoMemoryUntilItIsUsed) {
    const long before = pageFaults();
    const SampleRing ring(2);
    EXPECT_LT(pageFaults() - before, kPagesOfARing / 8);
}

TEST(ASampleRing, CostsItsProducerNoPageOnceItHasItsMemory) {
    SampleRing ring(2);
    ring.takeMemory();
    const std::vector<float> all(SampleRing::bufferCapacity, 1.0F);
    const long before = pageFaults();
    ring.writeInterleavedSamples(all.data(), SampleRing::bufferCapacity);
    EXPECT_LT(pageFaults() - before, kPagesOfARing / 8);
    EXPECT_EQ(ring.usedFrames(), SampleRing::bufferCapacity / 2);
}

TEST(AnAudioRecorder, CostsItsProducerNoPageOnceItRecords) {
    const TemporaryDirectory folder;
    EmbeddedAudioServer server;
    PlatformFakes fakes;
    AudioRecorder recorder(48000.0, 2, fakes.platformWith(server));
    const std::vector<float> all(SampleRing::bufferCapacity, 1.0F);
    ASSERT_TRUE(recorder.startRecording("Player", RecordingFormat::wav, folder.path()));
    const long before = pageFaults();
    recorder.writeInterleavedSamples(all.data(), SampleRing::bufferCapacity / 2, 2);
    EXPECT_LT(pageFaults() - before, kPagesOfARing / 8);
}

TEST(RecorderWithoutMemory, KeepsTheSamplesForTheNextTick) {
    const TemporaryDirectory folder;
    EmbeddedAudioServer server;
    PlatformFakes fakes;
    AudioRecorder recorder(48000.0, 2, fakes.platformWith(server));
    const auto path = recorder.startRecording("Player", RecordingFormat::wav, folder.path());
    const float frame[] = {1, 2};
    recorder.writeInterleavedSamples(frame, 1, 2);
    thereIsNoMemory = true;
    fakes.runLoop.advance(100ms);
    thereIsNoMemory = false;
    EXPECT_TRUE(fakes.audioFiles.file(path.value()).writes.empty());
    fakes.runLoop.advance(100ms);
    EXPECT_THAT(fakes.audioFiles.file(path.value()).interleaved(), testing::ElementsAre(1, 2));

    recorder.writeInterleavedSamples(frame, 1, 2);
    recorder.stopRecording();
    thereIsNoMemory = true;
    fakes.runLoop.runUntilIdle();
    thereIsNoMemory = false;
    EXPECT_TRUE(fakes.log.has(LogLevel::error, "Final drain write error: Cannot allocate memory"))
        << "there is no next tick";
}

} // namespace
} // namespace orvanta::test
