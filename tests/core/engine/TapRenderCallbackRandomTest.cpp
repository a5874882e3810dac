// The render callback against a naive one of the same steps, and against every shape of buffers.

#include "tests/support/NaiveRender.h"
#include "tests/support/RenderRig.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <random>

namespace orvanta::test {
namespace {

class Dice {
public:
    explicit Dice(unsigned seed) : random_(seed) {}

    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

    bool oneIn(int chances) { return upTo(chances - 1) == 0; }

    float between(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random_);
    }

    /// Mostly audio, at times silence or a whisper, so that meters, bypass and gate all move.
    std::vector<float> block(std::size_t count) {
        const float amplitude = oneIn(3) ? 0.0F : (oneIn(3) ? 0.0001F : between(0.0F, 2.5F));
        std::vector<float> samples(count);
        for (float& sample : samples)
            sample = amplitude == 0.0F ? 0.0F : between(-amplitude, amplitude);
        return samples;
    }

private:
    std::mt19937 random_;
};

/// The same buffers in both forms.
struct BothForms {
    Buffers real;
    std::vector<NaiveBuffer> naive;

    void add(std::uint32_t channels, const std::vector<float>& samples) {
        real.add(channels, samples);
        naive.push_back({channels, static_cast<std::uint32_t>(samples.size() * 4), samples});
    }

