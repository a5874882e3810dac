// The places of the processors in the render callback: their order, when each is passed over, and
// that two buffers side by side come out as if they had gone one after the other.

#include "core/dsp/FlushDenormals.h"
#include "core/dsp/StereoWidener.h"
#include "tests/support/RenderRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace orvanta::test {
namespace {

using testing::Each;

using Samples = std::vector<float>;

constexpr double rate = RenderRig::rate;

Samples noise(std::size_t count, float amplitude, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> value(-amplitude, amplitude);
    Samples samples(count);
    for (float& sample : samples)
        sample = value(random);
    return samples;
}

/// One callback with one buffer a channel; answers the outputs.
std::pair<Samples, Samples> renderPlanar(RenderRig& rig, const Samples& left,
                                         const Samples& right) {
    Buffers input;
    Buffers output;
    input.add(1, left).add(1, right);
    output.add(1, Samples(left.size())).add(1, Samples(right.size()));
    rig.render(input, output);
    return {output[0], output[1]};
}

/// One callback with one buffer of two channels.
Samples renderInterleaved(RenderRig& rig, const Samples& frames) {
    Buffers input;
    Buffers output;
    input.add(2, frames);
    output.add(2, Samples(frames.size()));
    rig.render(input, output);
    return output[0];
}

EQPreset allBandsAt(float gain) {
    EQPreset preset;
    preset.gains.fill(gain);
    return preset;
}

void enableEQ(RenderRig& rig, float gain) {
    auto made = std::make_unique<EQProcessor>(rate, 2);
    made->apply(allBandsAt(gain));
    rig.state().eqProcessor.replace(std::move(made));
}

void enableCompressor(RenderRig& rig, const CompressorPreset& preset) {
    auto made = std::make_unique<CompressorProcessor>(rate, 2, 4096);
    made->apply(preset);
    rig.state().compressor.replace(std::move(made));
}

void enableNormaliser(RenderRig& rig) {
    rig.state().normalizer.replace(std::make_unique<NormalizationProcessor>(rate));
    rig.state().normalizationEnabled.store(true);
}

void enableCrossfeed(RenderRig& rig, float amount) {
    auto made = std::make_unique<CrossfeedProcessor>(rate);
    made->setAmount(amount);
    rig.state().crossfeed.replace(std::move(made));
}

void enableEverything(RenderRig& rig) {
    enableNormaliser(rig);
    rig.state().volume.store(1.7F);
    enableEQ(rig, 3.0F);
    enableCompressor(rig, CompressorPreset::nightMode);
    rig.enableLimiter();
    rig.state().balance.store(0.25F);
    rig.state().stereoWidth.store(1.5F);
    enableCrossfeed(rig, 0.4F);
}

TEST(RenderChain, GoesNormalisationVolumeEqualiserCompressorLimiterBalanceWidthCrossfeed) {
    RenderRig rig;
    enableEverything(rig);
    NormalizationProcessor normalizer(rate);
    EQProcessor equaliser(rate, 2);
    equaliser.apply(allBandsAt(3.0F));
    CompressorProcessor compressor(rate, 2, 4096);
    compressor.apply(CompressorPreset::nightMode);
    LimiterProcessor limiter(rate, 2);
    CrossfeedProcessor crossfeed(rate);
    crossfeed.setAmount(0.4F);

    for (unsigned cycle = 0; cycle < 120; ++cycle) {
        Samples left = noise(480, 0.9F, 2 * cycle);
        Samples right = noise(480, 0.9F, 2 * cycle + 1);
        const auto [outLeft, outRight] = renderPlanar(rig, left, right);
        const FlushDenormals flush;
        std::size_t channel = 0;
        for (Samples* const samples : {&left, &right}) {
            normalizer.process(samples->data(), samples->size(), channel);
            for (float& sample : *samples)
                sample *= 1.7F;
            equaliser.process(samples->data(), samples->size(), channel);
            compressor.process(samples->data(), samples->size(), channel);
            limiter.process(samples->data(), samples->size(), channel);
            if (channel == 0)
                for (float& sample : *samples)
                    sample *= 0.75F;
            ++channel;
        }
        StereoWidener::processPlanar(left.data(), right.data(), left.size(), 1.5F);
        crossfeed.processPlanar(left.data(), right.data(), left.size());
        ASSERT_EQ(outLeft, left) << "cycle " << cycle;
        ASSERT_EQ(outRight, right) << "cycle " << cycle;
    }
    EXPECT_EQ(rig.state().compressor.get()->gainReduction(), compressor.gainReduction());
    EXPECT_EQ(rig.state().limiter.get()->gainReductionDB(), limiter.gainReductionDB());
    EXPECT_EQ(rig.state().normalizer.get()->currentGainDB(), normalizer.currentGainDB());
}

/// What an equaliser with all bands at 6 dB makes of samples on a channel that has heard nothing.
Samples equalised(Samples samples) {
    const FlushDenormals flush;
    EQProcessor equaliser(rate, 1);
    equaliser.apply(allBandsAt(6.0F));
    equaliser.process(samples.data(), samples.size(), 0);
    return samples;
}

TEST(RenderChain, AnInputThatLiesWhereTheFirstOutputIsWrittenHearsTheFirstChannelsResult) {
    RenderRig rig;
    enableEQ(rig, 6.0F);
    const Samples left = noise(64, 0.9F, 1);
    Buffers input;
    Buffers output;
    input.add(1, left).add(1, noise(64, 0.9F, 2));
    output.add(1, Samples(64)).add(1, Samples(64));
    input.header(1).mData = output[0].data();
    rig.render(input, output);
    EXPECT_EQ(output[0], equalised(left));
    EXPECT_EQ(output[1], equalised(equalised(left)));
}

TEST(RenderChain, OutputsInTheSamePlaceGoOneAfterTheOther) {
    RenderRig rig;
    enableEQ(rig, 6.0F);
    const Samples right = noise(64, 0.9F, 2);
    Buffers input;
    Buffers output;
    input.add(1, noise(64, 0.9F, 1)).add(1, right);
    output.add(1, Samples(64)).add(1, Samples(64));
    output.header(1).mData = output[0].data();
    rig.render(input, output);
    EXPECT_EQ(output[0], equalised(right)) << "the second is what stays";
}

TEST(RenderChain, AnOutputThatLiesWhereTheFirstInputWasReadChangesNothing) {
    RenderRig rig;
    enableEQ(rig, 6.0F);
    const Samples left = noise(64, 0.9F, 1);
    const Samples right = noise(64, 0.9F, 2);
    Buffers input;
    Buffers output;
    input.add(1, left).add(1, right);
    output.add(1, Samples(64)).add(1, Samples(64));
    output.header(1).mData = input[0].data();
    rig.render(input, output);
    EXPECT_EQ(output[0], equalised(left));
    EXPECT_EQ(input[0], equalised(right));
}

TEST(RenderChain, OfPlanarBlocksOfFiveThousandTheEqualiserTakes4096AndTheCompressorNone) {
    RenderRig rig;
    enableEQ(rig, 6.0F);
    enableCompressor(rig, CompressorPreset::broadcast);
    const Samples left = noise(5000, 0.5F, 1);
    const Samples right = noise(5000, 0.5F, 2);
    const auto [outLeft, outRight] = renderPlanar(rig, left, right);
    EXPECT_EQ(outLeft, equalised(left));
    EXPECT_EQ(outRight, equalised(right));
    EXPECT_EQ(Samples(outLeft.begin() + 4096, outLeft.end()),
              Samples(left.begin() + 4096, left.end()));
}

TEST(RenderChain, InterleavedStereoIsOneStreamOnTheFirstChannelForTheProcessors) {
    RenderRig rig;
    enableEQ(rig, 6.0F);
    enableCompressor(rig, CompressorPreset::broadcast);
    EQProcessor equaliser(rate, 2);
    equaliser.apply(allBandsAt(6.0F));
    CompressorProcessor compressor(rate, 2, 4096);
    compressor.apply(CompressorPreset::broadcast);
    for (unsigned cycle = 0; cycle < 10; ++cycle) {
        Samples frames = noise(512, 0.5F, cycle);
        const Samples output = renderInterleaved(rig, frames);
        const FlushDenormals flush;
        equaliser.process(frames.data(), frames.size(), 0);
        compressor.process(frames.data(), frames.size(), 0);
        ASSERT_EQ(output, frames);
    }
}

TEST(RenderChain, EqualiserRunsForTenSilentCallbacksAndAgainOneAfterTheFirstAudibleOne) {
    // A muted tap is silent for its meters, and its equaliser rings out unheard.
    for (int silentCallbacks = 9; silentCallbacks < 14; ++silentCallbacks) {
        SCOPED_TRACE(silentCallbacks);
        RenderRig rig;
        enableEQ(rig, 12.0F);
        EQProcessor equaliser(rate, 2);
        equaliser.apply(allBandsAt(12.0F));
        const FlushDenormals flush;
        rig.state().isMuted.store(true);
        for (int cycle = 0; cycle < silentCallbacks; ++cycle)
            ASSERT_THAT(rig.render(Samples(64, 0.5F)), Each(0.0F));
        rig.state().isMuted.store(false);
        const Samples loud(64, 0.1F);
        if (silentCallbacks >= 10) {
            EXPECT_EQ(rig.render(loud), loud) << "audible again, still passed over";
        }
        Samples expected = loud;
        equaliser.process(expected.data(), expected.size(), 0);
        EXPECT_EQ(rig.render(loud), expected);
    }
}

TEST(RenderChain, FilterMemoriesHoldStillWhileSilenceBypassesTheChain) {
    RenderRig rig;
    enableEQ(rig, 12.0F);
    rig.render(noise(64, 0.5F));
    rig.state().volume.store(0.0F);
    // Ten more run on zeros, the others not at all.
    EQProcessor equaliser(rate, 2);
    equaliser.apply(allBandsAt(12.0F));
    const FlushDenormals flush;
    Samples before = noise(64, 0.5F);
    equaliser.process(before.data(), before.size(), 0);
    int run = 0;
    for (int cycle = 0; cycle < 400 && rig.state().silentCallbackCount.load() < 20; ++cycle) {
        const bool runs = rig.state().silentCallbackCount.load() < 10;
        rig.render(Samples(64, 0.5F));
        Samples zeros(64, 0.0F);
        if (runs) {
            equaliser.process(zeros.data(), zeros.size(), 0);
            ++run;
        }
    }
    EXPECT_GE(run, 10);
    EXPECT_EQ(rig.state().silentCallbackCount.load(), 20);
    rig.state().volume.store(1.0F);
    rig.render(Samples(64, 0.25F));
    Samples expected(64, 0.25F);
    equaliser.process(expected.data(), expected.size(), 0);
    EXPECT_EQ(rig.render(Samples(64, 0.25F)), expected);
}

TEST(RenderChain, NormalisationWidthAndCrossfeedArePassedOverInSilenceToo) {
    RenderRig rig;
    enableNormaliser(rig);
    enableCrossfeed(rig, 1.0F);
    rig.state().stereoWidth.store(2.0F);
    for (int cycle = 0; cycle < 200; ++cycle)
        renderPlanar(rig, Samples(480, 0.0F), Samples(480, 0.0F));
    EXPECT_EQ(rig.state().normalizer.get()->currentGainDB(), 0.0F)
        << "silence is not measured for long enough to raise anything";
    const auto [left, right] = renderPlanar(rig, Samples(480, 0.5F), Samples(480, -0.25F));
    EXPECT_THAT(left, Each(0.5F));
    EXPECT_THAT(right, Each(-0.25F));
    EXPECT_NE(renderPlanar(rig, Samples(480, 0.5F), Samples(480, -0.25F)).first, left);
}

TEST(RenderChain, WidthZeroGivesBothPlanarChannelsTheirMean) {
    RenderRig rig;
    rig.state().stereoWidth.store(0.0F);
    const auto [left, right] = renderPlanar(rig, Samples(64, 0.5F), Samples(64, -0.25F));
    EXPECT_THAT(left, Each(0.125F));
    EXPECT_THAT(right, Each(0.125F));
}

TEST(RenderChain, WidthZeroGivesBothInterleavedChannelsTheirMean) {
    RenderRig rig;
    rig.state().stereoWidth.store(0.0F);
    EXPECT_THAT(renderInterleaved(rig, {0.5F, -0.25F, 1.0F, 0.0F}),
                testing::ElementsAre(0.125F, 0.125F, 0.5F, 0.5F));
}

TEST(RenderChain, APairOfMoreThan8192SamplesIsNotWidened) {
    RenderRig rig;
    rig.state().stereoWidth.store(0.0F);
    EXPECT_THAT(renderPlanar(rig, Samples(8193, 0.5F), Samples(8193, 0.0F)).first, Each(0.5F));
    EXPECT_THAT(renderPlanar(rig, Samples(8192, 0.5F), Samples(8192, 0.0F)).first, Each(0.25F));
}

TEST(RenderChain, WidthReachesOnlyWhatBothPlanarChannelsHave) {
    RenderRig rig;
    rig.state().stereoWidth.store(0.0F);
    const auto [left, right] = renderPlanar(rig, Samples(8, 0.5F), Samples(4, 0.0F));
    EXPECT_EQ(left, (Samples{0.25F, 0.25F, 0.25F, 0.25F, 0.5F, 0.5F, 0.5F, 0.5F}));
    EXPECT_THAT(right, Each(0.25F));
}

TEST(RenderChain, ALoneMonoBufferHasNeitherWidthNorCrossfeed) {
    RenderRig rig;
    rig.state().stereoWidth.store(0.0F);
    enableCrossfeed(rig, 1.0F);
    EXPECT_THAT(rig.render(Samples(64, 0.5F)), Each(0.5F));
}

TEST(RenderChain, WidthComesBeforeCrossfeed) {
    RenderRig rig;
    rig.state().stereoWidth.store(0.0F);
    enableCrossfeed(rig, 1.0F);
    // The mean is scaled by the direct path of the crossfeed, whose cross signal is still silent.
    const auto [left, right] = renderPlanar(rig, Samples(8, 0.5F), Samples(8, 0.0F));
    EXPECT_THAT(left, Each(testing::FloatEq(0.25F / 1.5F)));
    EXPECT_THAT(right, Each(testing::FloatEq(0.25F / 1.5F)));
}

TEST(RenderChain, MoreThanTwoPlanarBuffersAreEachProcessed) {
    RenderRig rig;
    enableEQ(rig, 12.0F);
    Buffers input;
    Buffers output;
    for (int buffer = 0; buffer < 3; ++buffer) {
        input.add(1, Samples(64, 0.1F));
        output.add(1, Samples(64));
    }
    rig.render(input, output);
    EXPECT_NE(output[0], Samples(64, 0.1F));
    EXPECT_EQ(output[1], output[0]);
    EXPECT_THAT(output[2], Each(0.1F)) << "the equaliser was made for two channels";
}

/// Everything that meters show of the two.
void expectSameMeters(RenderRig& rig, RenderRig& other) {
    EXPECT_EQ(rig.state().peakLevel.load(), other.state().peakLevel.load());
    EXPECT_EQ(rig.state().rmsLevel.load(), other.state().rmsLevel.load());
    EXPECT_EQ(rig.state().limiter.get()->gainReductionDB(),
              other.state().limiter.get()->gainReductionDB());
    EXPECT_EQ(rig.state().normalizer.get()->currentGainDB(),
              other.state().normalizer.get()->currentGainDB());
    EXPECT_EQ(rig.state().compressor.get()->gainReduction(),
              other.state().compressor.get()->gainReduction());
}

TEST(RenderChain, SamplesThatAreNoNumbersDoWhatSilenceWouldHaveDone) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float poison : {std::numeric_limits<float>::quiet_NaN(), infinity, -infinity}) {
        SCOPED_TRACE(poison);
        RenderRig rig;
        RenderRig twin;
        enableEverything(rig);
        enableEverything(twin);
        for (unsigned cycle = 0; cycle < 200; ++cycle) {
            Samples left = noise(480, 0.4F, 2 * cycle);
            Samples right = noise(480, 0.4F, 2 * cycle + 1);
            Samples twinLeft = left;
            Samples twinRight = right;
            if (cycle % 20 < 4)
                for (std::size_t k = cycle % 3; k < left.size(); k += 3) {
                    left[k] = poison;
                    twinLeft[k] = 0.0F;
                    right[k] = -poison;
                    twinRight[k] = 0.0F;
                }
            ASSERT_EQ(renderPlanar(rig, left, right), renderPlanar(twin, twinLeft, twinRight));
        }
        expectSameMeters(rig, twin);
    }
}

