// What holds for any settings, any signal and any rate.

#include "tests/core/dsp/CompressorRuns.h"
#include "tests/support/reference/CompressorMaterial.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <random>

namespace orvanta {
namespace {

using reference::noise;
using reference::swells;
using test::processed;
using test::processedInAnyBlocks;
using test::rate;
using test::Reductions;

RC_GTEST_PROP(CompressorProcessor, GivesTheSameSamplesHoweverTheSignalIsCutIntoBlocks, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const CompressorPreset preset = reference::randomPreset(random);
    const auto input = swells(3000, static_cast<unsigned>(random()));
    CompressorProcessor whole(rate, 1, 4096);
    CompressorProcessor cut(rate, 1, 4096);
    whole.apply(preset);
    cut.apply(preset);
    const auto expected = processed(whole, input);
    const auto output = processedInAnyBlocks(cut, input, 699);
    RC_ASSERT(output == expected);
}

RC_GTEST_PROP(CompressorProcessor, ResetEqualsAFreshInstance, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const CompressorPreset preset = reference::randomPreset(random);
    CompressorProcessor used(rate, 2, 4096);
    CompressorProcessor fresh(44100.0, 2, 4096);
    used.apply(reference::randomPreset(random));
    auto left = swells(2000, static_cast<unsigned>(random()));
    auto right = swells(2000, static_cast<unsigned>(random()));
    used.processPair(left.data(), right.data(), left.size());
    used.updateSampleRate(44100.0);
    used.apply(preset);
    fresh.apply(preset);
    RC_ASSERT(used.gainReduction() == Reductions{});
    for (const std::size_t channel : {1U, 0U}) {
        const auto input = swells(2000, static_cast<unsigned>(random()));
        RC_ASSERT(processed(used, input, channel) == processed(fresh, input, channel));
    }
    RC_ASSERT(used.gainReduction() == fresh.gainReduction());
}

/// The split cannot lift anything by more than about 25 times, and compression only lowers.
RC_GTEST_PROP(CompressorProcessor, StaysBoundedAtAllRatesAndSettings, ()) {
    std::mt19937 random(*rc::gen::arbitrary<unsigned>());
    const double sampleRate = *rc::gen::element(8000.0, 11025.0, 16000.0, 22050.0, 32000.0, 44100.0,
                                                48000.0, 88200.0, 96000.0, 176400.0, 192000.0);
    CompressorPreset preset = reference::randomPreset(random);
    preset.bands[1].ratio += 0.1F;
    CompressorProcessor compressor(sampleRate, 1, 4096);
    compressor.apply(preset);
    float makeup = 1.0F;
    for (const CompressorBandSettings& band : preset.bands)
        makeup = std::max(makeup, compressorBandOf(band, sampleRate).makeup);
    const bool isSquare = *rc::gen::arbitrary<bool>();
    for (int block = 0; block < 20; ++block) {
        auto samples = noise(1024, 1.0F, static_cast<unsigned>(random()));
        for (std::size_t k = 0; k < samples.size() && isSquare; ++k)
            samples[k] = k / 91 % 2 == 0 ? 1.0F : -1.0F;
        for (const float sample : processed(compressor, samples))
            RC_ASSERT(std::fabs(sample) < 25.0F * makeup);
    }
    for (const float reduction : compressor.gainReduction())
        RC_ASSERT(reduction >= 0.0F && reduction < 200.0F);
}

} // namespace
} // namespace orvanta
