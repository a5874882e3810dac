#include "tests/e2e/support/WavFile.h"

#include "tests/e2e/support/NoiseSignal.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

namespace orvanta::test {

namespace {

TEST(WavFile, HoldsTheNoiseSignalWithoutLoss) {
    const TemporaryDirectory directory;
    const std::vector<float> noise = NoiseSignal(3).channel(1, 500);
    const std::vector<std::vector<float>> channels = {noise};

    writeWavFile(directory.path() / "noise.wav", 48000, channels);

    std::ifstream file(directory.path() / "noise.wav", std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    const std::string bytes = content.str();
    ASSERT_EQ(bytes.size(), 44U + 1000U);
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    for (std::size_t frame = 0; frame < noise.size(); ++frame) {
        const auto low = static_cast<unsigned char>(bytes[44 + 2 * frame]);
        const auto high = static_cast<signed char>(bytes[45 + 2 * frame]);
        ASSERT_EQ(static_cast<float>(high * 256 + low) / 32768.0F, noise[frame]);
    }
}

TEST(NoiseSignal, StaysAwayFromSilenceAndFromClipping) {
    for (const float sample : NoiseSignal(9).channel(0, 10000)) {
        ASSERT_GE(std::abs(sample), 0.1F - 1.0F / 32768.0F);
        ASSERT_LE(std::abs(sample), 0.45F);
    }
}

TEST(NoiseSignal, DiffersBetweenSeedsAndChannels) {
    EXPECT_NE(NoiseSignal(1).channel(0, 8), NoiseSignal(1).channel(1, 8));
    EXPECT_NE(NoiseSignal(1).channel(0, 8), NoiseSignal(2).channel(0, 8));
}

} // namespace

} // namespace orvanta::test
