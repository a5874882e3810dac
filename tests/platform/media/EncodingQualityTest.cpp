#include "platform/embedded/sounds/BasicSounds.h"
#include "platform/embedded/sounds/MusicLike.h"
#include "platform/embedded/sounds/SpeechLike.h"
#include "platform/media/MediaFileWriter.h"
#include "tests/platform/media/support/Material.h"
#include "tests/platform/media/support/MediaTools.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <tuple>

namespace orvanta::test {
namespace {

using Coding = AudioFileSettings::Coding;

struct NamedSound {
    const char* name;
    embedded::Sound sound;
};

/// The first seconds of a sound in two channels; one channel goes to both.
Material rendered(const embedded::Sound& sound, int rate, std::size_t frames) {
    const auto source = sound();
    const std::size_t channels = source->channels();
    std::vector<float> samples(frames * channels);
    source->render(samples, rate);
    return [=](std::uint32_t channel, std::uint64_t frame) {
        const std::size_t index = frame * channels + (channels == 1 ? 0 : channel);
        return index < samples.size() ? samples[index] : 0.0F;
    };
}

class EncodingQualityTest : public ::testing::TestWithParam<std::tuple<NamedSound, int>> {
protected:
    static constexpr int kBitRate = 256000;

    void write(Coding coding, const std::filesystem::path& path) {
        std::string reason;
        const auto file =
            MediaFileWriter().create(path, {coding, double(rate_), 2, kBitRate}, reason);
        ASSERT_TRUE(file) << reason;
        ASSERT_EQ(writeMaterial(*file, material_, 2, 0, frames_), std::nullopt);
    }

    /// Without the last packet, which the decoder gives whole.
    double quality(const std::filesystem::path& path) const {
        const std::vector<float> samples = decoded(path);
        EXPECT_GE(samples.size(), frames_ * 2);
        return signalToNoise(std::span(samples).first(frames_ * 2), 2, material_);
    }

    const int rate_ = std::get<1>(GetParam());
    const std::size_t frames_ = 5 * static_cast<std::size_t>(rate_);
    const Material material_ = rendered(std::get<0>(GetParam()).sound, rate_, frames_);
    const TemporaryDirectory folder_;
};

TEST_P(EncodingQualityTest, IsThatOfTheFfmpegProgram) {
    const auto wav = folder_.path() / "original.wav";
    const auto ours = folder_.path() / "ours.m4a";
    const auto theirs = folder_.path() / "theirs.m4a";
    ASSERT_NO_FATAL_FAILURE(write(Coding::floatWAV, wav));
    ASSERT_NO_FATAL_FAILURE(write(Coding::aacMPEG4, ours));
    encodeByFfmpeg(wav, theirs, kBitRate);
    const double quality = this->quality(ours);
    RecordProperty("SignalToNoise", std::to_string(quality));
    const double theirQuality = this->quality(theirs);
    EXPECT_GT(theirQuality, 1.0) << "or the two are not compared in step";
    EXPECT_GT(quality, theirQuality - 1.0);
}

INSTANTIATE_TEST_SUITE_P(
    Sounds, EncodingQualityTest,
    testing::Combine(testing::Values(NamedSound{"Noise", embedded::noise()},
                                     NamedSound{"Music", embedded::musicLike()},
                                     NamedSound{"Speech", embedded::speechLike()},
                                     NamedSound{"Sine", embedded::tone(997)}),
                     testing::Values(44100, 48000, 96000)),
    [](const auto& test) {
        return std::get<0>(test.param).name + std::to_string(std::get<1>(test.param)) + "Hz";
    });

} // namespace
} // namespace orvanta::test
