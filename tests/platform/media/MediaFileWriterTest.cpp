#include "platform/media/MediaFileWriter.h"

#include "tests/platform/media/support/M4AReader.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/WavReader.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <tuple>

namespace orvanta::test {
namespace {

using testing::HasSubstr;
using Coding = AudioFileSettings::Coding;

std::string nameOf(Coding coding) {
    return coding == Coding::floatWAV ? "WAV" : "M4A";
}

AudioFileSettings settingsFor(Coding coding, double rate = 48000, int channels = 2) {
    return {coding, rate, channels, coding == Coding::aacMPEG4 ? 256000 : 0};
}

/// What holds for both codings.
class MediaFileWriterTest : public ::testing::TestWithParam<Coding> {
protected:
    std::unique_ptr<AudioFile> create(const std::filesystem::path& path) {
        return writer_.create(path, settingsFor(GetParam()), reason_);
    }

    [[nodiscard]] std::size_t filesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder_.path()), {}));
    }

    const TemporaryDirectory folder_;
    const std::filesystem::path path_ = folder_.path() / "file";
    MediaFileWriter writer_;
    std::string reason_;
};

TEST_P(MediaFileWriterTest, LeavesAnExistingFileAsItIs) {
    std::ofstream(path_) << "precious";
    EXPECT_FALSE(create(path_));
    EXPECT_EQ(reason_, "File exists");
    std::string content;
    std::ifstream(path_) >> content;
    EXPECT_EQ(content, "precious");
}

TEST_P(MediaFileWriterTest, SaysWhyAFileCannotBeThere) {
    EXPECT_FALSE(create(folder_.path() / "missing" / "file"));
    EXPECT_EQ(reason_, "No such file or directory");
    EXPECT_FALSE(create(folder_.path() / std::string(300, 'x')));
    EXPECT_EQ(reason_, "File name too long");
    EXPECT_FALSE(create("/proc/file"));
    EXPECT_FALSE(reason_.empty());
    std::ofstream(path_) << "no folder";
    EXPECT_FALSE(create(path_ / "file"));
    EXPECT_EQ(reason_, "Not a directory");
}

