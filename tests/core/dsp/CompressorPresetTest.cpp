#include "core/dsp/CompressorPreset.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace orvanta {
namespace {

using coding::CodingError;
using coding::JSON;

CompressorPreset decoded(const std::string& text) {
    return JSON::parse(text).get<CompressorPreset>();
}

TEST(CompressorPreset, KnowsItsDetectionModesByTheirTextAndNoOthers) {
    EXPECT_EQ(rawValue(DetectionMode::peak), "peak");
    EXPECT_EQ(rawValue(DetectionMode::rms), "rms");
    EXPECT_EQ(detectionModeFrom("peak"), DetectionMode::peak);
    EXPECT_EQ(detectionModeFrom("rms"), DetectionMode::rms);
    for (const char* const other : {"", "RMS", "Peak", "peak ", "average"})
        EXPECT_EQ(detectionModeFrom(other), std::nullopt) << other;
}

TEST(CompressorPreset, BandSettingsDoNothingAtFirst) {
    const CompressorBandSettings settings;
    EXPECT_EQ(settings, CompressorPreset::off.bands[0]);
    EXPECT_EQ(settings.ratio, 1.0F);
}

TEST(CompressorPreset, OffersEightPresetsInOrder) {
    const std::vector<std::pair<std::string_view, const CompressorPreset*>> expected{
        {"Off", &CompressorPreset::off},
        {"Gentle", &CompressorPreset::gentle},
        {"Music", &CompressorPreset::music},
        {"Vocal", &CompressorPreset::vocal},
        {"Podcast", &CompressorPreset::podcast},
        {"Broadcast", &CompressorPreset::broadcast},
        {"Night Mode", &CompressorPreset::nightMode},
        {"Cinema", &CompressorPreset::cinema}};
    const auto presets = CompressorPreset::allPresets();
    ASSERT_EQ(presets.size(), expected.size());
    for (std::size_t k = 0; k < expected.size(); ++k) {
        EXPECT_EQ(presets[k].name, expected[k].first);
        EXPECT_EQ(presets[k].preset, *expected[k].second) << presets[k].name;
        EXPECT_EQ(presets[k].preset.bands.size(), 3U);
    }
}

TEST(CompressorPreset, OnlyThePresetNamedOffIsOff) {
    for (const NamedCompressorPreset& named : CompressorPreset::allPresets())
        EXPECT_EQ(named.preset.isOff(), named.name == "Off") << named.name;
}

/// The sums of all fields, so that no digit of the table can change unnoticed.
TEST(CompressorPreset, NamedPresetsHaveTheirValues) {
    constexpr auto peak = DetectionMode::peak;
    constexpr auto rms = DetectionMode::rms;
    const auto bandsOf = [](const CompressorPreset& preset) {
        return preset.bands;
    };
    using Bands = std::vector<CompressorBandSettings>;
    EXPECT_EQ(bandsOf(CompressorPreset::off), (Bands{{0, 1, 10, 100, 0, 0, peak, false},
                                                     {0, 1, 10, 100, 0, 0, peak, false},
                                                     {0, 1, 10, 100, 0, 0, peak, false}}));
    EXPECT_EQ(bandsOf(CompressorPreset::gentle), (Bands{{-10, 1.5F, 50, 300, 0, 0, peak, false},
                                                        {-8, 1.5F, 40, 250, 0, 0, peak, false},
                                                        {-10, 1.5F, 30, 200, 0, 0, peak, false}}));
    EXPECT_EQ(bandsOf(CompressorPreset::music), (Bands{{-14, 2, 40, 300, 1, 0, peak, false},
                                                       {-12, 1.8F, 30, 200, 1, 0, peak, false},
                                                       {-14, 1.5F, 20, 150, 0, 0, peak, false}}));
    EXPECT_EQ(bandsOf(CompressorPreset::vocal), (Bands{{-20, 2, 10, 150, 1, 0, peak, false},
                                                       {-16, 3.5F, 8, 120, 3, 0, peak, false},
                                                       {-18, 2, 5, 100, 1, 0, peak, false}}));
    EXPECT_EQ(bandsOf(CompressorPreset::podcast), (Bands{{-24, 2.5F, 15, 250, 2, 0, peak, false},
                                                         {-18, 4, 8, 150, 4, 0, peak, false},
                                                         {-22, 2.5F, 5, 120, 2, 0, peak, false}}));
    EXPECT_EQ(bandsOf(CompressorPreset::broadcast), (Bands{{-22, 4, 5, 100, 4, 0, peak, false},
                                                           {-14, 5, 3, 80, 5, 0, peak, false},
                                                           {-18, 3.5F, 3, 60, 3, 0, peak, false}}));
    EXPECT_EQ(bandsOf(CompressorPreset::nightMode), (Bands{{-18, 3, 30, 400, 0, 5, rms, true},
                                                           {-14, 3.5F, 20, 300, 0, 5, rms, true},
                                                           {-20, 2.5F, 15, 250, 0, 5, rms, true}}));
    EXPECT_EQ(bandsOf(CompressorPreset::cinema), (Bands{{-16, 2, 20, 300, 0, 3, peak, true},
                                                        {-14, 3, 15, 200, 0, 3, rms, true},
                                                        {-18, 2, 10, 200, 0, 3, peak, true}}));
}

TEST(CompressorPreset, ADetectionModeIsStoredAsItsText) {
    EXPECT_EQ(coding::JSON(DetectionMode::peak).dump(), "\"peak\"");
    EXPECT_EQ(coding::JSON(DetectionMode::rms).dump(), "\"rms\"");
    EXPECT_EQ(coding::JSON("rms").get<DetectionMode>(), DetectionMode::rms);
    EXPECT_THROW((void)coding::JSON("RMS").get<DetectionMode>(), coding::CodingError);
    EXPECT_THROW((void)coding::JSON(1).get<DetectionMode>(), coding::CodingError);
}

TEST(CompressorPreset, IsOffBelowARatioOf1Point05AndNotAtIt) {
    CompressorPreset preset = CompressorPreset::off;
    preset.bands[1].ratio = 1.0499F;
    EXPECT_TRUE(preset.isOff());
    preset.bands[1].ratio = 1.05F;
    EXPECT_FALSE(preset.isOff());
    EXPECT_TRUE(CompressorPreset{}.isOff());
}

TEST(CompressorPreset, IsEqualOnlyWithAllFieldsOfAllBandsEqual) {
    const CompressorPreset preset = CompressorPreset::vocal;
    EXPECT_EQ(preset, CompressorPreset::vocal);
    CompressorPreset other = preset;
    other.bands.pop_back();
    EXPECT_NE(other, preset);
    for (float CompressorBandSettings::*const field :
         {&CompressorBandSettings::threshold, &CompressorBandSettings::ratio,
          &CompressorBandSettings::attackMs, &CompressorBandSettings::releaseMs,
          &CompressorBandSettings::makeupGain, &CompressorBandSettings::lookaheadMs}) {
        other = preset;
        other.bands[2].*field = std::nextafter(other.bands[2].*field, 1e9F);
        EXPECT_NE(other, preset);
    }
    other = preset;
    other.bands[0].detectionMode = DetectionMode::rms;
    EXPECT_NE(other, preset);
    other = preset;
    other.bands[0].autoMakeup = true;
    EXPECT_NE(other, preset);
}

TEST(CompressorPreset, WritesAllEightKeysInOrder) {
    CompressorPreset preset;
    preset.bands = {CompressorPreset::cinema.bands[1], {}};
    EXPECT_EQ(JSON(preset).dump(),
              R"({"bands":[)"
              R"({"threshold":-14,"ratio":3,"attackMs":15,"releaseMs":200,"makeupGain":0,)"
              R"("lookaheadMs":3,"detectionMode":"rms","autoMakeup":true},)"
              R"({"threshold":0,"ratio":1,"attackMs":10,"releaseMs":100,"makeupGain":0,)"
              R"("lookaheadMs":0,"detectionMode":"peak","autoMakeup":false}]})");
    EXPECT_EQ(JSON(CompressorPreset{}).dump(), R"({"bands":[]})");
}

TEST(CompressorPreset, ReadsWhatWasStoredBeforeThereWereLookAheadDetectorAndAutomaticMakeup) {
    const CompressorPreset preset = decoded(
        R"({"bands":[{"threshold":-12.5,"ratio":2,"attackMs":1,"releaseMs":50,"makeupGain":3}]})");
    ASSERT_EQ(preset.bands.size(), 1U);
    const CompressorBandSettings expected{-12.5F, 2, 1, 50, 3, 0, DetectionMode::peak, false};
    EXPECT_EQ(preset.bands[0], expected);
}

TEST(CompressorPreset, KeepsAsManyBandsAsWereStored) {
    EXPECT_TRUE(decoded(R"({"bands":[]})").bands.empty());
    CompressorPreset five;
    five.bands.assign(5, CompressorPreset::music.bands[0]);
    EXPECT_EQ(JSON(five).get<CompressorPreset>(), five);
}

TEST(CompressorPreset, RefusesWhatLacksAKeyOrHasAnotherType) {
    const JSON whole = JSON(CompressorPreset::cinema);
    for (const char* const key : {"threshold", "ratio", "attackMs", "releaseMs", "makeupGain"}) {
        JSON lacking = whole;
        lacking["bands"][1].erase(key);
        EXPECT_THROW((void)lacking.get<CompressorPreset>(), CodingError) << key;
        JSON strange = whole;
        strange["bands"][1][key] = "3";
        EXPECT_THROW((void)strange.get<CompressorPreset>(), CodingError) << key;
    }
    for (const auto& [key, value] :
         std::vector<std::pair<const char*, JSON>>{{"lookaheadMs", "5"},
                                                   {"detectionMode", "loud"},
                                                   {"detectionMode", 1},
                                                   {"autoMakeup", 1}}) {
        JSON strange = whole;
        strange["bands"][2][key] = value;
        EXPECT_THROW((void)strange.get<CompressorPreset>(), CodingError) << key << value;
    }
    EXPECT_THROW((void)decoded(R"({})"), CodingError);
    EXPECT_THROW((void)decoded(R"({"bands":{}})"), CodingError);
    EXPECT_THROW((void)decoded(R"({"bands":[3]})"), CodingError);
    EXPECT_THROW((void)decoded(R"([])"), CodingError);
}

TEST(CompressorPreset, LeavesThePresetAloneThatItFailsToReadInto) {
    CompressorPreset preset = CompressorPreset::gentle;
    EXPECT_THROW(JSON::parse(R"({"bands":[{"ratio":2}]})").get_to(preset), CodingError);
    EXPECT_EQ(preset, CompressorPreset::gentle);
}

RC_GTEST_PROP(CompressorPreset, ReadsBackWhateverItWrites, ()) {
    const auto number = rc::gen::map(rc::gen::inRange(-1000000, 1000000), [](int thousandths) {
        return static_cast<float>(thousandths) / 1000.0F;
    });
    CompressorPreset preset;
    preset.bands.resize(*rc::gen::inRange<std::size_t>(0, 6));
    for (CompressorBandSettings& band : preset.bands) {
        band = {*number,
                *number,
                *number,
                *number,
                *number,
                *number,
                *rc::gen::element(DetectionMode::peak, DetectionMode::rms),
                *rc::gen::arbitrary<bool>()};
    }
    RC_ASSERT(JSON::parse(JSON(preset).dump()).get<CompressorPreset>() == preset);
}

} // namespace
} // namespace orvanta
