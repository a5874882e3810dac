#include "core/dsp/EQProcessor.h"
#include "core/dsp/FlushDenormals.h"
#include "tests/support/reference/Equaliser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace orvanta {
namespace {

using Samples = std::vector<float>;

/// Equal to the last bit, signs of zeros and all.
bool sameBits(const Samples& a, const Samples& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

/// The fast equaliser and the plain one, fed the same.
class SideBySide {
public:
    SideBySide(const Kernels& kernels, double sampleRate, unsigned seed)
        : fast_(sampleRate, 3, kernels), plain_(sampleRate, 3), random_(seed) {}

    void setGain(std::size_t band, float gain) {
        fast_.setGain(static_cast<int>(band), gain);
        plain_.setGain(band, gain);
    }

    /// The bands of which `subset` has the bit.
    void activate(unsigned subset) {
        for (std::size_t band = 0; band < kEQBandCount; ++band)
            setGain(band, (subset >> band & 1U) != 0 ? anyGain() : 0.0F);
    }

    void expectSameOfOneChannel(std::size_t count, std::size_t channel) {
        Samples samples = anySamples(count);
        Samples expected = samples;
        fast_.process(samples.data(), count, channel);
        plain_.process(expected.data(), count, channel);
        ASSERT_TRUE(sameBits(samples, expected)) << count << " samples of channel " << channel;
    }

    void expectSameOfAPair(std::size_t count) {
        Samples left = anySamples(count);
        Samples right = anySamples(count);
        Samples expectedLeft = left;
        Samples expectedRight = right;
        fast_.processPair(left.data(), right.data(), count);
        plain_.process(expectedLeft.data(), count, 0);
        plain_.process(expectedRight.data(), count, 1);
        ASSERT_TRUE(sameBits(left, expectedLeft)) << count << " samples, left";
        ASSERT_TRUE(sameBits(right, expectedRight)) << count << " samples, right";
    }

    /// A bad sample in about one block of `blocks`.
    void poisonOneOf(unsigned blocks) { blocksForOneBad_ = blocks; }

    std::mt19937& random() { return random_; }

private:
    float anyGain() {
        const float gain = std::uniform_real_distribution<float>(0.06F, 12.0F)(random_);
        return random_() % 2 == 0 ? gain : -gain;
    }

    Samples anySamples(std::size_t count) {
        std::uniform_real_distribution<float> value(-1.0F, 1.0F);
        Samples samples(count);
        for (float& sample : samples)
            sample = value(random_);
        if (random_() % 4 == 0) // signed zeros are samples too
            std::fill(samples.begin() + static_cast<std::ptrdiff_t>(count / 2), samples.end(),
                      -0.0F);
        if (blocksForOneBad_ != 0 && random_() % blocksForOneBad_ == 0) {
            constexpr std::array bad{std::numeric_limits<float>::quiet_NaN(),
                                     std::numeric_limits<float>::infinity(),
                                     -std::numeric_limits<float>::infinity(),
                                     std::numeric_limits<float>::max(),
                                     1e30F,
                                     1e-39F};
            samples[random_() % count] = bad[random_() % bad.size()];
        }
        return samples;
    }

    EQProcessor fast_;
    reference::Equaliser plain_;
    std::mt19937 random_;
    unsigned blocksForOneBad_ = 0;
};

constexpr unsigned allBands = 0x3FF;

class EQKernels : public testing::TestWithParam<InstructionSet> {
protected:
    void SetUp() override {
        kernels_ = kernelsFor(GetParam());
        if (kernels_ == nullptr)
            GTEST_SKIP() << "not on this machine";
    }

    [[nodiscard]] SideBySide sideBySide(double sampleRate = 48000.0, unsigned seed = 1) const {
        return {*kernels_, sampleRate, seed};
    }

    const Kernels* kernels_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(InstructionSets, EQKernels,
                         testing::Values(InstructionSet::baseline, InstructionSet::avx2),
                         [](const auto& set) {
                             return set.param == InstructionSet::baseline ? "Baseline" : "AVX2";
                         });

TEST_P(EQKernels, EveryNumberOfBandsAndEveryShortBlockIsTheSameToTheBit) {
    for (std::size_t bands = 1; bands <= kEQBandCount; ++bands) {
        SCOPED_TRACE(bands);
        SideBySide eq = sideBySide();
        eq.activate((1U << bands) - 1U);
        for (std::size_t count = 1; count <= 70; ++count) {
            eq.expectSameOfOneChannel(count, count % 3);
            eq.expectSameOfAPair(count);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_P(EQKernels, LongBlocksAreTheSameToTheBit) {
    for (const double rate : {8000.0, 32000.0, 44100.0, 48000.0, 96000.0, 192000.0}) {
        SCOPED_TRACE(rate);
        SideBySide eq = sideBySide(rate);
        eq.activate(allBands);
        for (const std::size_t count : {255U, 256U, 257U, 512U, 1024U, 4095U, 4096U, 5000U}) {
            eq.expectSameOfAPair(count);
            eq.expectSameOfOneChannel(count, 2);
            eq.expectSameOfOneChannel(count, 0);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_P(EQKernels, EverySubsetOfBandsIsTheSameToTheBit) {
    SideBySide eq = sideBySide();
    for (unsigned subset = 0; subset <= allBands; ++subset) {
        SCOPED_TRACE(subset);
        eq.activate(subset);
        eq.expectSameOfAPair(1 + eq.random()() % 90);
        eq.expectSameOfOneChannel(1 + eq.random()() % 90, 1);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_P(EQKernels, AnyOrderOfChangesAndBlocksIsTheSameToTheBit) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        SideBySide eq = sideBySide(seed % 2 == 0 ? 44100.0 : 96000.0, seed);
        for (int turn = 0; turn < 60; ++turn) {
            if (eq.random()() % 4 == 0)
                eq.activate(eq.random()() & allBands);
            if (eq.random()() % 2 == 0)
                eq.expectSameOfAPair(1 + eq.random()() % 300);
            else
                eq.expectSameOfOneChannel(1 + eq.random()() % 300, eq.random()() % 3);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_P(EQKernels, BadAndHugeSamplesAreTheSameToTheBit) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        SideBySide eq = sideBySide(48000.0, seed);
        eq.poisonOneOf(3);
        for (int turn = 0; turn < 60; ++turn) {
            if (eq.random()() % 8 == 0)
                eq.activate(eq.random()() & allBands);
            eq.expectSameOfAPair(1 + eq.random()() % 200);
            eq.expectSameOfOneChannel(1 + eq.random()() % 200, eq.random()() % 3);
            ASSERT_FALSE(HasFatalFailure());
        }
    }
}

TEST_P(EQKernels, TheSameToTheBitWithSubnormalNumbersFlushedToo) {
    const FlushDenormals flush;
    SideBySide eq = sideBySide();
    eq.poisonOneOf(5);
    for (int turn = 0; turn < 200; ++turn) {
        if (turn % 10 == 0)
            eq.activate(eq.random()() & allBands);
        eq.expectSameOfAPair(1 + eq.random()() % 300);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_P(EQKernels, NoOutputHistoryStaysSubnormalOnceTheSignalIsGone) {
    EQProcessor design(48000.0, 1);
    EQCascade cascade;
    for (std::size_t band = 0; band < kEQBandCount; ++band) {
        design.setGain(static_cast<int>(band), band % 2 == 0 ? 6.0F : -6.0F);
        const auto [b0, b1, b2, a1, a2] = design.vdspCoeffs()[band];
        cascade.band[cascade.count] = band;
        cascade.row[cascade.count++] = {b0, b1, b2, a1, a2, {}};
    }
    EQChannelHistory left{};
    EQChannelHistory right{};
    std::mt19937 random(3);
    std::uniform_real_distribution<float> value(-1.0F, 1.0F);
    const auto run = [&](float amplitude, int blocks) {
        Samples samples(512);
        Samples others(512);
        for (int block = 0; block < blocks; ++block) {
            for (std::size_t k = 0; k < samples.size(); ++k) {
                samples[k] = value(random) * amplitude;
                others[k] = value(random) * amplitude;
            }
            kernels_->eq.pair(samples.data(), others.data(), samples.size(), cascade, left, right);
        }
    };
    const auto subnormals = [&] {
        int found = 0;
        for (const EQChannelHistory* channel : {&left, &right})
            for (const EQHistory& history : channel->bands)
                for (const float y : {history.y1, history.y2})
                    found += std::fpclassify(y) == FP_SUBNORMAL ? 1 : 0;
        return found;
    };
    constexpr int minute = 48000 * 60 / 512;
    {
        const FlushDenormals flush;
        run(1.0F, 50);
    }
    const auto burstLeft = left;
    const auto burstRight = right;
    for (const float amplitude : {0.0F, 1e-39F}) {
        left = burstLeft;
        right = burstRight;
        const FlushDenormals flush;
        run(amplitude, minute / 4);
        EXPECT_EQ(subnormals(), 0) << amplitude;
    }
    // Without flushing they are there: it is the flushing that clears them.
    left = burstLeft;
    right = burstRight;
    run(0.0F, minute / 4);
    EXPECT_GT(subnormals(), 0);
}

} // namespace
} // namespace orvanta
