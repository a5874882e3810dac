#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/WavReader.h"

#include <gmock/gmock.h>

namespace orvanta::test {
namespace {

using Coding = AudioFileSettings::Coding;

constexpr std::size_t kDiskBytes = 4U << 20U;
constexpr const char* kFull = "No space left on device";

class FullDiskTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (disk_.failure())
            GTEST_SKIP() << *disk_.failure();
    }

    std::unique_ptr<AudioFile> create(Coding coding) {
        return MediaFileWriter().create(path_, {coding, 48000, 2, 256000}, reason_);
    }

    const SmallDisk disk_{kDiskBytes};
    const std::filesystem::path path_ = disk_.path() / "file";
    const Material material_ = wanderingTones(48000);
    std::string reason_;
};

TEST_F(FullDiskTest, LeavesNoFileThatCouldNotEvenBegin) {
    disk_.fillUpTo(0);
    for (const Coding coding : {Coding::floatWAV, Coding::aacMPEG4}) {
        EXPECT_FALSE(create(coding));
        EXPECT_EQ(reason_, kFull);
        EXPECT_FALSE(std::filesystem::exists(path_));
    }
}

TEST_F(FullDiskTest, WAVHoldsWholeFramesAndGoesOnWhenThereIsSpaceAgain) {
    disk_.fillUpTo(300'000);
    auto file = create(Coding::floatWAV);
    ASSERT_TRUE(file) << reason_;
    EXPECT_EQ(writeMaterial(*file, material_, 2, 0, 100'000), kFull);
    const std::uint64_t kept = WavReader(path_).frames();
    EXPECT_GT(kept, 300'000U / 8 - 4096 - 1024);
    EXPECT_EQ(WavReader(path_).fileBytes(), std::filesystem::file_size(path_));
    // Each failed write says so, and the next one may succeed.
    EXPECT_EQ(writeMaterial(*file, material_, 2, 0, 20'000, 20'000), kFull);
    const std::uint64_t keptThen = WavReader(path_).frames();

    disk_.makeSpace();
    EXPECT_EQ(writeMaterial(*file, material_, 2, 200'000, 50'000), std::nullopt);
    file.reset();
    WavReader reader(path_);
    ASSERT_EQ(reader.frames(), keptThen + 50'000);
    for (std::uint64_t frame = 0; frame < kept; ++frame)
        ASSERT_EQ(reader.samples(frame, 1),
                  (std::vector{material_(0, frame), material_(1, frame)}));
    for (std::uint64_t frame = 0; frame < 50'000; ++frame)
        ASSERT_EQ(reader.samples(keptThen + frame, 1),
                  (std::vector{material_(0, 200'000 + frame), material_(1, 200'000 + frame)}));
    EXPECT_EQ(soxSays("-s", path_), std::to_string(keptThen + 50'000));
}

TEST_F(FullDiskTest, WAVFinishesOnAFullDisk) {
    disk_.fillUpTo(100'000);
    auto file = create(Coding::floatWAV);
    ASSERT_TRUE(file) << reason_;
    EXPECT_EQ(writeMaterial(*file, material_, 2, 0, 100'000), kFull);
    file.reset();
    const WavReader reader(path_);
    EXPECT_GT(reader.frames(), 7000U);
    EXPECT_EQ(reader.fileBytes(), std::filesystem::file_size(path_));
}

TEST_F(FullDiskTest, M4AGoesOnWithAGapWhenThereIsSpaceAgain) {
    disk_.fillUpTo(100'000);
    auto file = create(Coding::aacMPEG4);
    ASSERT_TRUE(file) << reason_;
    EXPECT_EQ(writeMaterial(*file, material_, 2, 0, 480'000), kFull);
    EXPECT_EQ(writeMaterial(*file, material_, 2, 480'000, 48'000, 48'000), kFull);
    const M4AContent before = readM4A(path_);
    ASSERT_GT(before.packets.size(), 94U);

    disk_.makeSpace();
    EXPECT_EQ(writeMaterial(*file, material_, 2, 528'000, 96'000), std::nullopt);
    file.reset();
    const M4AContent content = readM4A(path_);
    EXPECT_FALSE(content.isFragmented);
    EXPECT_EQ(content.movieDuration, 624'000);
    EXPECT_GT(content.packets[before.packets.size() - 1].frames, 100'000U);

    // ffmpeg decodes packet by packet, so the gap is not in what it gives.
    const std::vector<float> samples = decoded(path_);
    const std::span<const float> all(samples);
    const std::size_t framesBefore = (before.packets.size() - 1) * 1024;
    EXPECT_GT(signalToNoise(all.first(2 * framesBefore), 2, material_), kGoodEncoding);
    const auto resumed =
        static_cast<std::uint64_t>(content.packets[before.packets.size()].start) - 1024;
    EXPECT_EQ(all.size() / 2 - framesBefore, (624'000 - resumed + 1023) / 1024 * 1024);
    const std::size_t endOfSignal = framesBefore + 624'000 - resumed;
    EXPECT_GT(signalToNoise(all.first(2 * endOfSignal), 2, material_, framesBefore + 2048,
                            resumed + 2048),
              kGoodEncoding);
}

TEST_F(FullDiskTest, M4AWhoseTableFindsNoSpaceStaysInFragments) {
    // Enough for so many packets that their table does not fit into the end of the last page.
    disk_.fillUpTo(1'000'000);
    auto file = create(Coding::aacMPEG4);
    ASSERT_TRUE(file) << reason_;
    EXPECT_EQ(writeMaterial(*file, material_, 2, 0, 1'920'000), kFull);
    disk_.fillUpTo(0);
    const std::size_t packets = readM4A(path_).packets.size();
    const std::uintmax_t bytes = std::filesystem::file_size(path_);
    file.reset();
    const M4AContent content = readM4A(path_);
    EXPECT_TRUE(content.isFragmented);
    EXPECT_EQ(content.packets.size(), packets);
    EXPECT_EQ(std::filesystem::file_size(path_), bytes);
    EXPECT_GT(signalToNoise(decoded(path_), 2, material_, 1024), kGoodEncoding);
}

} // namespace
} // namespace orvanta::test