TEST_P(MediaFileWriterTest, MakesNoFileOfWhatTheFormatCannotHold) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double rate : {0.0, -48000.0, 1e12, nan}) {
        EXPECT_FALSE(writer_.create(path_, settingsFor(GetParam(), rate), reason_)) << rate;
        EXPECT_THAT(reason_, HasSubstr("Hz"));
    }
    for (const int channels : {0, -1, 5000}) {
        EXPECT_FALSE(writer_.create(path_, settingsFor(GetParam(), 48000, channels), reason_))
            << channels;
        EXPECT_THAT(reason_, HasSubstr(std::to_string(channels) + " channels"));
    }
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_P(MediaFileWriterTest, WritesOnWhenTheFileAndItsFolderAreGone) {
    const auto file = create(path_);
    ASSERT_TRUE(file) << reason_;
    std::filesystem::remove_all(folder_.path());
    EXPECT_EQ(writeMaterial(*file, wanderingTones(48000), 2, 0, 96000), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_P(MediaFileWriterTest, LeavesStandardErrorAlone) {
    testing::internal::CaptureStderr();
    {
        const auto file = create(path_);
        ASSERT_TRUE(file) << reason_;
        const float loud[] = {std::numeric_limits<float>::infinity(), 1e30F, -1e30F};
        file->write(std::array<const float*, 2>{loud, loud}, std::size(loud));
        writeMaterial(*file, wanderingTones(48000), 2, 0, 96000);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

INSTANTIATE_TEST_SUITE_P(Codings, MediaFileWriterTest,
                         testing::Values(Coding::floatWAV, Coding::aacMPEG4),
                         [](const auto& test) { return nameOf(test.param); });

TEST(MediaFileWriter, SaysWhichRateAACLacks) {
    const TemporaryDirectory folder;
    std::string reason;
    EXPECT_FALSE(MediaFileWriter().create(folder.path() / "file",
                                          settingsFor(Coding::aacMPEG4, 192000), reason));
    EXPECT_EQ(reason, "AAC has no sample rate of 192000 Hz");
}

/// Rates and channels, in files of both codings.
class FileFormatTest : public ::testing::TestWithParam<std::tuple<int, int>> {
protected:
    /// Finished, and an odd number of frames long.
    void write(Coding coding) {
        std::string reason;
        const auto file =
            MediaFileWriter().create(path_, settingsFor(coding, rate_, channels_), reason);
        ASSERT_TRUE(file) << reason;
        ASSERT_EQ(writeMaterial(*file, wanderingTones(rate_), static_cast<std::uint32_t>(channels_),
                                0, frames_),
                  std::nullopt);
    }

    void expectProbed(const std::string& codec, const std::string& sampleFormat) {
        auto probe = probed(path_);
        EXPECT_EQ(probe["codec_name"], codec);
        EXPECT_EQ(probe["sample_fmt"], sampleFormat);
        EXPECT_EQ(probe["sample_rate"], std::to_string(rate_));
        EXPECT_EQ(probe["channels"], std::to_string(channels_));
        EXPECT_EQ(probe["duration_ts"], std::to_string(frames_));
        const double seconds = static_cast<double>(frames_) / rate_;
        EXPECT_NEAR(std::stod(probe["format.duration"]), seconds, 1e-6);
    }

    const int rate_ = std::get<0>(GetParam());
    const int channels_ = std::get<1>(GetParam());
    const std::uint64_t frames_ = static_cast<std::uint64_t>(rate_) * 3 + 77;
    const TemporaryDirectory folder_;
    const std::filesystem::path path_ = folder_.path() / "file";
};

TEST_P(FileFormatTest, AllReadersAgreeOnWAV) {
    ASSERT_NO_FATAL_FAILURE(write(Coding::floatWAV));
    const WavReader reader(path_);
    EXPECT_TRUE(reader.isFloat());
    EXPECT_EQ(reader.bitsPerSample(), 32U);
    EXPECT_EQ(reader.sampleRate(), static_cast<std::uint32_t>(rate_));
    EXPECT_EQ(reader.channels(), static_cast<std::uint32_t>(channels_));
    EXPECT_EQ(reader.frames(), frames_);
    EXPECT_EQ(reader.fileBytes(), std::filesystem::file_size(path_));

    expectProbed("pcm_f32le", "flt");

    EXPECT_EQ(soxSays("-r", path_), std::to_string(rate_));
    EXPECT_EQ(soxSays("-c", path_), std::to_string(channels_));
    EXPECT_EQ(soxSays("-s", path_), std::to_string(frames_));
    EXPECT_EQ(soxSays("-e", path_), "Floating Point PCM");
}

TEST_P(FileFormatTest, AllReadersAgreeOnM4A) {
    ASSERT_NO_FATAL_FAILURE(write(Coding::aacMPEG4));
    const M4AContent content = readM4A(path_);
    EXPECT_EQ(content.sampleRate, static_cast<std::uint32_t>(rate_));
    EXPECT_EQ(content.channels, static_cast<std::uint32_t>(channels_));
    EXPECT_EQ(content.mediaTimeScale, static_cast<std::uint32_t>(rate_));
    EXPECT_EQ(content.movieTimeScale, static_cast<std::uint32_t>(rate_));
    const auto frames = static_cast<std::int64_t>(frames_);
    EXPECT_EQ(content.movieDuration, frames);
    EXPECT_EQ(content.trackDuration, frames);
    EXPECT_EQ(content.mediaDuration, 1024 + frames);
    EXPECT_EQ(content.edits, (std::vector<M4AEdit>{{frames, 1024}}));
    EXPECT_EQ(content.framesToHear(), frames);

    expectProbed("aac", "fltp");
    auto probe = probed(path_);
    EXPECT_EQ(probe["format.format_name"], "mov,mp4,m4a,3gp,3g2,mj2");
    EXPECT_EQ(probe["start_pts"], "0");
    EXPECT_EQ(probe["nb_frames"], std::to_string(content.packets.size()));
}

INSTANTIATE_TEST_SUITE_P(Formats, FileFormatTest,
                         testing::Combine(testing::Values(8000, 22050, 32000, 44100, 48000, 96000),
                                          testing::Values(1, 2)),
                         [](const auto& test) {
                             return std::to_string(std::get<0>(test.param)) + "Hz" +
                                    (std::get<1>(test.param) == 1 ? "Mono" : "Stereo");
                         });

} // namespace
} // namespace orvanta::test
