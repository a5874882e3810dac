#include "tests/support/WavFile.h"

#include "tests/e2e/support/NoiseSignal.h"
#include "tests/support/FileContent.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavReader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <string>

namespace orvanta::test {

namespace {

class WavFile : public ::testing::Test {
protected:
    void SetUp() override { writeWavFile(path_, 48000, std::vector<std::vector<float>>{noise_}); }

    const TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_.path() / "noise.wav";
    const std::vector<float> noise_ = NoiseSignal(3).channel(1, 500);
};

TEST_F(WavFile, HoldsTheNoiseSignalWithoutLoss) {
    const std::string bytes = fileContent(path_);
    ASSERT_EQ(bytes.size(), 44U + 1000U);
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    for (std::size_t frame = 0; frame < noise_.size(); ++frame) {
        const auto low = static_cast<unsigned char>(bytes[44 + 2 * frame]);
        const auto high = static_cast<signed char>(bytes[45 + 2 * frame]);
        ASSERT_EQ(static_cast<float>(high * 256 + low) / 32768.0F, noise_[frame]);
    }
}

TEST_F(WavFile, TellsTheReaderWhatItHolds) {
    const WavReader reader(path_);
    EXPECT_FALSE(reader.isRF64());
    EXPECT_FALSE(reader.isFloat());
    EXPECT_EQ(reader.bitsPerSample(), 16U);
    EXPECT_EQ(reader.sampleRate(), 48000U);
    EXPECT_EQ(reader.channels(), 1U);
    EXPECT_EQ(reader.frames(), 500U);
    EXPECT_EQ(reader.dataOffset(), 44U);
    EXPECT_EQ(reader.fileBytes(), 1044U);
}

TEST_F(WavFile, IsRefusedByTheReaderWhenItIsCutOrNoWavFile) {
    std::filesystem::resize_file(path_, 40);
    EXPECT_THROW(WavReader{path_}, std::runtime_error);
    std::ofstream(path_) << "something else entirely, of some length";
    EXPECT_THROW(WavReader{path_}, std::runtime_error);
}

} // namespace

} // namespace orvanta::test
