#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/KilledRecording.h"
#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavReader.h"

#include <gtest/gtest.h>

#include <bit>
#include <iostream>
#include <sys/resource.h>

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
    const TemporaryFolder folder;
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

/// The most memory that this process has had in use, in bytes.
std::size_t peakResidentBytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

TEST(MediaSoak, TwoHoursOfM4ATakeLittleMemory) {
    constexpr std::uint64_t kMinute = 48000 * 60;
    constexpr std::size_t kMiB = 1U << 20U;
    const TemporaryFolder folder;
    const auto path = folder.path() / "long.m4a";
    std::string reason;
    auto file = MediaFileWriter().create(path, {Coding::aacMPEG4, 48000, 2, 256000}, reason);
    ASSERT_TRUE(file) << reason;
    const Material material = wanderingTones(48000);

    ASSERT_EQ(writeMaterial(*file, material, 2, 0, kMinute), std::nullopt);
    const std::size_t afterAMinute = peakResidentBytes();
    for (std::uint64_t minute = 1; minute < 120; ++minute)
        ASSERT_EQ(writeMaterial(*file, material, 2, minute * kMinute, kMinute), std::nullopt);
    const std::size_t afterTwoHours = peakResidentBytes();
    file.reset();
    const std::size_t grown = peakResidentBytes() - afterAMinute;
    std::cout << "grown by " << (afterTwoHours - afterAMinute) / 1024 << " KiB while recording, by "
              << grown / 1024 << " KiB in all\n";
    EXPECT_LT(grown, 8 * kMiB);

    const M4AContent content = readM4A(path);
    EXPECT_FALSE(content.isFragmented);
    EXPECT_EQ(content.movieDuration, static_cast<std::int64_t>(120 * kMinute));
    EXPECT_EQ(probed(path)["duration_ts"], std::to_string(120 * kMinute));
}

} // namespace
} // namespace orvanta::test
