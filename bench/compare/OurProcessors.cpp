#include "bench/compare/OurProcessors.h"

#include "bench/FullChainTap.h"
#include "bench/compare/PlanarContender.h"
#include "core/dsp/CompressorProcessor.h"
#include "core/dsp/CrossfeedProcessor.h"
#include "core/dsp/EQProcessor.h"
#include "core/dsp/LimiterProcessor.h"
#include "core/dsp/NormalizationProcessor.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace orvanta::compare {
namespace {

constexpr std::size_t kChannels = 2;

std::vector<OurContender>
forEachSet(const std::function<std::unique_ptr<Contender>(const Kernels&)>& make) {
    std::vector<OurContender> ours;
    const auto add = [&](InstructionSet set, const char* name) {
        if (const Kernels* const kernels = kernelsFor(set))
            ours.push_back(
                {fmt::format("ours, {}", name), [make, kernels](std::size_t /*maxFrames*/) {
                     return make(*kernels);
                 }});
    };
    add(InstructionSet::avx2, "AVX2");
    add(InstructionSet::baseline, "baseline");
    return ours;
}

class OurEQ final : public PlanarContender {
public:
    OurEQ(std::span<const EQBandSetting> bands, const Kernels& kernels)
        : eq_(kSampleRate, kChannels, kernels) {
        for (const EQBandSetting& band : bands)
            for (std::size_t index = 0; index < kTenBands.size(); ++index)
                if (kTenBands[index].frequency == band.frequency)
                    eq_.setGain(static_cast<int>(index), static_cast<float>(band.gainDB));
    }

    void run(std::size_t frames) noexcept override {
        eq_.processPair(input().left, input().right, frames);
    }

private:
    EQProcessor eq_;
};

class OurCompressor final : public PlanarContender {
public:
    explicit OurCompressor(const Kernels& kernels)
        : compressor_(kSampleRate, kChannels, kMaxFrames, kernels) {
        compressor_.apply(compression());
    }

    void run(std::size_t frames) noexcept override {
        compressor_.processPair(input().left, input().right, frames);
    }

private:
    CompressorProcessor compressor_;
};

class OurLimiter final : public PlanarContender {
public:
    OurLimiter(double ceilingDB, const Kernels& kernels)
        : limiter_(kSampleRate, kChannels, kernels) {
        limiter_.setCeiling(static_cast<float>(ceilingDB));
    }

    void run(std::size_t frames) noexcept override {
        limiter_.processPair(input().left, input().right, frames);
    }

private:
    LimiterProcessor limiter_;
};

class OurCrossfeed final : public PlanarContender {
public:
    explicit OurCrossfeed(const Kernels& kernels) : crossfeed_(kSampleRate, kernels) {
        crossfeed_.setAmount(static_cast<float>(kCrossfeedAmount));
    }

    void run(std::size_t frames) noexcept override {
        crossfeed_.processPlanar(input().left, input().right, frames);
    }

private:
    CrossfeedProcessor crossfeed_;
};

class OurNormalization final : public PlanarContender {
public:
    explicit OurNormalization(const Kernels& kernels) : normalization_(kSampleRate, kernels) {}

    void run(std::size_t frames) noexcept override {
        normalization_.processPair(input().left, input().right, frames);
    }

    /// What it corrects by tells what it has measured, but for the standard's offset.
    [[nodiscard]] std::optional<double> loudness() const override {
        constexpr double offset = -0.691;
        return static_cast<double>(normalization_.targetLUFS()) -
               decibels(static_cast<double>(normalization_.targetGainLinear())) + offset;
    }

private:
    NormalizationProcessor normalization_;
};

class OurChain final : public PlanarContender {
public:
    explicit OurChain(const Kernels& kernels) : tap_(kernels) {}

    void run(std::size_t frames) noexcept override {
        const auto bytes = static_cast<std::uint32_t>(frames * sizeof(float));
        std::array<AudioBuffer, kChannels> inputs = {
            {{1, bytes, input().left}, {1, bytes, input().right}}};
        std::array<AudioBuffer, kChannels> outputs = {
            {{1, bytes, output_.left.data()}, {1, bytes, output_.right.data()}}};
        AudioBufferList output{outputs};
        tap_.render(AudioBufferList{inputs}, output);
    }

    [[nodiscard]] const StereoBlock& output() const noexcept override { return output_; }

    [[nodiscard]] Finding atWork() const {
        const TapState& state = tap_.state();
        const float loudness = state.normalizer.get()->currentGainDB();
        const auto compression = state.compressor.get()->gainReduction();
        const float limiting = state.limiter.get()->gainReductionDB();
        const bool isGood = std::fabs(loudness) > 0.5F &&
                            *std::min_element(compression.begin(), compression.end()) > 0.5F &&
                            limiting > 0.1F && state.gateOpen.load();
        return {isGood, fmt::format("loudness {:+.1f} dB, compressor -{:.1f} dB, limiter -{:.1f} "
                                    "dB, gate {}",
                                    loudness, fmt::join(compression, " -"), limiting,
                                    state.gateOpen.load() ? "open" : "closed")};
    }

private:
    bench::FullChainTap tap_;
    StereoBlock output_;
};

} // namespace

std::vector<OurContender> ourEQs(std::span<const EQBandSetting> bands) {
    return forEachSet(
        [bands](const Kernels& kernels) { return std::make_unique<OurEQ>(bands, kernels); });
}

std::vector<OurContender> ourCompressors() {
    return forEachSet(
        [](const Kernels& kernels) { return std::make_unique<OurCompressor>(kernels); });
}

std::vector<OurContender> ourLimiters(double ceilingDB) {
    return forEachSet([ceilingDB](const Kernels& kernels) {
        return std::make_unique<OurLimiter>(ceilingDB, kernels);
    });
}

std::vector<OurContender> ourCrossfeeds() {
    return forEachSet(
        [](const Kernels& kernels) { return std::make_unique<OurCrossfeed>(kernels); });
}

std::vector<OurContender> ourNormalizations() {
    return forEachSet(
        [](const Kernels& kernels) { return std::make_unique<OurNormalization>(kernels); });
}

std::vector<OurContender> ourChains() {
    return forEachSet([](const Kernels& kernels) { return std::make_unique<OurChain>(kernels); });
}

Check everyStageIsAtWork() {
    return [](const ContenderFactory& make, std::size_t blockFrames) {
        constexpr std::size_t frames = 240000;
        const auto chain = make(blockFrames);
        (void)processed(*chain, music(frames, ratioOf(kMusicDB)), blockFrames);
        return dynamic_cast<const OurChain&>(*chain).atWork();
    };
}

} // namespace orvanta::compare
