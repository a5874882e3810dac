// Whole taps recorded into real files.

#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/platform/media/support/SmallDisk.h"
#include "tests/support/EngineRig.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::StartsWith;

using Path = std::filesystem::path;
using Samples = std::vector<float>;

constexpr auto pid = EngineRig::pid;

class RecordedTap : public testing::Test {
protected:
    RecordedTap() { manager.createTap(pid); }

    RecordingFiles start(RecordingFormat format, RecordingMode mode,
                         const std::string& name = "Player") {
        return manager.startRecording(pid, name, format, folder.path(), mode);
    }

    /// What the device plays in so many cycles, the writer at work meanwhile.
    Samples play(int cycles) {
        Samples played;
        for (int cycle = 0; cycle < cycles; ++cycle) {
            const Samples heard = rig.nextCycle();
            played.insert(played.end(), heard.begin(), heard.end());
            rig.runLoop.advance(10ms);
        }
        return played;
    }

    void stop() {
        manager.stopRecording(pid);
        rig.runLoop.runUntilIdle();
    }

    [[nodiscard]] std::vector<std::string> errors() const {
        std::vector<std::string> texts;
        for (const auto& message : rig.log.messages())
            if (message.level == LogLevel::error)
                texts.push_back(message.text);
        return texts;
    }

    TemporaryDirectory folder;
    MediaFileWriter files;
    EngineRig rig;
    AudioTapManager manager{rig.platformWith(rig.server, files)};
};

TEST_F(RecordedTap, IsInItsWAVFilesToTheBit) {
    manager.setVolume(pid, 1.7F);
    manager.setEQ(pid, 5, -7.0F);
    manager.setCompressor(pid, CompressorPreset::broadcast);
    manager.setCrossfeed(pid, 0.5F);
    const RecordingFiles recorded = start(RecordingFormat::wav, RecordingMode::both);
    const Samples played = play(300);
    stop();
    EXPECT_EQ(WavReader(recorded.wet.value()).samples(), played);
    EXPECT_EQ(WavReader(recorded.dry.value()).samples(), Samples(played.size(), 0.5F));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RecordedTap, IsInItsM4AFileFromTheFirstFrameToTheLast) {
    const RecordingFiles recorded = start(RecordingFormat::m4a, RecordingMode::processed);
    const Samples played = play(300);
    stop();
    const M4AContent content = readM4A(recorded.wet.value());
    EXPECT_FALSE(content.isFragmented);
    EXPECT_EQ(content.framesToHear(), std::ssize(played) / 2);
    EXPECT_EQ(content.sampleRate, 48000U);
}

TEST_F(RecordedTap, NeverWritesOverAFile) {
    const RecordingFiles first = start(RecordingFormat::wav, RecordingMode::processed);
    const Samples played = play(30);
    stop();
    EXPECT_EQ(start(RecordingFormat::wav, RecordingMode::processed), RecordingFiles{})
        << "in the same second";
    EXPECT_THAT(errors(), testing::ElementsAre("Failed to create file: File exists"));
    EXPECT_EQ(WavReader(first.wet.value()).samples(), played);
}

TEST_F(RecordedTap, CanBeWithoutAName) {
    const RecordingFiles recorded = start(RecordingFormat::wav, RecordingMode::processed, "...");
    ASSERT_TRUE(recorded.wet);
    EXPECT_THAT(recorded.wet->filename().string(), StartsWith("_2026"));
    EXPECT_TRUE(std::filesystem::exists(*recorded.wet));
}

TEST_F(RecordedTap, IsRefusedANameThatNoFolderTakes) {
    EXPECT_EQ(start(RecordingFormat::m4a, RecordingMode::both, std::string(300, 'x')),
              RecordingFiles{});
    EXPECT_THAT(errors(), testing::Each("Failed to create file: File name too long"));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    EXPECT_FALSE(manager.isRecording(pid));
}

TEST_F(RecordedTap, IsRefusedAFolderThatCannotBe) {
    const Path file = folder.path() / "file";
    std::ofstream(file) << "not a folder";
    EXPECT_EQ(manager.startRecording(pid, "Player", RecordingFormat::wav, file / "folder",
                                     RecordingMode::processed),
              RecordingFiles{});
    EXPECT_THAT(errors(), testing::ElementsAre("Failed to create file: Not a directory"));
}

TEST_F(RecordedTap, LeavesAReadableFileWhenTheTapIsRemoved) {
    for (const RecordingFormat format : allRecordingFormats()) {
        manager.createTap(pid);
        const RecordingFiles recorded = start(format, RecordingMode::processed);
        play(300);
        manager.removeTap(pid);
        const std::string frames = probed(recorded.wet.value()).at("duration_ts");
        EXPECT_GE(std::stol(frames), 290 * static_cast<long>(EngineRig::frames));
    }
}

TEST_F(RecordedTap, GoesOnWithAGapOnADiskThatWasFullForAWhile) {
    const SmallDisk disk(1 << 20);
    if (disk.failure())
        GTEST_SKIP() << *disk.failure();
    const auto path = manager
                          .startRecording(pid, "Player", RecordingFormat::wav, disk.path(),
                                          RecordingMode::processed)
                          .wet.value();
    play(50);
    disk.fillUpTo(0);
    play(50);
    EXPECT_THAT(errors(), testing::Not(IsEmpty()));
    EXPECT_THAT(errors(), testing::Each("Write error: No space left on device"));
    EXPECT_TRUE(manager.isRecording(pid));
    disk.makeSpace();
    play(50);
    stop();
    WavReader reader(path);
    EXPECT_THAT(reader.samples(), testing::Each(0.5F));
    EXPECT_LT(reader.frames(), 150 * EngineRig::frames);
    EXPECT_GT(reader.frames(), 90 * EngineRig::frames);
}

} // namespace
} // namespace orvanta::test
