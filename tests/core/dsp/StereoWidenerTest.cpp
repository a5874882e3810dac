#include "core/dsp/StereoWidener.h"

#include "core/dsp/FlushDenormals.h"
#include "tests/core/dsp/LevelSignals.h"
#include "tests/support/reference/Stereo.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cfloat>

namespace orvanta {
namespace {

using test::bitsOf;
using test::blockLengths;
using test::everyKernels;
using test::randomBlockEnds;
using test::whiteNoise;

struct Stereo {
    std::vector<float> left;
    std::vector<float> right;

    static Stereo noise(std::size_t count, unsigned seed) {
        return {whiteNoise(count, 1.0F, seed), whiteNoise(count, 1.0F, seed + 1)};
    }

    bool operator==(const Stereo&) const = default;
};

Stereo widened(Stereo audio, float width, const Kernels& set = kernels()) {
    StereoWidener::processPlanar(audio.left.data(), audio.right.data(), audio.left.size(), width,
                                 set);
    return audio;
}

std::vector<float> interleaved(const Stereo& audio) {
    std::vector<float> frames;
    for (std::size_t k = 0; k < audio.left.size(); ++k)
        frames.insert(frames.end(), {audio.left[k], audio.right[k]});
    return frames;
}

void expectEqualToThePlainOne(const Stereo& audio, float width) {
    Stereo plain = audio;
    reference::widen(plain.left, plain.right, width);
    for (const Kernels* const set : everyKernels()) {
        const Stereo planar = widened(audio, width, *set);
        ASSERT_EQ(bitsOf(planar.left), bitsOf(plain.left)) << width;
        ASSERT_EQ(bitsOf(planar.right), bitsOf(plain.right)) << width;
        auto frames = interleaved(audio);
        StereoWidener::process(frames.data(), audio.left.size(), width, *set);
        ASSERT_EQ(bitsOf(frames), bitsOf(interleaved(plain))) << width;
    }
}

TEST(StereoWidener, RoundsEveryProductBeforeTheSum) {
    // A fused operation would keep in the sum what a product's rounding loses, on processors that
    // have one.
    const Stereo audio = Stereo::noise(500, 3);
    for (const Kernels* const set : everyKernels()) {
        const Stereo wide = widened(audio, 1.6F, *set);
        for (std::size_t k = 0; k < audio.left.size(); ++k) {
            const volatile float same = audio.left[k] * (0.5F + 1.6F * 0.5F);
            const volatile float cross = audio.right[k] * (0.5F - 1.6F * 0.5F);
            ASSERT_EQ(wide.left[k], cross + same) << k;
        }
    }
}

TEST(StereoWidener, ComputesTheBitsOfThePlainPassesInEveryInstructionSetAndBothLayouts) {
    for (const std::size_t length : blockLengths())
        for (const float width : {0.0F, 0.3F, 1.02F, 1.7F, 2.5F})
            ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(Stereo::noise(length, 3), width))
                << length;
}

TEST(StereoWidener, ComputesTheBitsOfThePlainPassesWhileDenormalsAreFlushed) {
    const FlushDenormals flushed;
    Stereo tiny = Stereo::noise(100, 4);
    for (std::size_t k = 0; k < 100; k += 3)
        tiny.left[k] = tiny.right[k / 2] = 1e-39F;
    ASSERT_NO_FATAL_FAILURE(expectEqualToThePlainOne(tiny, 0.5F));
}

TEST(StereoWidener, LeavesTheAudioAloneWithinAHundredthOfOne) {
    const Stereo audio = Stereo::noise(500, 1);
    for (const float width : {0.995F, 1.0F, 1.005F})
        EXPECT_EQ(widened(audio, width), audio) << width;
    for (const float width : {0.98F, 1.02F})
        EXPECT_NE(widened(audio, width), audio) << width;
}

TEST(StereoWidener, LeavesTheAudioAloneAtAWidthThatIsNoNumber) {
    const Stereo audio = Stereo::noise(500, 1);
    EXPECT_EQ(widened(audio, NAN), audio);
}

TEST(StereoWidener, MakesBothChannelsTheirMeanAtWidthZero) {
    const Stereo audio = Stereo::noise(500, 1);
    const Stereo mono = widened(audio, 0.0F);
    for (std::size_t k = 0; k < audio.left.size(); ++k) {
        ASSERT_EQ(mono.left[k], (audio.left[k] + audio.right[k]) / 2.0F);
        ASSERT_EQ(mono.right[k], mono.left[k]);
    }
}

TEST(StereoWidener, ScalesTheSideAndKeepsTheMiddle) {
    const Stereo audio = Stereo::noise(500, 1);
    for (const float width : {0.25F, 1.5F, 2.5F}) {
        const Stereo wide = widened(audio, width);
        for (std::size_t k = 0; k < audio.left.size(); ++k) {
            const float middle = (audio.left[k] + audio.right[k]) / 2.0F;
            const float side = (audio.left[k] - audio.right[k]) / 2.0F;
            ASSERT_NEAR(wide.left[k], middle + width * side, 1e-6F);
            ASSERT_NEAR(wide.right[k], middle - width * side, 1e-6F);
        }
    }
}

TEST(StereoWidener, GivesNoWidthToABlockOfMoreThan8192Frames) {
    const Stereo longest = Stereo::noise(8192, 1);
    const Stereo tooLong = Stereo::noise(8193, 1);
    for (const float width : {0.0F, 0.5F, 2.5F}) {
        EXPECT_NE(widened(longest, width), longest);
        EXPECT_EQ(widened(tooLong, width), tooLong);
        auto frames = interleaved(tooLong);
        StereoWidener::process(frames.data(), 8193, width);
        EXPECT_EQ(frames, interleaved(tooLong));
    }
}

TEST(StereoWidener, TouchesNothingWithoutFrames) {
    StereoWidener::processPlanar(nullptr, nullptr, 0, 2.0F);
    StereoWidener::process(nullptr, 0, 2.0F);
}

TEST(StereoWidener, SpoilsNoFrameButTheOneWithABadSample) {
    for (const float poison : {NAN, INFINITY, -INFINITY}) {
        const Stereo clean = Stereo::noise(100, 1);
        Stereo spoilt = clean;
        spoilt.right[41] = poison;
        const Stereo expected = widened(clean, 2.0F);
        const Stereo actual = widened(spoilt, 2.0F);
        for (std::size_t k = 0; k < 100; ++k) {
            if (k == 41)
                continue;
            ASSERT_EQ(actual.left[k], expected.left[k]);
            ASSERT_EQ(actual.right[k], expected.right[k]);
        }
    }
}

RC_GTEST_PROP(StereoWidenerProperty, MonoStaysAsLoudAsItIsUpToRounding, ()) {
    const float width = static_cast<float>(*rc::gen::inRange(0, 2501)) / 1000.0F;
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const auto mono = whiteNoise(300, 1.0F, seed);
    const Stereo wide = widened({mono, mono}, width);
    RC_ASSERT(wide.left == wide.right);
    for (std::size_t k = 0; k < mono.size(); ++k)
        RC_ASSERT(std::fabs(wide.left[k] - mono[k]) <= 2.5F * FLT_EPSILON * std::fabs(mono[k]));
}

RC_GTEST_PROP(StereoWidenerProperty, AnySplitIntoBlocksGivesTheSamplesOfOneBlock, ()) {
    const float width = static_cast<float>(*rc::gen::inRange(0, 2501)) / 1000.0F;
    const auto seed = *rc::gen::arbitrary<unsigned>();
    const Stereo audio = Stereo::noise(2000, seed);
    Stereo cut = audio;
    std::size_t begin = 0;
    for (const std::size_t end : randomBlockEnds(2000, 300, seed)) {
        StereoWidener::processPlanar(cut.left.data() + begin, cut.right.data() + begin, end - begin,
                                     width);
        begin = end;
    }
    RC_ASSERT(cut == widened(audio, width));
}

} // namespace
} // namespace orvanta
