#include "core/recording/AudioRecorder.h"

#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <numeric>
#include <optional>
#include <vector>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Samples = std::vector<float>;
using Path = std::filesystem::path;

constexpr std::int64_t capacity = SampleRing::bufferCapacity;

Samples ramp(std::size_t count, float first = 0.0F) {
    Samples samples(count);
    std::iota(samples.begin(), samples.end(), first);
    return samples;
}

class Recorder : public testing::Test {
protected:
    std::optional<Path> start(const std::string& name = "Player",
                              RecordingFormat format = RecordingFormat::wav) {
        return recorder->startRecording(name, format, folder.path());
    }

    void write(const Samples& samples) {
        recorder->writeInterleavedSamples(samples.data(), std::ssize(samples) / 2, 2);
    }

    [[nodiscard]] Samples written(const std::optional<Path>& path) const {
        return fakes.audioFiles.file(path.value()).interleaved();
    }

    TemporaryDirectory folder;
    EmbeddedAudioServer server;
    PlatformFakes fakes;
    std::optional<AudioRecorder> recorder{std::in_place, 48000.0, 2, fakes.platformWith(server)};
};

TEST_F(Recorder, IsIdleAtFirst) {
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(recorder->duration(), 0.0);
    EXPECT_EQ(recorder->startTime(), std::nullopt);
    EXPECT_EQ(recorder->fileURL(), std::nullopt);
    write({1, 2});
    EXPECT_EQ(fakes.audioFiles.count(), 0U);
}

TEST_F(Recorder, TellsItsFileAndItsTimeWhileItRecords) {
    const auto path = start();
    ASSERT_TRUE(path);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_EQ(recorder->fileURL(), path);
    EXPECT_EQ(recorder->startTime(), fakes.wallClock.time);
    EXPECT_EQ(path->parent_path(), folder.path());
    EXPECT_THAT(path->filename().string(), testing::StartsWith("Player_2026-11-2"));
    EXPECT_TRUE(fakes.log.has(LogLevel::info, "Recording started: " + path->filename().string()));
    EXPECT_EQ(fakes.log.messages().back().category, "recorder");
}

TEST_F(Recorder, AsksForFloatWavOrAacAt256Kilobits) {
    const auto wav = start("Player", RecordingFormat::wav);
    recorder->stopRecording();
    const auto m4a = start("Player", RecordingFormat::m4a);
    const auto lossless = fakes.audioFiles.file(wav.value()).settings;
    EXPECT_EQ(lossless.coding, AudioFileSettings::Coding::floatWAV);
    EXPECT_EQ(lossless.sampleRate, 48000.0);
    EXPECT_EQ(lossless.channels, 2);
    const auto compressed = fakes.audioFiles.file(m4a.value()).settings;
    EXPECT_EQ(compressed.coding, AudioFileSettings::Coding::aacMPEG4);
    EXPECT_EQ(compressed.bitRate, 256000);
    EXPECT_EQ(wav->extension(), ".wav");
    EXPECT_EQ(m4a->extension(), ".m4a");
}

TEST_F(Recorder, MakesTheFolderWithAllThatLeadsToIt) {
    const Path deep = folder.path() / "a" / "b";
    EXPECT_TRUE(recorder->startRecording("Player", RecordingFormat::wav, deep));
    EXPECT_TRUE(std::filesystem::is_directory(deep));
}

