// Whole taps recorded into real files.

#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/EngineRig.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <tuple>

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

/// The same at every usual rate, with the tap's channels in one buffer and in two.
class RecordedSignal : public testing::TestWithParam<std::tuple<double, embedded::BufferLayout>> {
protected:
    static constexpr int cycles = 300;

    static EngineRig makeRig() {
        auto speakers = EngineRig::speakersByDefault();
        speakers.sampleRate = std::get<0>(GetParam());
        return EngineRig({.tapLayout = std::get<1>(GetParam())}, speakers);
    }

    /// What the program plays, frame by frame.
    [[nodiscard]] Samples signal() const {
        Samples samples;
        for (std::uint64_t frame = 0; frame < std::uint64_t{cycles} * EngineRig::frames; ++frame)
            for (std::uint32_t channel = 0; channel < 2; ++channel)
                samples.push_back(material(channel, frame));
        return samples;
    }

    /// Records both sides of all that the program plays; answers what the device played.
    Samples record(RecordingFormat format) {
        rig.server.setSource(rig.program, embedded::samples(signal(), 2));
        manager.createTap(pid);
        manager.setVolume(pid, 1.7F);
        manager.setEQ(pid, 5, -7.0F);
        manager.setCompressor(pid, CompressorPreset::broadcast);
        manager.setCrossfeed(pid, 0.5F);
        recorded =
            manager.startRecording(pid, "Player", format, folder.path(), RecordingMode::both);
        Samples played;
        for (int cycle = 0; cycle < cycles; ++cycle) {
            const Samples heard = rig.nextCycle();
            played.insert(played.end(), heard.begin(), heard.end());
            rig.runLoop.advance(10ms);
        }
        manager.stopRecording(pid);
        rig.runLoop.runUntilIdle();
        return played;
    }

    TemporaryDirectory folder;
    MediaFileWriter files;
    EngineRig rig = makeRig();
    AudioTapManager manager{rig.platformWith(rig.server, files)};
    const Material material = wanderingTones(std::get<0>(GetParam()));
    RecordingFiles recorded;
};

TEST_P(RecordedSignal, IsInItsWAVFilesToTheBit) {
    const Samples played = record(RecordingFormat::wav);
    WavReader wet(recorded.wet.value());
    EXPECT_EQ(wet.sampleRate(), std::get<0>(GetParam()));
    EXPECT_EQ(wet.samples(), played);
    EXPECT_EQ(WavReader(recorded.dry.value()).samples(), signal());
    EXPECT_NE(played, signal()) << "the chain was at work";
}

TEST_P(RecordedSignal, IsInItsM4AFilesFromTheFirstFrameToTheLast) {
    const Samples played = record(RecordingFormat::m4a);
    for (const auto& path : {recorded.wet, recorded.dry}) {
        const M4AContent content = readM4A(path.value());
        EXPECT_FALSE(content.isFragmented);
        EXPECT_EQ(content.framesToHear(), std::ssize(played) / 2);
        EXPECT_EQ(content.sampleRate, std::get<0>(GetParam()));
    }
    const Samples heard = decoded(recorded.dry.value());
    ASSERT_GE(heard.size(), played.size());
    EXPECT_GT(signalToNoise(std::span(heard).first(played.size()), 2, material), kGoodEncoding);
}

INSTANTIATE_TEST_SUITE_P(RatesAndLayouts, RecordedSignal,
                         testing::Combine(testing::Values(44100.0, 48000.0, 96000.0),
                                          testing::Values(embedded::BufferLayout::interleaved,
                                                          embedded::BufferLayout::planar)),
                         [](const auto& test) {
                             const bool isPlanar =
                                 std::get<1>(test.param) == embedded::BufferLayout::planar;
                             return std::to_string(static_cast<int>(std::get<0>(test.param))) +
                                    (isPlanar ? "HzPlanar" : "HzInterleaved");
                         });

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

TEST_F(RecordedTap, IsRefusedAFolderThatMayNotBeWritten) {
    EXPECT_EQ(manager.startRecording(pid, "Player", RecordingFormat::m4a, "/sys/kernel",
                                     RecordingMode::processed),
              RecordingFiles{});
    EXPECT_THAT(errors(), testing::ElementsAre("Failed to create file: Permission denied"));
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

class RecordedTapOnASmallDisk : public RecordedTap {
protected:
    void SetUp() override {
        if (disk.failure())
            GTEST_SKIP() << *disk.failure();
    }

    Path startOnDisk(RecordingFormat format) {
        return manager.startRecording(pid, "Player", format, disk.path(), RecordingMode::processed)
            .wet.value();
    }

    const SmallDisk disk{1 << 20};
};

TEST_F(RecordedTapOnASmallDisk, SaysWhenTheEndOfItsFileFindsNoSpace) {
    const Path path = startOnDisk(RecordingFormat::m4a);
    play(200);
    disk.fillUpTo(0);
    stop();
    EXPECT_THAT(errors(), testing::ElementsAre("Final drain write error: No space left on device"));
    EXPECT_GT(readM4A(path).framesToHear(), 50'000);
}

TEST_F(RecordedTapOnASmallDisk, GoesOnWithAGapOnADiskThatWasFullForAWhile) {
    const Path path = startOnDisk(RecordingFormat::wav);
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
