// Without sanitizers: they allocate for the program themselves.

#include "core/recording/AudioRecorder.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

namespace {
bool thereIsNoMemory = false;
} // namespace

/// Stands in for the library's own in this program.
void* operator new[](std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
    if (thereIsNoMemory)
        return nullptr;
    try {
        return ::operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;

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
}

} // namespace
} // namespace orvanta::test
