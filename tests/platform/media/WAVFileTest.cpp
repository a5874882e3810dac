#include "platform/media/WAVFile.h"

#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace orvanta::media {
namespace {

using test::TemporaryDirectory;
using test::WavReader;

std::vector<std::uint32_t> bits(std::span<const float> samples) {
    std::vector<std::uint32_t> result;
    for (const float sample : samples)
        result.push_back(std::bit_cast<std::uint32_t>(sample));
    return result;
}

class WAVFileTest : public ::testing::Test {
protected:
    std::unique_ptr<WAVFile> create(int channels) {
        std::string reason;
        auto file = WAVFile::create(
            path_, {AudioFileSettings::Coding::floatWAV, 48000, channels, 0}, reason);
        EXPECT_TRUE(file) << reason;
        return file;
    }

    const TemporaryDirectory folder_;
    const std::filesystem::path path_ = folder_.path() / "file.wav";
};

TEST_F(WAVFileTest, KeepsEveryBitOfEverySample) {
    std::mt19937 random(5);
    std::vector<float> left;
    for (int count = 0; count < 20000; ++count)
        left.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
    const std::uint32_t special[] = {0x80000000, 0x00000001, 0x807FFFFF, 0x7F800000,
                                     0xFF800000, 0x7FC12345, 0x7F812345, 0xFFFFFFFF};
    for (const std::uint32_t word : special)
        left.push_back(std::bit_cast<float>(word));
    const std::vector<float> right(left.rbegin(), left.rend());

    ASSERT_EQ(create(2)->write(std::array<const float*, 2>{left.data(), right.data()}, left.size()),
              std::nullopt);

    std::vector<float> expected;
    for (std::size_t frame = 0; frame < left.size(); ++frame)
        expected.insert(expected.end(), {left[frame], right[frame]});
    EXPECT_EQ(bits(WavReader(path_).samples()), bits(expected));
}

TEST_F(WAVFileTest, TellsItsTrueLengthAfterEveryWrite) {
    const auto file = create(2);
    const test::Material material = test::wanderingTones(48000);
    std::uint64_t frames = 0;
    for (const std::size_t count : {0U, 1U, 7U, 4096U, 0U, 4097U, 24000U, 100003U}) {
        ASSERT_EQ(test::writeMaterial(*file, material, 2, frames, count, count), std::nullopt);
        frames += count;
        WavReader reader(path_);
        EXPECT_EQ(reader.frames(), frames);
        EXPECT_FALSE(reader.isRF64());
        EXPECT_EQ(reader.fileBytes(), std::filesystem::file_size(path_));
        EXPECT_EQ(reader.fileBytes(), reader.dataOffset() + frames * 8);
        const std::vector<float> samples = reader.samples();
        for (std::size_t index = 0; index < samples.size(); ++index)
            ASSERT_EQ(samples[index], material(static_cast<std::uint32_t>(index % 2), index / 2));
    }
}

TEST_F(WAVFileTest, IsAWholeFileBeforeItsFirstSample) {
    const auto file = create(1);
    const WavReader reader(path_);
    EXPECT_EQ(reader.frames(), 0U);
    EXPECT_EQ(reader.fileBytes(), std::filesystem::file_size(path_));
    EXPECT_EQ(test::soxSays("-s", path_), "0");
    EXPECT_EQ(test::probed(path_)["sample_rate"], "48000");
}

TEST_F(WAVFileTest, TakesAnOddNumberOfChannels) {
    const test::Material material = test::wanderingTones(48000);
    ASSERT_EQ(test::writeMaterial(*create(3), material, 3, 0, 5000, 777), std::nullopt);
    WavReader reader(path_);
    EXPECT_EQ(reader.channels(), 3U);
    EXPECT_EQ(reader.samples(4999, 1),
              (std::vector{material(0, 4999), material(1, 4999), material(2, 4999)}));
    EXPECT_EQ(test::soxSays("-s", path_), "5000");
}

} // namespace
} // namespace orvanta::media
