#include "platform/embedded/sounds/Combinations.h"

#include "platform/embedded/sounds/BasicSounds.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace orvanta::embedded {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr double kSampleRate = 1000;

/// The first frames of a sound, in blocks of an awkward size.
std::vector<float> firstFrames(const Sound& sound, std::size_t frames) {
    constexpr std::size_t kBlock = 300;
    const auto source = sound();
    const std::size_t channels = source->channels();
    std::vector<float> all(frames * channels);
    for (std::size_t done = 0; done < frames; done += kBlock) {
        const std::size_t count = std::min(kBlock, frames - done);
        source->render(std::span(all).subspan(done * channels, count * channels), kSampleRate);
    }
    return all;
}

TEST(Turns, BeginAfterATimeAndThenComeBack) {
    constexpr Turns kTurns{.before = 2, .on = 3, .off = 4};
    std::string seconds;
    for (int second = 0; second < 14; ++second)
        seconds += kTurns.isOn(second) ? 'x' : '-';
    EXPECT_EQ(seconds, "--xxx----xxx--");
}

TEST(Turns, MayHaveBegunEarlier) {
    constexpr Turns kTurns{.before = -2, .on = 3, .off = 4};
    EXPECT_TRUE(kTurns.isOn(0));
    EXPECT_FALSE(kTurns.isOn(1));
    EXPECT_TRUE(kTurns.isOn(5));
}

TEST(Turns, DoNotEndWithoutARest) {
    EXPECT_TRUE(Turns{}.isOn(0));
    EXPECT_TRUE(Turns{}.isOn(1e6));
}

TEST(Combinations, AScaledSoundIsTheSoundTimesItsGain) {
    EXPECT_THAT(firstFrames(scaled(constant({0.5F, -0.25F}), 0.5F), 2),
                ElementsAre(0.25F, -0.125F, 0.25F, -0.125F));
}

TEST(Combinations, AMixtureHasOneChannelOnBothSidesAndTheFirstTwoOfMore) {
    const Sound mixture = mixtureOf(
        {constant(0.5F), constant({0.1F, 0.2F}), Sound(), constant({0.01F, 0.02F, 7.0F})});
    const auto played = firstFrames(mixture, 700);
    ASSERT_EQ(played.size(), 1400U);
    for (std::size_t index = 0; index < played.size(); index += 2) {
        ASSERT_FLOAT_EQ(played[index], 0.61F);
        ASSERT_FLOAT_EQ(played[index + 1], 0.72F);
    }
}

TEST(Combinations, OfSilenceComesSilence) {
    EXPECT_FALSE(scaled(Sound(), 2));
    EXPECT_FALSE(inTurns(Sound(), {}));
    EXPECT_THAT(firstFrames(mixtureOf({Sound()}), 500), Each(0.0F));
    EXPECT_THAT(firstFrames(mixtureOf({}), 500), Each(0.0F));
}

TEST(Combinations, AMixtureGoesOnFromBlockToBlock) {
    const auto played = firstFrames(mixtureOf({counting(1)}), 600);
    for (std::size_t frame = 0; frame < 600; ++frame)
        ASSERT_EQ(played[frame * 2 + 1], static_cast<float>(frame));
}

TEST(Combinations, ASoundInTurnsFadesAndStandsStillMeanwhile) {
    const Sound steps = inTurns(counting(1), {.before = 0.5, .on = 1, .off = 1});
    const auto played = firstFrames(steps, 4000);
    EXPECT_THAT(std::vector(played.begin(), played.begin() + 499), Each(0.0F));
    // Ten time constants after a turn has come nothing is left of the fade.
    EXPECT_NEAR(played[1400], 900, 1);
    EXPECT_GT(played[1505], 0) << "the end is no edge";
    EXPECT_THAT(std::vector(played.begin() + 1700, played.begin() + 2499), Each(0.0F));
    EXPECT_LT(played[2900], 900 + 1000 + 100);
    EXPECT_NEAR(played[3400] - played[2900], 500, 1);
    EXPECT_NEAR(played[2900], 1000 + 400, 150) << "goes on where it has stopped";
}

TEST(Combinations, TurnsLeaveTheChannelsAlone) {
    EXPECT_EQ(inTurns(constant({0.1F, 0.2F}), {})()->channels(), 2U);
}

} // namespace
} // namespace orvanta::embedded
