#include "app/popover/CompressorField.h"
#include "app/popover/EQPresetGroup.h"
#include "app/popover/EQResponseLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace orvanta {
namespace {

using testing::ElementsAre;

EQPreset oneBand(std::size_t band, float gain) {
    EQPreset preset;
    preset.gains.at(band) = gain;
    return preset;
}

TEST(EQResponseLine, SweepsTheAudibleRangeLogarithmically) {
    EXPECT_DOUBLE_EQ(eqResponseLine::frequencyAt(0.0), 20.0);
    EXPECT_NEAR(eqResponseLine::frequencyAt(0.5), 632.4555, 1e-3);
    EXPECT_NEAR(eqResponseLine::frequencyAt(1.0), 20000.0, 1e-6);
}

TEST(EQResponseLine, ReachesAPeaksGainAtItsFrequency) {
    for (std::size_t band = 1; band < 9; ++band) {
        const auto frequency = static_cast<double>(kEQFrequencies.at(band));
        EXPECT_NEAR(eqResponseLine::responseDB(oneBand(band, 7.5F), frequency), 7.5, 1e-9);
        EXPECT_NEAR(eqResponseLine::responseDB(oneBand(band, -12.0F), frequency), -12.0, 1e-9);
    }
}

TEST(EQResponseLine, ReachesAShelfsGainAtItsEndAndHalfOfItAtItsCorner) {
    EXPECT_NEAR(eqResponseLine::responseDB(oneBand(0, 6.0F), 1e-3), 6.0, 1e-6);
    EXPECT_NEAR(eqResponseLine::responseDB(oneBand(0, 6.0F), 31.0), 3.0, 1e-3);
    EXPECT_NEAR(eqResponseLine::responseDB(oneBand(0, 6.0F), 20000.0), 0.0, 1e-3);
    EXPECT_NEAR(eqResponseLine::responseDB(oneBand(9, 6.0F), 24000.0), 6.0, 1e-6);
    EXPECT_NEAR(eqResponseLine::responseDB(oneBand(9, 6.0F), 16000.0), 3.0, 1e-3);
    EXPECT_NEAR(eqResponseLine::responseDB(oneBand(9, 6.0F), 20.0), 0.0, 1e-3);
}

TEST(EQResponseLine, IsTheSumOfItsBands) {
    EQPreset both = oneBand(3, 5.0F);
    both.gains[4] = -3.0F;
    for (const double frequency : {100.0, 300.0, 400.0, 1000.0}) {
        EXPECT_NEAR(eqResponseLine::responseDB(both, frequency),
                    eqResponseLine::responseDB(oneBand(3, 5.0F), frequency) +
                        eqResponseLine::responseDB(oneBand(4, -3.0F), frequency),
                    1e-12);
    }
}

TEST(EQResponseLine, LeavesBandsOutThatAreNearlyFlat) {
    EXPECT_EQ(eqResponseLine::responseDB(oneBand(4, 0.05F), 500.0), 0.0);
    EXPECT_EQ(eqResponseLine::responseDB(oneBand(4, -0.05F), 500.0), 0.0);
    EXPECT_NE(eqResponseLine::responseDB(oneBand(4, 0.06F), 500.0), 0.0);
}

TEST(EQResponseLine, RunsThroughTheMiddleWhenFlat) {
    EXPECT_THAT(eqResponseLine::heights(EQPreset{}, 3, 96.0), ElementsAre(48.0, 48.0, 48.0, 48.0));
}

TEST(EQResponseLine, HasAPointForEachWholeXAndSpansTwelveDecibels) {
    const auto line = eqResponseLine::heights(oneBand(5, 12.0F), 300, 96.0);
    ASSERT_EQ(line.size(), 301U);
    const auto at = static_cast<std::size_t>(std::lround(300.0 * std::log10(1000.0 / 20.0) / 3.0));
    EXPECT_NEAR(line[at], 0.0, 0.1) << "full gain touches the upper edge";
    EXPECT_EQ(eqResponseLine::heights(EQPreset{}, 0, 10.0).size(), 1U);
}

TEST(EQPresetGroups, HoldEveryNamedPresetOnceInOrder) {
    std::vector<std::string_view> names;
    for (const EQPresetGroup& group : kEQPresetGroups) {
        for (const NamedEQPreset& named : group.presets())
            names.push_back(named.name);
    }
    std::vector<std::string_view> all;
    for (const NamedEQPreset& named : EQPreset::allNamedPresets())
        all.push_back(named.name);
    EXPECT_EQ(names, all);
}

TEST(EQPresetGroups, AreHeadedByWhatTheyAreFor) {
    EXPECT_EQ(kEQPresetGroups[0].heading, "Genre");
    EXPECT_EQ(kEQPresetGroups[0].presets().size(), 7U);
    EXPECT_EQ(kEQPresetGroups[1].heading, "Context");
    EXPECT_EQ(kEQPresetGroups[1].presets().front().name, "Late Night");
    EXPECT_EQ(kEQPresetGroups[1].presets().back().name, "Headphones");
    EXPECT_EQ(kEQPresetGroups[2].heading, "Voice & Utility");
    EXPECT_EQ(kEQPresetGroups[2].presets().front().name, "Podcast");
    EXPECT_EQ(kEQPresetGroups[2].presets().back().name, "Bass Boost");
}

TEST(CompressorFields, SayWhereTheirSlidersMayStand) {
    const auto& [threshold, ratio, makeup] = kCompressorFields;
    EXPECT_EQ(threshold.label, "Thresh");
    EXPECT_EQ(threshold.minimum, -60.0F);
    EXPECT_EQ(threshold.maximum, 0.0F);
    EXPECT_EQ(threshold.step, 1.0F);
    EXPECT_EQ(ratio.label, "Ratio");
    EXPECT_EQ(ratio.minimum, 1.0F);
    EXPECT_EQ(ratio.maximum, 20.0F);
    EXPECT_EQ(ratio.step, 0.5F);
    EXPECT_EQ(makeup.label, "Makeup");
    EXPECT_EQ(makeup.minimum, 0.0F);
    EXPECT_EQ(makeup.maximum, 24.0F);
    EXPECT_EQ(makeup.step, 0.5F);
}

TEST(CompressorFields, WriteTheirValues) {
    const auto& [threshold, ratio, makeup] = kCompressorFields;
    EXPECT_EQ(threshold.readOut(-14.0F), "-14 dB");
    EXPECT_EQ(threshold.readOut(-0.4F), "-0 dB");
    EXPECT_EQ(threshold.accessibleValue(-14.0F), "-14 dB");
    EXPECT_EQ(threshold.accessibleLabel(), "Thresh compressor");
    EXPECT_EQ(ratio.readOut(1.5F), "2:1");
    EXPECT_EQ(ratio.accessibleValue(4.0F), "4 to 1");
    EXPECT_EQ(makeup.readOut(1.0F), "+1 dB");
}

TEST(CompressorFields, ReadAndWriteTheirOwnPlaceInABand) {
    CompressorBandSettings band{.threshold = -20.0F, .ratio = 3.0F, .makeupGain = 5.0F};
    const auto& [threshold, ratio, makeup] = kCompressorFields;
    EXPECT_EQ(threshold.valueIn(band), -20.0F);
    EXPECT_EQ(ratio.valueIn(band), 3.0F);
    EXPECT_EQ(makeup.valueIn(band), 5.0F);
    threshold.setValueIn(band, -1.0F);
    ratio.setValueIn(band, 2.0F);
    makeup.setValueIn(band, 3.0F);
    EXPECT_EQ(band,
              (CompressorBandSettings{.threshold = -1.0F, .ratio = 2.0F, .makeupGain = 3.0F}));
}

TEST(CompressorFields, FillTheirBarsUpToTwentyFourDecibels) {
    EXPECT_EQ(reductionShare(0.0F), 0.0);
    EXPECT_EQ(reductionShare(6.0F), 0.25);
    EXPECT_EQ(reductionShare(24.0F), 1.0);
    EXPECT_EQ(reductionShare(60.0F), 1.0);
    EXPECT_EQ(reductionShare(-3.0F), 0.0);
    EXPECT_EQ(reductionShare(std::numeric_limits<float>::quiet_NaN()), 0.0);
}

TEST(CompressorPresetName, IsThatOfTheNamedOneOrCustom) {
    for (const NamedCompressorPreset& named : CompressorPreset::allPresets())
        EXPECT_EQ(compressorPresetName(named.preset), named.name);
    CompressorPreset changed = CompressorPreset::music;
    changed.bands[1].ratio += 0.5F;
    EXPECT_EQ(compressorPresetName(changed), "Custom");
    EXPECT_EQ(compressorPresetName(CompressorPreset{}), "Custom");
}

} // namespace
} // namespace orvanta
