#include "bench/compare/OurProcessors.h"

#include "bench/compare/PlanarContender.h"
#include "core/dsp/CrossfeedProcessor.h"
#include "core/dsp/EQProcessor.h"
#include "core/dsp/LimiterProcessor.h"
#include "core/dsp/NormalizationProcessor.h"

#include <fmt/format.h>

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

} // namespace

std::vector<OurContender> ourEQs(std::span<const EQBandSetting> bands) {
    return forEachSet(
        [bands](const Kernels& kernels) { return std::make_unique<OurEQ>(bands, kernels); });
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

} // namespace orvanta::compare