TEST(RenderChain, HugeSamplesFadeAsEnvelopesAndWindowsDo) {
    for (const float huge : {1e30F, std::numeric_limits<float>::max(), 1e-39F, 1.0F}) {
        SCOPED_TRACE(huge);
        RenderRig rig;
        RenderRig twin;
        enableEverything(rig);
        enableEverything(twin);
        for (int cycle = 0; cycle < 4; ++cycle) {
            Samples squares(480, huge);
            for (std::size_t k = 0; k < squares.size(); k += 2)
                squares[k] = -huge;
            renderPlanar(rig, squares, squares);
            renderPlanar(twin, Samples(480), Samples(480));
        }
        // The slowest envelope, a squared one that has overflowed, takes 40 s to come down.
        std::pair<Samples, Samples> heard;
        std::pair<Samples, Samples> expected;
        for (unsigned cycle = 0; cycle < 6000; ++cycle) {
            const Samples left = noise(480, 0.1F, 2 * (cycle % 100));
            const Samples right = noise(480, 0.1F, 2 * (cycle % 100) + 1);
            heard = renderPlanar(rig, left, right);
            expected = renderPlanar(twin, left, right);
            for (const float sample : heard.first)
                ASSERT_TRUE(std::isfinite(sample));
        }
        // The windows of the loudness fall on other parts of the noise, so gains differ a little.
        for (std::size_t k = 0; k < heard.first.size(); ++k) {
            ASSERT_NEAR(heard.first[k], expected.first[k], 0.06F);
            ASSERT_NEAR(heard.second[k], expected.second[k], 0.06F);
        }
        EXPECT_NEAR(rig.state().normalizer.get()->currentGainDB(),
                    twin.state().normalizer.get()->currentGainDB(), 0.5F);
        EXPECT_NEAR(rig.state().limiter.get()->gainReductionDB(),
                    twin.state().limiter.get()->gainReductionDB(), 0.5F);
    }
}

} // namespace
} // namespace orvanta::test
