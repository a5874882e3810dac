#include "platform/embedded/sounds/BasicSounds.h"
#include "platform/embedded/sounds/GameLike.h"
#include "platform/embedded/sounds/MusicLike.h"
#include "platform/embedded/sounds/SpeechLike.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace orvanta::embedded {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr double kRate = 48000;

/// So many frames, rendered in blocks of this size.
std::vector<float> render(const Sound& sound, std::size_t frames, std::size_t block = 480,
                          double sampleRate = kRate) {
    const auto source = sound();
    const std::size_t channels = source->channels();
    std::vector<float> all(frames * channels);
    for (std::size_t done = 0; done < frames; done += block) {
        const std::size_t count = std::min(block, frames - done);
        source->render(std::span(all).subspan(done * channels, count * channels), sampleRate);
    }
    return all;
}

double rms(std::span<const float> samples) {
    double sum = 0;
    for (const float sample : samples)
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

float peak(std::span<const float> samples) {
    float largest = 0;
    for (const float sample : samples)
        largest = std::max(largest, std::abs(sample));
    return largest;
}

TEST(Sounds, AToneHasItsPitchAndHeight) {
    const auto samples = render(tone(1000, 0.25F), 48);
    EXPECT_EQ(samples[0], 0.0F);
    EXPECT_NEAR(samples[12], 0.25, 1e-6);
    EXPECT_NEAR(samples[36], -0.25, 1e-6);
    EXPECT_NEAR(render(tone(1000, 0.25F), 12, 480, 24000)[6], 0.25, 1e-6);
}

TEST(Sounds, AStereoToneHasAPitchForEachEar) {
    const auto samples = render(stereoTone(1000, 2000, 1), 13);
    EXPECT_NEAR(samples[24], 1, 1e-6);
    EXPECT_NEAR(samples[25], 0, 1e-6);
}

TEST(Sounds, NoiseIsWhatItsSeedSays) {
    EXPECT_EQ(render(noise(5), 1000), render(noise(5), 1000));
    EXPECT_NE(render(noise(5), 1000), render(noise(6), 1000));
    const auto samples = render(noise(5, 0.5F), 48000);
    EXPECT_LE(peak(samples), 0.5F);
    EXPECT_NEAR(rms(samples), 0.5 / std::sqrt(3.0), 0.01);
}

TEST(Sounds, BurstsSoundAndRest) {
    const auto samples = render(bursts(1000, 0.01, 0.02), 48000 / 10);
    for (std::size_t burst = 0; burst < 3; ++burst) {
        const auto period = std::span(samples).subspan(burst * 1440, 1440);
        EXPECT_NEAR(rms(period.first(480)), 0.5 / std::sqrt(2.0), 1e-3);
        EXPECT_EQ(peak(period.subspan(480)), 0.0F);
    }
}

TEST(Sounds, CountingCounts) {
    EXPECT_THAT(render(counting(1), 5, 2), ElementsAre(0, 1, 2, 3, 4));
}

TEST(Sounds, SamplesAreTheSamples) {
    const std::vector<float> list{1, 2, 3};
    EXPECT_THAT(render(samples(list), 5, 2), ElementsAre(1, 2, 3, 0, 0));
    EXPECT_THAT(render(samples(list, 1, AtEnd::startAgain), 5, 2), ElementsAre(1, 2, 3, 1, 2));
    EXPECT_THAT(render(samples(list, 2, AtEnd::startAgain), 2), ElementsAre(1, 2, 1, 2));
    EXPECT_THAT(render(samples({}, 0, AtEnd::startAgain), 2), Each(0.0F));
}

TEST(Sounds, ConstantsHoldPerChannel) {
    EXPECT_THAT(render(constant({0.5F, -0.5F}), 2), ElementsAre(0.5F, -0.5F, 0.5F, -0.5F));
    EXPECT_THAT(render(constant(std::vector<float>{}), 2), ElementsAre(0, 0));
    EXPECT_THAT(render(silence(), 2), ElementsAre(0, 0));
}

/// Speech, music and a game, by seed.
struct Material {
    Sound (*make)(std::uint32_t seed);
    std::uint32_t channels;
};

class LifelikeSounds : public testing::TestWithParam<Material> {};

TEST_P(LifelikeSounds, AreTheSameForTheSameSeedInBlocksOfAnySize) {
    const auto reference = render(GetParam().make(3), 48000, 480);
    EXPECT_THAT(render(GetParam().make(3), 48000, 64), ElementsAreArray(reference));
    EXPECT_NE(render(GetParam().make(4), 48000, 480), reference);
}

TEST_P(LifelikeSounds, AreLoudEnoughAndNeverFullScale) {
    for (std::uint32_t seed = 0; seed < 6; ++seed) {
        for (const double rate : {8000.0, 44100.0, 96000.0}) {
            const auto sound = GetParam().make(seed);
            ASSERT_EQ(sound()->channels(), GetParam().channels);
            const auto played = render(sound, static_cast<std::size_t>(rate) * 4, 512, rate);
            EXPECT_TRUE(std::all_of(played.begin(), played.end(),
                                    [](float sample) { return std::isfinite(sample); }));
            EXPECT_LT(peak(played), 1.0F) << "seed " << seed << " at " << rate;
            EXPECT_GT(rms(played), 0.02) << "seed " << seed << " at " << rate;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, LifelikeSounds,
                         testing::Values(Material{speechLike, 1}, Material{musicLike, 2},
                                         Material{gameLike, 2}));

TEST(SpeechLike, PausesForBreath) {
    const auto played = render(speechLike(1), 48000 * 10);
    std::size_t silentBlocks = 0;
    for (std::size_t block = 0; block + 4800 <= played.size(); block += 4800)
        silentBlocks += peak(std::span(played).subspan(block, 4800)) < 1e-3F ? 1U : 0U;
    EXPECT_GT(silentBlocks, 5U);
    EXPECT_LT(silentBlocks, 60U);
}

TEST(MusicLike, IsStereo) {
    const auto played = render(musicLike(1), 48000 * 4);
    double difference = 0;
    for (std::size_t index = 0; index < played.size(); index += 2)
        difference =
            std::max(difference, static_cast<double>(std::abs(played[index] - played[index + 1])));
    EXPECT_GT(difference, 0.01);
}

} // namespace
} // namespace orvanta::embedded
