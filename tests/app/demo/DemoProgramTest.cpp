#include "app/demo/DemoProgram.h"

#include "app/drawing/Symbols.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace orvanta::demo {
namespace {

TEST(DemoPrograms, DifferInAllThatTellsThemApart) {
    const auto programs = demoPrograms();
    ASSERT_EQ(programs.size(), 6U);
    std::set<std::int32_t> pids;
    std::set<std::string> names;
    std::set<std::string> bundles;
    for (const DemoProgram& program : programs) {
        pids.insert(program.pid);
        names.insert(program.name);
        bundles.insert(program.bundleIdentifier);
        EXPECT_TRUE(program.bundleIdentifier.starts_with("com.meridane.orvanta.demo."));
        EXPECT_NE(glyphOf(program.tile.symbol), "") << program.tile.symbol;
    }
    EXPECT_EQ(pids.size(), 6U);
    EXPECT_EQ(names.size(), 6U);
    EXPECT_EQ(bundles.size(), 6U);
}

struct Loudness {
    double peak = 0;           ///< dBFS, of the whole
    double quietestPeak = 0;   ///< dBFS, of the quietest five seconds
    double rootMeanSquare = 0; ///< dBFS
};

double decibels(double value) {
    return 20 * std::log10(std::max(value, 1e-6));
}

/// Of the first minute.
Loudness loudnessOf(const embedded::Sound& sound) {
    constexpr int kRate = 48000;
    constexpr int kPassages = 12;
    const auto source = sound();
    std::vector<float> passage(static_cast<std::size_t>(kRate) * 60 / kPassages *
                               source->channels());
    float highest = 0;
    float lowest = 1e6F;
    double sum = 0;
    for (int index = 0; index < kPassages; ++index) {
        source->render(passage, kRate);
        float peak = 0;
        for (const float sample : passage) {
            // Not a maximum of NaN, which would be no number or any.
            EXPECT_TRUE(std::isfinite(sample));
            peak = std::max(peak, std::abs(sample));
            sum += static_cast<double>(sample) * static_cast<double>(sample);
        }
        highest = std::max(highest, peak);
        lowest = std::min(lowest, peak);
    }
    return {.peak = decibels(static_cast<double>(highest)),
            .quietestPeak = decibels(static_cast<double>(lowest)),
            .rootMeanSquare =
                decibels(std::sqrt(sum / static_cast<double>(passage.size() * kPassages)))};
}

TEST(DemoPrograms, PlayAtLevelsThatMetersShowWell) {
    for (const DemoProgram& program : demoPrograms()) {
        const Loudness loudness = loudnessOf(program.sound);
        EXPECT_LT(loudness.peak, -3) << program.name;
        EXPECT_GT(loudness.peak, -12) << program.name;
        EXPECT_GT(loudness.quietestPeak, -15) << program.name;
        EXPECT_LT(loudness.rootMeanSquare, -14) << program.name;
        EXPECT_GT(loudness.rootMeanSquare, -28) << program.name;
    }
}

} // namespace
} // namespace orvanta::demo
