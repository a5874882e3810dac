// Two hours of sound at full speed, through the recorder into real files.

#include "core/recording/AudioRecorder.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <unistd.h>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;

constexpr std::int64_t framesPerTick = 24000;
constexpr std::int64_t ticks = 2L * 3600L * 48000L / framesPerTick;
constexpr std::int64_t ticksUntilWarm = ticks / 20;

/// The counter's low and high parts: every frame of two hours differs from all others, in numbers
/// that a float holds exactly and that stay below full scale.
float left(std::int64_t frame) {
    return static_cast<float>(frame % 16384) / 16384.0F;
}

float right(std::int64_t frame) {
    const std::int64_t round = frame / 16384;
    return static_cast<float>(round) / 32768.0F;
}

long residentKiB() {
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE) / 1024;
}

class LongRecording : public testing::Test {
protected:
    /// Records two hours; answers the file.
    std::filesystem::path record(RecordingFormat format) {
        AudioRecorder recorder(48000.0, 2, fakes.platformWith(server, files));
        const auto path = recorder.startRecording("Long", format, folder.path()).value();
        std::vector<float> block(2 * framesPerTick);
        long warm = 0;
        for (std::int64_t tick = 0; tick < ticks; ++tick) {
            if (tick == ticksUntilWarm)
                warm = residentKiB();
            for (std::int64_t k = 0; k < framesPerTick; ++k) {
                block[static_cast<std::size_t>(2 * k)] = left(tick * framesPerTick + k);
                block[static_cast<std::size_t>(2 * k + 1)] = right(tick * framesPerTick + k);
            }
            recorder.writeInterleavedSamples(block.data(), framesPerTick, 2);
            fakes.runLoop.advance(100ms);
        }
        growth = residentKiB() - warm;
        std::cout << "memory grew by " << growth << " KiB\n";
        recorder.stopRecording();
        fakes.runLoop.runUntilIdle();
        return path;
    }

    TemporaryDirectory folder;
    EmbeddedAudioServer server;
    MediaFileWriter files;
    PlatformFakes fakes;
    long growth = 0;
};

TEST_F(LongRecording, OfTwoHoursIsInItsWAVFileFrameByFrameAndTakesNoMoreMemory) {
    const auto path = record(RecordingFormat::wav);
    WavReader reader(path);
    ASSERT_EQ(reader.frames(), static_cast<std::uint64_t>(ticks * framesPerTick));
    for (std::int64_t tick = 0; tick < ticks; ++tick) {
        const std::int64_t first = tick * framesPerTick;
        const auto samples = reader.samples(static_cast<std::uint64_t>(first), framesPerTick);
        for (std::int64_t k = 0; k < framesPerTick; ++k) {
            ASSERT_EQ(samples[static_cast<std::size_t>(2 * k)], left(first + k)) << first + k;
            ASSERT_EQ(samples[static_cast<std::size_t>(2 * k + 1)], right(first + k));
        }
    }
    EXPECT_LT(growth, 1024);
}

TEST_F(LongRecording, OfTwoHoursIsInItsM4AFileAndTakesLittleMoreThanItsTable) {
    const auto path = record(RecordingFormat::m4a);
    EXPECT_EQ(readM4A(path).framesToHear(), ticks * framesPerTick);
    EXPECT_EQ(probed(path)["duration_ts"], std::to_string(ticks * framesPerTick));
    EXPECT_LT(growth, 4096) << "four bytes for each of 337,500 packets, and what a vector keeps";
}

} // namespace
} // namespace orvanta::test