    void addNull(std::uint32_t channels, std::uint32_t bytes) {
        real.addNull(channels, bytes);
        naive.push_back({channels, bytes, std::nullopt});
    }
};

void addSide(BothForms& side, Dice& dice) {
    const int count = dice.upTo(3);
    const auto samples = static_cast<std::size_t>(dice.oneIn(4) ? dice.upTo(6000) : 512);
    for (int index = 0; index < count; ++index) {
        const auto channels = static_cast<std::uint32_t>(1 + dice.upTo(2));
        const auto own = dice.oneIn(3) ? static_cast<std::size_t>(dice.upTo(700)) : samples;
        if (dice.oneIn(8))
            side.addNull(channels, static_cast<std::uint32_t>(own * 4));
        else
            side.add(channels, dice.block(own));
    }
}

CompressorPreset anyCompressor(Dice& dice) {
    const auto presets = CompressorPreset::allPresets();
    CompressorPreset preset =
        presets[static_cast<std::size_t>(dice.upTo(static_cast<int>(presets.size()) - 1))].preset;
    if (dice.oneIn(2))
        preset.bands[static_cast<std::size_t>(dice.upTo(2))].ratio = dice.between(1.0F, 4.0F);
    return preset;
}

void changeProcessors(TapState& state, NaiveRender& naive, Dice& dice) {
    naive.normalizationEnabled = dice.oneIn(2);
    state.normalizationEnabled.store(naive.normalizationEnabled);
    naive.stereoWidth = dice.oneIn(3) ? 1.0F : dice.between(0.0F, 2.5F);
    state.stereoWidth.store(naive.stereoWidth);
    naive.crossfeed.amount = dice.oneIn(3) ? 0.0F : dice.between(0.0F, 1.0F);
    state.crossfeed.get()->setAmount(naive.crossfeed.amount);
    const int band = dice.upTo(kEQBandCount - 1);
    const float gain = dice.oneIn(3) ? 0.0F : dice.between(-12.0F, 12.0F);
    naive.equaliser.setGain(static_cast<std::size_t>(band), gain);
    state.eqProcessor.get()->setGain(band, gain);
    const CompressorPreset preset = anyCompressor(dice);
    naive.compressor.apply(preset);
    state.compressor.get()->apply(preset);
}

void changeSettings(RenderRig& rig, NaiveRender& naive, Dice& dice) {
    TapState& state = rig.state();
    naive.volume = dice.oneIn(3) ? 1.0F : dice.between(0.0F, 2.0F);
    naive.isMuted = dice.oneIn(5);
    naive.balance = dice.oneIn(3) ? 0.0F : dice.between(-1.0F, 1.0F);
    naive.limiterEnabled = dice.oneIn(2);
    naive.gateEnabled = !dice.oneIn(3);
    naive.gateThreshold = dice.between(0.0F, 0.1F);
    state.volume.store(naive.volume);
    state.isMuted.store(naive.isMuted);
    state.balance.store(naive.balance);
    state.limiterEnabled.store(naive.limiterEnabled);
    state.noiseGateEnabled.store(naive.gateEnabled);
    state.noiseGateThresholdLinear.store(naive.gateThreshold);
    changeProcessors(state, naive, dice);
}

void expectSame(RenderRig& rig, const NaiveRender& naive, BothForms& out) {
    for (std::size_t index = 0; index < out.naive.size(); ++index) {
        if (!out.naive[index].samples)
            continue;
        const auto& expected = *out.naive[index].samples;
        for (std::size_t k = 0; k < expected.size(); ++k)
            ASSERT_EQ(out.real[index][k], expected[k]) << "buffer " << index << " sample " << k;
    }
    const TapState& state = rig.state();
    ASSERT_EQ(state.peakLevel.load(), naive.peakLevel);
    ASSERT_NEAR(state.rmsLevel.load(), naive.rmsLevel, 1e-6F * (1.0F + naive.rmsLevel));
    ASSERT_EQ(state.callbackCount.load(), naive.callbackCount);
    ASSERT_EQ(state.silentCallbackCount.load(), naive.silentCallbackCount);
    ASSERT_EQ(state.gateOpen.load(), naive.gateOpen);
    ASSERT_EQ(state.gateSilentCount.load(), naive.gateSilentCount);
    ASSERT_EQ(state.gateFadeGain.load(), naive.gateFadeGain);
    ASSERT_EQ(state.diagInPeak.load(), naive.inPeak);
    ASSERT_EQ(state.diagInBufCount.load(), naive.inBuffers);
    ASSERT_EQ(state.diagInBufBytes.load(), naive.inBytes);
    ASSERT_EQ(state.diagCopyCount.load(), naive.pairs);
    ASSERT_EQ(state.diagInBufSamples.load(), naive.inSamples);
    ASSERT_EQ(state.diagOutBufSamples.load(), naive.outSamples);
    ASSERT_EQ(state.limiter.get()->gainReductionDB(), naive.limiter.gainReductionDB);
    ASSERT_EQ(state.normalizer.get()->currentGainDB(), naive.normalizer.currentGainDB);
    ASSERT_EQ(state.compressor.get()->gainReduction(), naive.compressor.gainReduction);
}

class TapRenderCallbackRandom : public testing::TestWithParam<unsigned> {};

TEST_P(TapRenderCallbackRandom, EqualsTheNaiveRenderingSampleForSample) {
    Dice dice(GetParam());
    RenderRig rig;
    NaiveRender naive;
    rig.makeEveryProcessor();
    for (int cycle = 0; cycle < 400; ++cycle) {
        SCOPED_TRACE(testing::Message() << "seed " << GetParam() << " cycle " << cycle);
        if (dice.oneIn(10))
            changeSettings(rig, naive, dice);
        BothForms in;
        BothForms out;
        addSide(in, dice);
        addSide(out, dice);
        rig.render(in.real, out.real);
        naive.render(in.naive, out.naive);
        expectSame(rig, naive, out);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, TapRenderCallbackRandom, testing::Range(1U, 25U));

// ---- every layout

/// A buffer's shape: channels, samples, or no memory at all.
struct Shape {
    std::uint32_t channels;
    std::size_t samples;
    bool isNull;
};

const std::vector<Shape>& shapes() {
    static const std::vector<Shape> all{{1, 64, false}, {2, 64, false}, {3, 65, false},
                                        {1, 0, false},  {0, 31, false}, {2, 64, true}};
    return all;
}

/// Every list of 0 to 3 buffers of these shapes.
std::vector<std::vector<Shape>> sides() {
    std::vector<std::vector<Shape>> all{{}};
    for (std::size_t from = 0, length = 1; length <= 3; ++length) {
        const std::size_t to = all.size();
        for (; from < to; ++from)
            for (const Shape& shape : shapes()) {
                auto longer = all[from];
                longer.push_back(shape);
                all.push_back(longer);
            }
    }
    return all;
}

void add(Buffers& buffers, const std::vector<Shape>& side) {
    for (const Shape& shape : side) {
        if (shape.isNull)
            buffers.addNull(shape.channels, static_cast<std::uint32_t>(shape.samples * 4));
        else
            buffers.add(shape.channels, std::vector<float>(shape.samples, 0.5F));
    }
}

TEST(TapRenderCallbackLayouts, EveryCombinationOfBuffersIsRenderedWithoutStrayingBeyondThem) {
    RenderRig rig;
    rig.makeEveryProcessor();
    rig.state().limiterEnabled.store(true);
    rig.state().normalizationEnabled.store(true);
    rig.state().eqProcessor.get()->apply(EQPreset::podcast);
    rig.state().compressor.get()->apply(CompressorPreset::nightMode);
    rig.state().crossfeed.get()->setAmount(0.5F);
    rig.state().stereoWidth.store(1.5F);
    rig.state().volume.store(1.5F);
    rig.state().balance.store(0.5F);
    rig.state().noiseGateEnabled.store(true);
    rig.state().noiseGateThresholdLinear.store(10.0F);
    std::uint64_t rendered = 0;
    for (const auto& inSide : sides())
        for (const auto& outSide : sides()) {
            Buffers in;
            Buffers out;
            add(in, inSide);
            add(out, outSide);
            ASSERT_EQ(rig.render(in, out), noErr);
            ++rendered;
            for (std::size_t spare = std::min(in.count(), out.count()); spare < out.count();
                 ++spare)
                for (const float sample : out[spare])
                    ASSERT_EQ(sample, 0.0F);
        }
    EXPECT_EQ(rendered, 259U * 259U);
    EXPECT_EQ(rig.state().callbackCount.load(), rendered);
}

TEST(TapRenderCallbackLayouts, ByteCountsThatAreNoWholeSamplesStayInBounds) {
    RenderRig rig;
    rig.state().volume.store(0.5F);
    Buffers in;
    Buffers out;
    in.add(1, std::vector<float>(4, 1.0F));
    out.add(2, std::vector<float>(4, 7.0F));
    std::memset(&in[0][3], 0x11, sizeof(float));
    std::memset(&out[0][3], 0x22, sizeof(float));
    in.header(0).mDataByteSize = 15;
    out.header(0).mDataByteSize = 13;
    rig.render(in, out);
    EXPECT_EQ(out[0][2], 0.5F);
    const std::array<unsigned char, 4> tail{0x11, 0x22, 0x22, 0x22};
    EXPECT_EQ(std::memcmp(&out[0][3], tail.data(), tail.size()), 0) << "one odd byte, as it came";
    EXPECT_EQ(rig.state().diagOutBufSamples.load(), 3);
}

} // namespace
} // namespace orvanta::test
