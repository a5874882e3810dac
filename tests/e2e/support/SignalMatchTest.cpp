#include "tests/e2e/support/SignalMatch.h"

#include "tests/e2e/support/NoiseSignal.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvanta::test {

namespace {

std::vector<float> recordingOf(const std::vector<float>& signal, std::size_t from,
                               std::size_t frames, float gain, std::size_t silence) {
    std::vector<float> recording(silence, 0.0F);
    for (std::size_t index = 0; index < frames; ++index)
        recording.push_back(signal[from + index] * gain);
    recording.insert(recording.end(), silence, 0.0F);
    return recording;
}

TEST(SignalMatch, FindsOffsetAndGainExactlyAndNoResidual) {
    const std::vector<float> signal = NoiseSignal(1).channel(0, 48000);
    const auto recording = recordingOf(signal, 12345, 9000, 0.5F, 700);

    const auto match = findSignal(recording, signal);

    ASSERT_TRUE(match);
    EXPECT_EQ(match->offset, 12345 - 700);
    EXPECT_DOUBLE_EQ(match->gain, 0.5);
    EXPECT_EQ(match->residual, 0.0);
    EXPECT_EQ(match->frames, 9000U);
}

TEST(SignalMatch, ShowsOneDamagedSampleInTheResidual) {
    const std::vector<float> signal = NoiseSignal(1).channel(0, 48000);
    auto recording = recordingOf(signal, 100, 9000, 1.0F, 10);
    recording[10 + 777] += 0.01F;

    const auto match = findSignal(recording, signal);

    ASSERT_TRUE(match);
    EXPECT_NEAR(match->residual, 0.01, 1e-4);
}

TEST(SignalMatch, ShowsOneMissingSampleInTheResidual) {
    const std::vector<float> signal = NoiseSignal(1).channel(0, 48000);
    auto recording = recordingOf(signal, 100, 9000, 1.0F, 10);
    recording.erase(recording.begin() + 8000);

    const auto match = findSignal(recording, signal);

    ASSERT_TRUE(match);
    EXPECT_GT(match->residual, 0.1);
}

TEST(SignalMatch, FindsNothingInSilenceNorInAnotherSignal) {
    const std::vector<float> signal = NoiseSignal(1).channel(0, 48000);

    EXPECT_FALSE(findSignal(std::vector<float>(5000, 0.0F), signal));
    EXPECT_FALSE(findSignal(NoiseSignal(2).channel(0, 5000), signal));
    EXPECT_FALSE(findSignal(NoiseSignal(1).channel(1, 5000), signal));
}

TEST(SignalMatch, ComparesOnlyWhereTheSignalIsKnown) {
    const std::vector<float> whole = NoiseSignal(1).channel(0, 12000);
    const std::vector<float> recording(whole.begin(), whole.begin() + 10000);
    const std::vector<float> signal(whole.begin() + 1000, whole.end());

    const auto match = findSignal(recording, signal);

    ASSERT_TRUE(match);
    EXPECT_EQ(match->offset, -1000);
    EXPECT_EQ(match->frames, 9000U);
    EXPECT_EQ(match->residual, 0.0);
}

TEST(SignalMatch, LevelIsTheRootOfTheMeanSquare) {
    EXPECT_DOUBLE_EQ(level(std::vector<float>{0.5F, -0.5F, 0.5F, -0.5F}), 0.5);
    EXPECT_DOUBLE_EQ(level({}), 0.0);
}

} // namespace

} // namespace orvanta::test
