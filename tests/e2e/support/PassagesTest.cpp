#include "tests/e2e/support/Passages.h"

#include "tests/e2e/support/NoiseSignal.h"

#include <gtest/gtest.h>

namespace orvanta::test {

namespace {

constexpr float gain = 0.5F;

/// Composes a recording from stretches of a known signal.
class PassageReaderTest : public testing::Test {
protected:
    void addSilence(std::size_t frames) { recording_.insert(recording_.end(), frames, 0.0F); }

    void addSignal(std::size_t from, std::size_t frames, float factor) {
        for (std::size_t index = 0; index < frames; ++index)
            recording_.push_back(signal_[from + index] * factor);
    }

    [[nodiscard]] PassageCounts counts() const {
        return count(PassageReader(signal_, gain).read(recording_));
    }

    std::vector<float> signal_ = NoiseSignal(7).channel(0, 20000);
    std::vector<float> recording_;
};

TEST_F(PassageReaderTest, ReadsAnUndisturbedTapAsOnePassage) {
    addSilence(100);
    addSignal(3000, 5000, gain);
    addSilence(100);

    const auto passages = PassageReader(signal_, gain).read(recording_);

    ASSERT_EQ(passages.size(), 3U);
    EXPECT_EQ(passages[1].material, Material::gained);
    EXPECT_EQ(passages[1].start, 100U);
    EXPECT_EQ(passages[1].frames, 5000U);
    EXPECT_EQ(passages[1].signalPosition, 3000);
    EXPECT_EQ(counts().longestGap, 0U);
}

TEST_F(PassageReaderTest, CountsEveryLeakedSample) {
    addSignal(0, 1024, gain);
    addSignal(1024, 300, 1.0F);
    addSignal(1324, 1024, gain);

    const PassageCounts seen = counts();

    EXPECT_EQ(seen.leaked, 300U);
    EXPECT_EQ(seen.gained, 2048U);
    EXPECT_EQ(seen.foreign + seen.doubled + seen.silent + seen.lost + seen.repeated, 0U);
}

TEST_F(PassageReaderTest, TellsDoubledFromLeakedAndGained) {
    addSignal(0, 1024, gain);
    addSignal(1024, 256, 1.0F + gain);
    addSignal(1280, 1024, 1.0F);

    const PassageCounts seen = counts();

    EXPECT_EQ(seen.doubled, 256U);
    EXPECT_EQ(seen.leaked, 1024U);
    EXPECT_EQ(seen.foreign, 0U);
}

TEST_F(PassageReaderTest, TakesTwoPlacesOfTheSignalAtOnceForForeign) {
    addSignal(0, 1024, gain);
    for (std::size_t index = 0; index < 500; ++index)
        recording_.push_back(signal_[1024 + index] * gain + signal_[index] * gain);
    addSignal(1524, 1024, gain);

    EXPECT_EQ(counts().foreign, 500U);
}

TEST_F(PassageReaderTest, TakesAWrongGainForForeign) {
    addSignal(0, 1024, gain);
    addSignal(1024, 64, 0.51F);
    addSignal(1088, 1024, gain);

    EXPECT_EQ(counts().foreign, 64U);
}

TEST_F(PassageReaderTest, CountsLostAndRepeatedSamples) {
    addSignal(0, 1000, gain);
    addSignal(1001, 1000, gain);
    addSignal(1501, 1000, gain);

    const PassageCounts seen = counts();

    EXPECT_EQ(seen.lost, 1U);
    EXPECT_EQ(seen.repeated, 500U);
}

TEST_F(PassageReaderTest, MeasuresTheLongestSilenceBetweenSounds) {
    addSilence(9000);
    addSignal(0, 1000, 1.0F);
    addSilence(64);
    addSignal(1000, 1000, gain);
    addSilence(1024);
    addSignal(3024, 1000, 1.0F);
    addSilence(9000);

    const PassageCounts seen = counts();

    EXPECT_EQ(seen.longestGap, 1024U);
    EXPECT_EQ(seen.lost, 1024U);
}

TEST_F(PassageReaderTest, ReadsAnEmptyOrSilentRecordingAsNothing) {
    EXPECT_TRUE(PassageReader(signal_, gain).read({}).empty());
    addSilence(10);
    EXPECT_EQ(counts().silent, 10U);
    EXPECT_EQ(counts().longestGap, 0U);
}

TEST_F(PassageReaderTest, ForgivesTheRoundingOfAnAwkwardGain) {
    const float awkward = 0.3F;
    addSignal(0, 5000, awkward);

    const auto seen = count(PassageReader(signal_, awkward).read(recording_));

    EXPECT_EQ(seen.gained, 5000U);
}

} // namespace

} // namespace orvanta::test
