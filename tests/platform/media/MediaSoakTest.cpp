#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/KilledRecording.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gtest/gtest.h>

#include <bit>

namespace orvanta::test {
namespace {

using Coding = AudioFileSettings::Coding;

TEST(MediaSoak, KilledWAVFilesAreWhole) {
    expectKilledWAVFilesToBeWhole(200);
}

TEST(MediaSoak, KilledM4AFilesAreWhole) {
    expectKilledM4AFilesToBeWhole(200);
}

/// Every frame tells its own number.
float numberedSample(std::uint32_t channel, std::uint64_t frame) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(2 * frame + channel));
}

TEST(MediaSoak, WAVBecomesRF64BeyondFourGiBAndStaysTrue) {
    constexpr std::uint64_t kBlockFrames = 24000;
    constexpr std::uint64_t kFramesIn4GiB = (1ULL << 32U) / 8;
    const TemporaryDirectory folder;
    const auto path = folder.path() / "large.wav";
    std::string reason;
    auto file = MediaFileWriter().create(path, {Coding::floatWAV, 48000, 2, 0}, reason);
    ASSERT_TRUE(file) << reason;

    std::uint64_t frames = 0;
    for (; frames < kFramesIn4GiB - 2 * kBlockFrames; frames += kBlockFrames)
        ASSERT_EQ(writeMaterial(*file, numberedSample, 2, frames, kBlockFrames, kBlockFrames),
                  std::nullopt);
    EXPECT_FALSE(WavReader(path).isRF64());
    // Small steps across the border, with a look at the header after each.
    for (int step = 0; step < 200; ++step, frames += 500) {
        ASSERT_EQ(writeMaterial(*file, numberedSample, 2, frames, 500), std::nullopt);
        const WavReader reader(path);
        ASSERT_EQ(reader.frames(), frames + 500);
        ASSERT_EQ(reader.fileBytes(), std::filesystem::file_size(path));
        ASSERT_EQ(reader.isRF64(), reader.fileBytes() > 0xFFFFFFFF);
    }
    for (const std::uint64_t end = frames + 10 * kBlockFrames; frames < end; frames += kBlockFrames)
        ASSERT_EQ(writeMaterial(*file, numberedSample, 2, frames, kBlockFrames), std::nullopt);
    file.reset();

    WavReader reader(path);
    EXPECT_TRUE(reader.isRF64());
    ASSERT_EQ(reader.frames(), frames);
    EXPECT_EQ(reader.fileBytes(), std::filesystem::file_size(path));
    for (std::uint64_t frame = 0; frame < frames; frame += 99991) {
        const std::vector<float> samples = reader.samples(frame, 1);
        for (std::uint32_t channel = 0; channel < 2; ++channel)
            ASSERT_EQ(std::bit_cast<std::uint32_t>(samples[channel]),
                      std::bit_cast<std::uint32_t>(numberedSample(channel, frame)));
    }
    EXPECT_EQ(soxSays("-s", path), std::to_string(frames));
    EXPECT_EQ(probed(path)["duration_ts"], std::to_string(frames));
}

} // namespace
} // namespace orvanta::test
