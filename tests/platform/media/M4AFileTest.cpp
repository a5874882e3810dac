#include "platform/media/M4AFile.h"

#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/FileContent.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <random>

namespace orvanta::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;

class M4AFileTest : public ::testing::Test {
protected:
    std::unique_ptr<AudioFile> create(int rate = 48000, int channels = 2) {
        std::string reason;
        std::filesystem::remove(path_);
        auto file = writer_.create(
            path_, {AudioFileSettings::Coding::aacMPEG4, double(rate), channels, 256000}, reason);
        EXPECT_TRUE(file) << reason;
        return file;
    }

    std::filesystem::path copy() {
        const auto path = folder_.path() / ("copy" + std::to_string(copies_++) + ".m4a");
        std::filesystem::copy_file(path_, path);
        return path;
    }

    static std::string bytes(const std::filesystem::path& path, const M4APacket& packet) {
        std::ifstream file(path, std::ios::binary);
        file.seekg(static_cast<std::streamoff>(packet.offset));
        std::string bytes(packet.bytes, '\0');
        file.read(bytes.data(), packet.bytes);
        EXPECT_TRUE(file);
        return bytes;
    }

    const TemporaryDirectory folder_;
    const std::filesystem::path path_ = folder_.path() / "file.m4a";
    const Material material_ = wanderingTones(48000);
    MediaFileWriter writer_;
    int copies_ = 0;
};

TEST_F(M4AFileTest, IsAnOrdinaryFileOnceItIsFinished) {
    ASSERT_EQ(writeMaterial(*create(), material_, 2, 0, 200000), std::nullopt);
    const M4AContent content = readM4A(path_);
    EXPECT_THAT(content.boxes, ElementsAre("ftyp", "mdat", "moov"));
    EXPECT_FALSE(content.isFragmented);
    for (const M4APacket& packet : content.packets)
        // Each packet begins with the element of a pair of channels.
        ASSERT_EQ(static_cast<unsigned char>(bytes(path_, packet).front()) >> 5U, 1U);
}

TEST_F(M4AFileTest, CanBeReadAtAnyMomentWhileItGrows) {
    const auto file = create();
    std::uint64_t frames = 0;
    for (const std::uint64_t more : {0U, 100U, 30000U, 24000U, 48000U, 71234U}) {
        ASSERT_EQ(writeMaterial(*file, material_, 2, frames, more), std::nullopt);
        frames += more;
        const auto path = copy();
        const M4AContent content = readM4A(path);
        EXPECT_TRUE(content.isFragmented);
        EXPECT_EQ(content.sampleRate, 48000U);
        EXPECT_EQ(content.edits, (std::vector<M4AEdit>{{0, 1024}}));
        EXPECT_GT(content.framesToHear(), static_cast<std::int64_t>(frames) - 48000);
        EXPECT_EQ(probed(path)["channels"], "2");
        if (content.packets.empty())
            continue;
        const std::vector<float> samples = decoded(path);
        EXPECT_EQ(samples.size(), content.packets.size() * 1024 * 2);
        EXPECT_GT(signalToNoise(samples, 2, material_, 1024), kGoodEncoding);
    }
}

TEST_F(M4AFileTest, FinishesWithoutMovingASample) {
    auto file = create();
    ASSERT_EQ(writeMaterial(*file, material_, 2, 0, 150000), std::nullopt);
    const auto before = copy();
    const M4AContent growing = readM4A(before);
    file.reset();
    const M4AContent finished = readM4A(path_);
    ASSERT_GT(growing.packets.size(), 100U);
    ASSERT_GT(finished.packets.size(), growing.packets.size());
    for (std::size_t index = 0; index < growing.packets.size(); ++index) {
        EXPECT_EQ(finished.packets[index], growing.packets[index]);
        EXPECT_EQ(bytes(path_, finished.packets[index]), bytes(before, growing.packets[index]));
    }
}

TEST_F(M4AFileTest, CanBeReadAtEveryStepOfFinishing) {
    auto file = create();
    const std::string beginning = fileContent(path_);
    ASSERT_EQ(writeMaterial(*file, material_, 2, 0, 150000), std::nullopt);
    file.reset();
    const M4AContent finished = readM4A(path_);

    // The step before the last one: the new table is there, the old one still counts.
    const auto path = copy();
    std::fstream(path, std::ios::binary | std::ios::in | std::ios::out) << beginning;
    // And those before: the program was killed within the table.
    for (const std::uintmax_t missing : {0U, 1U, 300U, 600U}) {
        std::filesystem::resize_file(path, std::filesystem::file_size(path_) - missing);
        const M4AContent content = readM4A(path);
        EXPECT_TRUE(content.isFragmented);
        EXPECT_EQ(content.packets, finished.packets);
        const std::vector<float> samples = decoded(path);
        EXPECT_EQ(samples.size(), content.packets.size() * 1024 * 2);
        const auto whole = std::span(samples).first((1024 + 150000) * 2);
        EXPECT_GT(signalToNoise(whole, 2, material_, 1024), kGoodEncoding);
    }
}