TEST_F(Recorder, DrainsEveryTenthOfASecond) {
    const auto path = start();
    write({1, 2, 3, 4});
    fakes.runLoop.advance(99ms);
    EXPECT_THAT(written(path), IsEmpty());
    fakes.runLoop.advance(1ms);
    EXPECT_THAT(written(path), ElementsAre(1, 2, 3, 4));
    write({5, 6});
    fakes.runLoop.advance(100ms);
    EXPECT_THAT(written(path), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(Recorder, WritesNothingWhenNothingCame) {
    const auto path = start();
    fakes.runLoop.advance(10s);
    EXPECT_THAT(fakes.audioFiles.file(path.value()).writes, IsEmpty());
}

TEST_F(Recorder, DrainsAtMost24000FramesATick) {
    const auto path = start();
    write(ramp(static_cast<std::size_t>(capacity)));
    fakes.runLoop.advance(300ms);
    EXPECT_THAT(fakes.audioFiles.file(path.value()).writes, ElementsAre(24000, 24000, 24000));
}

TEST_F(Recorder, WritesAllThatIsLeftInOnePassAfterTheStop) {
    const auto path = start();
    write(ramp(static_cast<std::size_t>(capacity)));
    EXPECT_EQ(recorder->stopRecording(), path);
    EXPECT_THAT(written(path), IsEmpty()) << "the stop itself waits for nothing";
    fakes.runLoop.runUntilIdle();
    EXPECT_THAT(fakes.audioFiles.file(path.value()).writes, ElementsAre(capacity / 2));
    EXPECT_EQ(written(path), ramp(static_cast<std::size_t>(capacity)));
    EXPECT_TRUE(fakes.audioFiles.file(path.value()).isFinished);
    EXPECT_TRUE(fakes.log.has(LogLevel::info, "Recording stopped: " + path->filename().string()));
}

TEST_F(Recorder, FinishesTheFileOnlyAfterTheFinalDrain) {
    const auto path = start();
    recorder->stopRecording();
    EXPECT_FALSE(fakes.audioFiles.file(path.value()).isFinished);
    fakes.runLoop.runUntilIdle();
    EXPECT_TRUE(fakes.audioFiles.file(path.value()).isFinished);
}

TEST_F(Recorder, TakesNothingAfterTheStop) {
    const auto path = start();
    write({1, 2});
    recorder->stopRecording();
    write({3, 4});
    fakes.runLoop.advance(1s);
    EXPECT_THAT(written(path), ElementsAre(1, 2));
}

TEST_F(Recorder, LeavesARunningFileAloneWhenItIsStartedAgain) {
    const auto path = start();
    write({1, 2});
    EXPECT_EQ(start("Another"), std::nullopt);
    EXPECT_EQ(recorder->fileURL(), path);
    EXPECT_EQ(fakes.audioFiles.count(), 1U);
    fakes.runLoop.advance(100ms);
    EXPECT_THAT(written(path), ElementsAre(1, 2));
}

TEST_F(Recorder, HasNothingToStopWhenItIsIdle) {
    EXPECT_EQ(recorder->stopRecording(), std::nullopt);
    const auto path = start();
    recorder->stopRecording();
    EXPECT_EQ(recorder->stopRecording(), std::nullopt);
    EXPECT_EQ(recorder->fileURL(), path) << "still the last file";
}

TEST_F(Recorder, CountsItsDurationFromTheStart) {
    fakes.runLoop.advance(5s);
    start();
    EXPECT_EQ(recorder->duration(), 0.0);
    fakes.runLoop.advance(2500ms);
    EXPECT_DOUBLE_EQ(recorder->duration(), 2.5);
    recorder->stopRecording();
    EXPECT_EQ(recorder->duration(), 0.0);
    EXPECT_TRUE(recorder->startTime());
}

TEST_F(Recorder, KeepsItsDurationWhenTheCalendarIsSetBack) {
    start();
    fakes.runLoop.advance(10s);
    fakes.wallClock.time -= 24h;
    EXPECT_DOUBLE_EQ(recorder->duration(), 10.0);
}

TEST_F(Recorder, CanBeUsedAgainAndBeginsOnAnEmptyRing) {
    const auto first = start();
    write({1, 2});
    recorder->stopRecording();
    fakes.runLoop.advance(1s);
    const auto second = start("Second");
    write({3, 4});
    fakes.runLoop.advance(1s);
    EXPECT_THAT(written(first), ElementsAre(1, 2));
    EXPECT_THAT(written(second), ElementsAre(3, 4));
}

TEST_F(Recorder, LetsTheLastTailBeWrittenBeforeItStartsAgain) {
    const auto first = start();
    write({1, 2});
    recorder->stopRecording();
    const auto second = start("Second");
    EXPECT_THAT(written(first), ElementsAre(1, 2)) << "no lost tail";
    EXPECT_TRUE(fakes.audioFiles.file(first.value()).isFinished);
    write({3, 4});
    fakes.runLoop.advance(1s);
    EXPECT_THAT(written(second), ElementsAre(3, 4)) << "no old sample";
}

TEST_F(Recorder, WritesPlanarBlocksFrameByFrame) {
    const auto path = start();
    const Samples left{1, 3, 5};
    const Samples right{2, 4, 6};
    recorder->writeSamples(left.data(), 3, 0);
    recorder->writeSamples(right.data(), 3, 1);
    fakes.runLoop.advance(100ms);
    EXPECT_THAT(written(path), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(Recorder, KeepsTheLastOfAnOddNumberOfSamplesUntilItsPartnerComes) {
    const auto path = start();
    const Samples odd{1, 2, 3};
    recorder->writeInterleavedSamples(odd.data(), 3, 1);
    fakes.runLoop.advance(100ms);
    EXPECT_THAT(written(path), ElementsAre(1, 2));
    recorder->writeInterleavedSamples(odd.data(), 1, 1);
    fakes.runLoop.advance(100ms);
    EXPECT_THAT(written(path), ElementsAre(1, 2, 3, 1));
}

TEST_F(Recorder, StaysIdleWhenTheFileCannotBeMade) {
    fakes.audioFiles.refuseNext("No space left on device");
    EXPECT_EQ(start(), std::nullopt);
    EXPECT_FALSE(recorder->isRecording());
    EXPECT_EQ(recorder->fileURL(), std::nullopt);
    EXPECT_TRUE(fakes.log.has(LogLevel::error, "Failed to create file: No space left on device"));
    EXPECT_TRUE(start()) << "the next start may do better";
}

TEST_F(Recorder, NeverTakesTheFileOfAnotherStartInTheSameSecond) {
    const auto path = start();
    write({1, 2});
    recorder->stopRecording();
    EXPECT_EQ(start(), std::nullopt);
    EXPECT_TRUE(fakes.log.has(LogLevel::error, "Failed to create file: File exists"));
    EXPECT_THAT(written(path), ElementsAre(1, 2));
    EXPECT_EQ(recorder->fileURL(), path);
    fakes.wallClock.time += 1s;
    EXPECT_TRUE(start());
}

TEST_F(Recorder, RecordsNothingAtARateThatIsNone) {
    for (const double rate : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
        AudioRecorder none(rate, 2, fakes.platformWith(server));
        EXPECT_EQ(none.startRecording("Player", RecordingFormat::wav, folder.path()), std::nullopt);
        EXPECT_FALSE(none.isRecording());
    }
}

TEST_F(Recorder, GoesOnAfterAWriteError) {
    const auto path = start();
    fakes.audioFiles.failNextWrites({"No space left on device"});
    write({1, 2});
    fakes.runLoop.advance(100ms);
    EXPECT_TRUE(fakes.log.has(LogLevel::error, "Write error: No space left on device"));
    write({3, 4});
    fakes.runLoop.advance(100ms);
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_THAT(written(path), ElementsAre(3, 4)) << "a gap, not an end";
}

TEST_F(Recorder, SaysWhenTheFinalDrainFails) {
    start();
    fakes.audioFiles.failNextWrites({"Input/output error"});
    write({1, 2});
    recorder->stopRecording();
    fakes.runLoop.runUntilIdle();
    EXPECT_TRUE(fakes.log.has(LogLevel::error, "Final drain write error: Input/output error"));
}

TEST_F(Recorder, SaysWhenTheFileCannotBeFinished) {
    start();
    fakes.audioFiles.failNextFinish("No space left on device");
    recorder->stopRecording();
    fakes.runLoop.runUntilIdle();
    EXPECT_TRUE(fakes.log.has(LogLevel::error, "Final drain write error: No space left on device"));
}

TEST_F(Recorder, TakesLackOfMemoryForAReason) {
    start();
    fakes.audioFiles.beforeEachWrite([] { throw std::bad_alloc(); });
    write({1, 2});
    fakes.runLoop.advance(100ms);
    EXPECT_TRUE(fakes.log.has(LogLevel::error, "Write error: Cannot allocate memory"));
}

TEST_F(Recorder, HasAUtilityQueueOfItsOwn) {
    /// Remembers what was asked for.
    class Queues final : public SerialQueues {
    public:
        explicit Queues(SerialQueues& real) : real_(real) {}

        [[nodiscard]] std::unique_ptr<SerialQueue> make(std::string label,
                                                        QualityOfService quality) override {
            made.emplace_back(label, quality);
            return real_.make(std::move(label), quality);
        }

        std::vector<std::pair<std::string, QualityOfService>> made;

    private:
        SerialQueues& real_;
    };

    Queues queues(fakes.serialQueues);
    const Platform platform = fakes.platformWith(server, queues);
    const AudioRecorder first(48000.0, 2, platform);
    const AudioRecorder second(48000.0, 2, platform);
    EXPECT_THAT(queues.made, testing::Each(testing::Pair("com.meridane.orvanta.audiorecorder",
                                                         QualityOfService::utility)));
    EXPECT_EQ(queues.made.size(), 2U);
}

TEST_F(Recorder, LosesTheRingButFinishesTheFileWhenItEndsWhileRecording) {
    const auto path = start();
    write({1, 2});
    fakes.runLoop.advance(100ms);
    write({3, 4});
    recorder.reset();
    fakes.runLoop.advance(1s);
    EXPECT_THAT(written(path), ElementsAre(1, 2));
    EXPECT_TRUE(fakes.audioFiles.file(path.value()).isFinished);
}

TEST_F(Recorder, WritesTheTailOfAStoppedRecordingBeforeItEnds) {
    const auto path = start();
    write({1, 2});
    recorder->stopRecording();
    recorder.reset();
    EXPECT_THAT(written(path), ElementsAre(1, 2));
    EXPECT_TRUE(fakes.audioFiles.file(path.value()).isFinished);
}

TEST_F(Recorder, DropsABlockThatNoRingCouldHoldWithoutAWord) {
    const auto path = start();
    const std::size_t lines = fakes.log.messages().size();
    write(ramp(300000));
    write(ramp(300000));
    fakes.runLoop.advance(1s);
    EXPECT_THAT(written(path), IsEmpty());
    EXPECT_THAT(fakes.log.messages(), SizeIs(lines));
}

TEST_F(Recorder, KeepsUpWith24000FramesATick) {
    const auto path = start();
    constexpr std::size_t framesPerTick = 24000;
    constexpr int ticks = 20;
    Samples expected;
    for (int tick = 0; tick < ticks; ++tick) {
        const Samples block = ramp(framesPerTick * 2, static_cast<float>(tick));
        expected.insert(expected.end(), block.begin(), block.end());
        write(block);
        fakes.runLoop.advance(100ms);
    }
    EXPECT_EQ(written(path), expected);
}

} // namespace
} // namespace orvanta::test
