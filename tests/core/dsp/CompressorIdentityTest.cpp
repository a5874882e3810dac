// The compressor against the same thing done one sample and one operation after the other: equal
// to the last bit, whatever the instruction set, the settings and the way the signal is cut.

#include "core/dsp/CompressorProcessor.h"
#include "core/dsp/FlushDenormals.h"
#include "tests/support/reference/CompressorMaterial.h"
#include "tests/support/reference/ReferenceCompressor.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace orvanta {
namespace {

using reference::noise;
using reference::swells;
using Reference = reference::Compressor<reference::ApproximatePowers>;

constexpr double rate = 48000.0;
constexpr std::size_t maxBufferSize = 4096;

/// NaN and the sign of zero count.
bool sameBits(const std::vector<float>& a, const std::vector<float>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

enum class Calls { apart, together };

/// The same settings and signals for a processor and for the reference.
class Twins {
public:
    Twins(const Kernels& kernels, Calls calls, double sampleRate = rate, std::size_t channels = 2)
        : fast_(sampleRate, channels, maxBufferSize, kernels),
          plain_(sampleRate, channels, maxBufferSize),
          calls_(calls) {}

    void apply(const CompressorPreset& preset) {
        fast_.apply(preset);
        plain_.apply(preset);
    }

    void setBand(int index, const CompressorBandSettings& settings) {
        fast_.setBand(index, settings);
        plain_.setBand(index, settings);
    }

    /// One block of both channels.
    testing::AssertionResult agreeOn(std::vector<float> left, std::vector<float> right) {
        auto plainLeft = left;
        auto plainRight = right;
        const std::size_t count = left.size();
        if (calls_ == Calls::together) {
            fast_.processPair(left.data(), right.data(), count);
        } else {
            fast_.process(left.data(), count, 0);
            fast_.process(right.data(), count, 1);
        }
        plain_.process(plainLeft.data(), count, 0);
        plain_.process(plainRight.data(), count, 1);
        if (!sameBits(left, plainLeft))
            return differing("left", left, plainLeft);
        if (!sameBits(right, plainRight))
            return differing("right", right, plainRight);
        if (fast_.gainReduction() != plain_.gainReduction)
            return testing::AssertionFailure() << "another reduction is published";
        return testing::AssertionSuccess();
    }

    /// Whole signals in blocks of `blockSize`, the rest last.
    testing::AssertionResult agreeOn(const std::vector<float>& left,
                                     const std::vector<float>& right, std::size_t blockSize) {
        for (std::size_t at = 0; at < left.size(); at += blockSize) {
            const std::size_t end = std::min(at + blockSize, left.size());
            const auto result = agreeOn(std::vector(&left[at], left.data() + end),
                                        std::vector(&right[at], right.data() + end));
            if (!result)
                return testing::AssertionFailure()
                       << result.message() << ", in the block at " << at;
        }
        return testing::AssertionSuccess();
    }

private:
    static testing::AssertionResult differing(const char* side, const std::vector<float>& fast,
                                              const std::vector<float>& plain) {
        std::size_t k = 0;
        while (std::memcmp(&fast[k], &plain[k], sizeof(float)) == 0)
            ++k;
        return testing::AssertionFailure()
               << side << " differs first at " << k << ": " << fast[k] << " for " << plain[k];
    }

    CompressorProcessor fast_;
    Reference plain_;
    Calls calls_;
};

using Way = std::tuple<InstructionSet, Calls>;

class CompressorIdentity : public testing::TestWithParam<Way> {
protected:
    void SetUp() override {
        if (kernelsFor(std::get<0>(GetParam())) == nullptr)
            GTEST_SKIP() << "this machine cannot run it";
    }

    static Twins twins(double sampleRate = rate) {
        return {*kernelsFor(std::get<0>(GetParam())), std::get<1>(GetParam()), sampleRate};
    }

    const FlushDenormals flush_;
};

std::string nameOf(const testing::TestParamInfo<Way>& info) {
    const auto [set, calls] = info.param;
    return std::string(set == InstructionSet::baseline ? "Baseline" : "AVX2") +
           (calls == Calls::apart ? "ChannelByChannel" : "InPairs");
}

INSTANTIATE_TEST_SUITE_P(AllWays, CompressorIdentity,
                         testing::Combine(testing::Values(InstructionSet::baseline,
                                                          InstructionSet::avx2),
                                          testing::Values(Calls::apart, Calls::together)),
                         nameOf);

TEST_P(CompressorIdentity, HoldsForEveryNamedPresetAtManyRates) {
    for (const NamedCompressorPreset& named : CompressorPreset::allPresets()) {
        for (const double each : {8000.0, 16000.0, 44100.0, 48000.0, 96000.0, 192000.0}) {
            auto both = twins(each);
            both.apply(named.preset);
            ASSERT_TRUE(both.agreeOn(swells(6000, 1), swells(6000, 2), 512))
                << named.name << " at " << each;
        }
    }
}

TEST_P(CompressorIdentity, HoldsAtEveryBlockSize) {
    std::vector<std::size_t> sizes{255, 256, 257, 479, 480, 481, 1024, 4095, 4096};
    for (std::size_t size = 1; size <= 70; ++size)
        sizes.push_back(size);
    for (const auto* const preset : {&CompressorPreset::broadcast, &CompressorPreset::cinema}) {
        for (const std::size_t size : sizes) {
            auto both = twins();
            both.apply(*preset);
            const std::size_t length = std::max<std::size_t>(3 * size, 1200);
            ASSERT_TRUE(both.agreeOn(swells(length, 3), swells(length, 4), size)) << size;
        }
    }
}

TEST_P(CompressorIdentity, HoldsForRandomSettingsAndCuts) {
    std::mt19937 random(17);
    for (int round = 0; round < 150; ++round) {
        auto both = twins(round % 2 == 0 ? rate : 44100.0);
        both.apply(reference::randomPreset(random));
        for (int block = 0; block < 8; ++block) {
            const std::size_t count = 1 + random() % (block % 2 == 0 ? 40 : 900);
            const auto seed = static_cast<unsigned>(random());
            ASSERT_TRUE(both.agreeOn(swells(count, seed), swells(count, seed + 1)))
                << "round " << round << ", block " << block;
        }
    }
}

TEST_P(CompressorIdentity, HoldsWhileSettingsChangeBetweenBlocks) {
    std::mt19937 random(23);
    auto both = twins();
    for (int block = 0; block < 400; ++block) {
        if (block % 3 == 0)
            both.setBand(block % 5 - 1, reference::randomBand(random));
        if (block % 41 == 0)
            both.apply(reference::randomPreset(random));
        const std::size_t count = 1 + random() % 600;
        const auto seed = static_cast<unsigned>(random());
        ASSERT_TRUE(both.agreeOn(swells(count, seed), swells(count, seed + 1))) << block;
    }
}

TEST_P(CompressorIdentity, HoldsForAllSubsetsOfActiveBandsDetectorsAndLookAheads) {
    for (unsigned active = 0; active < 8; ++active) {
        for (unsigned kinds = 0; kinds < 64; kinds += 3) {
            CompressorPreset preset = CompressorPreset::podcast;
            for (unsigned band = 0; band < 3; ++band) {
                CompressorBandSettings& set = preset.bands[band];
                // 1.05 is neither off nor compressing.
                if ((active >> band & 1U) == 0)
                    set.ratio = band == 1 ? 1.05F : 1.0F;
                if ((kinds >> band & 1U) != 0)
                    set.detectionMode = DetectionMode::rms;
                if ((kinds >> (band + 3) & 1U) != 0)
                    set.lookaheadMs = 1.0F + 4.0F * static_cast<float>(band);
            }
            auto both = twins();
            both.apply(preset);
            ASSERT_TRUE(both.agreeOn(swells(1500, active), swells(1500, kinds), 233))
                << active << ' ' << kinds;
        }
    }
}

TEST_P(CompressorIdentity, HoldsWhereOneChannelIsSilentOrIdle) {
    auto both = twins();
    both.apply(CompressorPreset::vocal);
    EXPECT_TRUE(both.agreeOn(swells(4000), std::vector<float>(4000, 0.0F), 256));
    EXPECT_TRUE(both.agreeOn(noise(4000, 1e-4F), swells(4000), 256));
    EXPECT_TRUE(both.agreeOn(noise(4000, 1e-6F), noise(4000, 1e-9F), 256));
}

TEST_P(CompressorIdentity, HoldsForThresholdsBelowSilenceAndFarAboveEverything) {
    for (const float threshold :
         {-1e30F, -300.0F, -199.0F, -121.5F, -121.0F, -118.5F, -118.0F, 60.0F, 400.0F, 1e30F}) {
        CompressorPreset preset = CompressorPreset::vocal;
        for (CompressorBandSettings& band : preset.bands)
            band.threshold = threshold;
        preset.bands[1].detectionMode = DetectionMode::rms;
        auto both = twins();
        both.apply(preset);
        ASSERT_TRUE(both.agreeOn(swells(2000, 5), swells(2000, 6), 128)) << threshold;
        ASSERT_TRUE(both.agreeOn(std::vector<float>(200, 0.0F), noise(200, 1e6F), 64)) << threshold;
    }
}

TEST_P(CompressorIdentity, HoldsForSquaresHugeSamplesAndPoison) {
    std::mt19937 random(31);
    const float infinity = std::numeric_limits<float>::infinity();
    for (const auto* const preset :
         {&CompressorPreset::broadcast, &CompressorPreset::cinema, &CompressorPreset::nightMode}) {
        for (const float odd :
             {1.0F, 1e10F, 1e18F, 1e30F, 3e38F, infinity, -infinity, std::nanf("")}) {
            auto both = twins();
            both.apply(*preset);
            for (int block = 0; block < 30; ++block) {
                auto left = swells(300, static_cast<unsigned>(block));
                auto right = left;
                if (block % 5 == 1) {
                    left[random() % left.size()] = odd;
                    for (std::size_t k = 0; k < right.size() && std::isfinite(odd); ++k)
                        right[k] = k / 50 % 2 == 0 ? odd : -odd;
                }
                if (block == 7)
                    left.back() = odd;
                ASSERT_TRUE(both.agreeOn(left, right)) << odd << " in block " << block;
            }
        }
    }
}

TEST_P(CompressorIdentity, HoldsForSubnormalSignalsAfterLoudOnes) {
    auto both = twins();
    both.apply(CompressorPreset::cinema);
    EXPECT_TRUE(both.agreeOn(swells(500, 1), swells(500, 2), 100));
    EXPECT_TRUE(both.agreeOn(noise(2000, 1e-39F, 1), noise(2000, 1e-39F, 2), 500));
}

TEST(CompressorIdentityUnflushed, HoldsForSubnormalSignals) {
    for (const auto set : {InstructionSet::baseline, InstructionSet::avx2}) {
        if (kernelsFor(set) == nullptr)
            continue;
        Twins both(*kernelsFor(set), Calls::together);
        both.apply(CompressorPreset::cinema);
        EXPECT_TRUE(both.agreeOn(swells(500, 1), swells(500, 2), 100));
        EXPECT_TRUE(both.agreeOn(noise(2000, 1e-39F, 1), noise(2000, 1e-39F, 2), 500));
    }
}

TEST_P(CompressorIdentity, HoldsForTheSplitAlone) {
    const CompressorKernels& kernels = kernelsFor(std::get<0>(GetParam()))->compressor;
    const bool inPairs = std::get<1>(GetParam()) == Calls::together;
    for (const double each : {8000.0, 48000.0, 192000.0}) {
        Reference plain(each, 2, maxBufferSize);
        const Crossover crossover = crossoverAt(each);
        CrossoverState states[2];
        std::mt19937 random(5);
        for (int block = 0; block < 60; ++block) {
            const std::size_t count = 1 + random() % (block % 2 == 0 ? 12 : 700);
            const std::vector<float> input[2] = {swells(count, static_cast<unsigned>(block)),
                                                 swells(count, static_cast<unsigned>(block + 99))};
            std::vector<std::vector<float>> memory(
                6, std::vector<float>(count + 2 * kBandSignalMargin));
            BandSignals bands[2];
            for (std::size_t k = 0; k < 6; ++k)
                bands[k / 3].band[k % 3] = memory[k].data() + kBandSignalMargin;
            if (inPairs) {
                kernels.splitPair(input[0].data(), input[1].data(), count, crossover, states[0],
                                  states[1], bands[0], bands[1]);
            } else {
                kernels.split(input[0].data(), count, crossover, states[0], bands[0]);
                kernels.split(input[1].data(), count, crossover, states[1], bands[1]);
            }
            for (std::size_t channel = 0; channel < 2; ++channel) {
                const auto expected = plain.splitOf(input[channel], channel);
                for (std::size_t band = 0; band < 3; ++band) {
                    ASSERT_EQ(std::memcmp(bands[channel].band[band], expected[band].data(),
                                          count * sizeof(float)),
                              0)
                        << count << " samples at " << each << ", band " << band;
                }
                const auto& past = plain.channel(channel);
                for (std::size_t k = 0; k < 4; ++k) {
                    const SectionState& low = states[channel].lowPass[k / 2][k % 2];
                    const SectionState& high = states[channel].highPass[k / 2][k % 2];
                    ASSERT_EQ(std::memcmp(&low, &past.lowPass[k / 2][k % 2], sizeof low), 0);
                    ASSERT_EQ(std::memcmp(&high, &past.highPass[k / 2][k % 2], sizeof high), 0);
                }
            }
        }
    }
}

TEST(CompressorIdentityOfChannels, HoldsForAsManyAsThereAreInAnyOrder) {
    for (const std::size_t channels : {1U, 2U, 3U, 8U}) {
        CompressorProcessor fast(rate, channels, maxBufferSize);
        Reference plain(rate, channels, maxBufferSize);
        fast.apply(CompressorPreset::cinema);
        plain.apply(CompressorPreset::cinema);
        std::mt19937 random(7);
        for (int block = 0; block < 200; ++block) {
            const std::size_t channel = random() % (channels + 1);
            auto samples = swells(1 + random() % 300, static_cast<unsigned>(block));
            auto expected = samples;
            auto other = swells(samples.size(), static_cast<unsigned>(block + 1));
            auto otherExpected = other;
            plain.process(expected.data(), expected.size(), channel);
            if (channel == 0 && block % 2 == 0) {
                fast.processPair(samples.data(), other.data(), samples.size());
                plain.process(otherExpected.data(), other.size(), 1);
            } else {
                fast.process(samples.data(), samples.size(), channel);
            }
            ASSERT_TRUE(sameBits(samples, expected)) << channels << ' ' << block;
            ASSERT_TRUE(sameBits(other, otherExpected)) << channels << ' ' << block;
            ASSERT_EQ(fast.gainReduction(), plain.gainReduction);
        }
    }
}

} // namespace
} // namespace orvanta