TEST_F(M4AFileTest, LastsExactlyAsLongAsWhatWasHandedOver) {
    for (const std::uint64_t frames : {1U, 1023U, 1024U, 1025U, 2048U, 47999U, 48000U, 49152U}) {
        ASSERT_EQ(writeMaterial(*create(), material_, 2, 0, frames, 1000), std::nullopt);
        const M4AContent content = readM4A(path_);
        EXPECT_EQ(content.movieDuration, static_cast<std::int64_t>(frames));
        EXPECT_EQ(content.framesToHear(), static_cast<std::int64_t>(frames));
        EXPECT_EQ(probed(path_)["duration_ts"], std::to_string(frames));
        // Decoders give the last packet whole.
        const std::size_t wholePackets = (frames + 1023) / 1024 * 1024;
        EXPECT_EQ(decoded(path_).size(), wholePackets * 2) << frames;
    }
}

TEST_F(M4AFileTest, IsValidWithoutASingleFrame) {
    create().reset();
    const M4AContent content = readM4A(path_);
    EXPECT_THAT(content.boxes, ElementsAre("ftyp", "moov"));
    EXPECT_THAT(content.packets, testing::IsEmpty());
    EXPECT_EQ(probed(path_)["codec_name"], "aac");
}

TEST_F(M4AFileTest, KeepsEachSampleAtItsPlaceInItsChannel) {
    ASSERT_EQ(writeMaterial(*create(), material_, 2, 0, 240000, 777), std::nullopt);
    const std::vector<float> samples = decoded(path_);
    EXPECT_GT(signalToNoise(samples, 2, material_), kGoodEncoding);
    // What the measure says of a shift by one frame and of swapped channels.
    EXPECT_LT(signalToNoise(samples, 2, material_, 1), kWrongPlace);
    EXPECT_LT(
        signalToNoise(samples, 2,
                      [&](auto channel, auto frame) { return material_(1 - channel, frame); }),
        kWrongPlace);
}

TEST_F(M4AFileTest, LosesNothingBesideABrokenSample) {
    const float broken[] = {std::numeric_limits<float>::quiet_NaN(),
                            std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity(), 1e38F, -1e38F};
    {
        const auto file = create();
        ASSERT_EQ(writeMaterial(*file, material_, 2, 0, 96000), std::nullopt);
        EXPECT_EQ(file->write(std::array<const float*, 2>{broken, broken}, std::size(broken)),
                  std::nullopt);
        ASSERT_EQ(writeMaterial(*file, material_, 2, 96000 + std::size(broken), 96000),
                  std::nullopt);
    }
    const std::vector<float> samples = decoded(path_);
    const std::span<const float> all(samples);
    EXPECT_GT(signalToNoise(all.first(2 * 94000), 2, material_), kGoodEncoding);
    EXPECT_GT(signalToNoise(all, 2, material_, 98500, 98500), kGoodEncoding);
    EXPECT_THAT(samples, Each(testing::AllOf(Ge(-40), Le(40))));
}

TEST_F(M4AFileTest, BearsSoundFarAboveFullScaleAtEveryRateAndWithAllChannels) {
    std::mt19937 random(11);
    const std::array<Material, 3> loud = {
        [&](auto, auto) { return std::ldexp(static_cast<float>(random()), -20) - 2048.0F; },
        [&](auto, auto frame) { return frame % 2 == 0 ? 1e9F : -1e9F; },
        [&](auto, auto frame) { return frame % 3000 == 5 ? -1e30F : 1e-30F; },
    };
    for (const int rate :
         {7350, 8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000, 64000, 88200, 96000})
        for (const int channels : {1, 2, 6, 8})
            for (const Material& material : loud) {
                constexpr std::uint64_t kFrames = 10240;
                ASSERT_EQ(writeMaterial(*create(rate, channels), material,
                                        static_cast<std::uint32_t>(channels), 0, kFrames),
                          std::nullopt);
                const M4AContent content = readM4A(path_);
                ASSERT_EQ(content.framesToHear(), static_cast<std::int64_t>(kFrames));
                // 6144 bits a channel are the most that the format allows.
                for (const M4APacket& packet : content.packets)
                    ASSERT_LE(packet.bytes, 768U * static_cast<unsigned>(channels));
            }
}

} // namespace
} // namespace orvanta::test
