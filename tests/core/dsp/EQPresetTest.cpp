#include "core/dsp/EQPreset.h"

#include "core/persistence/coding/JSONText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace orvanta {
namespace {

using coding::CodingError;
using coding::JSON;
using Gains = std::array<float, kEQBandCount>;

EQPreset presetOf(const std::vector<float>& gains) {
    return EQPreset(gains);
}

EQPreset decoded(const char* text) {
    return JSON::parse(text).get<EQPreset>();
}

TEST(EQPreset, IsFlatUnlessToldOtherwise) {
    EXPECT_EQ(EQPreset().gains, Gains{});
    EXPECT_TRUE(EQPreset().isFlat());
}

TEST(EQPreset, HasTenGainsHoweverManyItIsGiven) {
    EXPECT_EQ(presetOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}).gains,
              (Gains{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(presetOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}).gains,
              (Gains{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(presetOf({1, 2, 3, 4}).gains, (Gains{1, 2, 3, 4}));
    EXPECT_EQ(presetOf({}).gains, Gains{});
}

TEST(EQPreset, ThreeKnobsSetTheirOwnBandsAndNoOthers) {
    const EQPreset preset(3, -1, 2.5F);
    EXPECT_EQ(preset.gains, (Gains{0, 0, 0, 3, 0, -1, 0, 2.5F, 0, 0}));
}

TEST(EQPreset, KnobsAreViewsOnTheGains) {
    EQPreset preset = presetOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    EXPECT_EQ(preset.bassGain(), 4.0F);
    EXPECT_EQ(preset.midGain(), 6.0F);
    EXPECT_EQ(preset.trebleGain(), 8.0F);
    preset.setBassGain(-4);
    preset.setMidGain(-6);
    preset.setTrebleGain(-8);
    EXPECT_EQ(preset.gains, (Gains{1, 2, 3, -4, 5, -6, 7, -8, 9, 10}));
}

TEST(EQPreset, IsFlatOnlyBelowATwentiethOfADecibel) {
    for (std::size_t band = 0; band < kEQBandCount; ++band) {
        EQPreset preset;
        preset.gains[band] = std::nextafter(0.05F, 0.0F);
        EXPECT_TRUE(preset.isFlat());
        preset.gains[band] = 0.05F;
        EXPECT_FALSE(preset.isFlat());
        preset.gains[band] = -0.05F;
        EXPECT_FALSE(preset.isFlat());
    }
}

TEST(EQPreset, NamedPresetsStandInTheirOrderWithTheirIconsAndGains) {
    struct Row {
        std::string name;
        std::string icon;
        Gains gains;
    };

    const std::vector<Row> rows{
        {"Rock", "\xF0\x9F\x8E\xB8", {4, 3, 2, 0, -1, 1, 2, 4, 3, 2}},
        {"Pop", "\xF0\x9F\x8E\xA4", {-1, 0, 2, 3, 4, 3, 2, 1, 0, -1}},
        {"Jazz", "\xF0\x9F\x8E\xB7", {3, 2, 0, 1, -1, -1, 0, 1, 2, 3}},
        {"Classical", "\xF0\x9F\x8E\xBB", {3, 2, 0, 0, 0, 0, 0, 0, 2, 3}},
        {"Electronic", "\xF0\x9F\x8E\xB9", {5, 4, 2, 0, -2, 0, 1, 3, 4, 4}},
        {"Hip-Hop", "\xF0\x9F\x8E\xA7", {5, 5, 4, 2, 0, -1, -1, 1, 2, 1}},
        {"R&B", "\xF0\x9F\x8E\xB5", {4, 4, 3, 1, -1, 0, 1, 2, 2, 1}},
        {"Late Night", "\xF0\x9F\x8C\x99", {-6, -4, -2, 0, 1, 2, 2, 1, 0, -1}},
        {"Small Speakers", "\xF0\x9F\x94\x88", {5, 4, 3, 1, 0, 0, 0, 1, 2, 2}},
        {"Headphones", "\xF0\x9F\x8E\xA7", {2, 1, 0, -1, -1, 0, 1, 2, 2, 3}},
        {"Podcast", "\xF0\x9F\x8E\x99\xEF\xB8\x8F", {-4, -3, -2, 0, 2, 4, 4, 3, 1, -2}},
        {"Bass Boost", "\xF0\x9F\x92\xA5", {6, 5, 4, 2, 0, 0, 0, 0, 0, 0}},
    };
    const auto named = EQPreset::allNamedPresets();
    ASSERT_EQ(named.size(), rows.size());
    for (std::size_t k = 0; k < rows.size(); ++k) {
        EXPECT_EQ(named[k].name, rows[k].name);
        EXPECT_EQ(named[k].icon, rows[k].icon) << rows[k].name;
        EXPECT_EQ(named[k].preset.gains, rows[k].gains) << rows[k].name;
    }
}

TEST(EQPreset, EveryNamedPresetIsFoundByItsGains) {
    for (const NamedEQPreset& named : EQPreset::allNamedPresets())
        EXPECT_EQ(
            presetOf({named.preset.gains.begin(), named.preset.gains.end()}).matchedPresetName(),
            named.name);
    EXPECT_EQ(EQPreset::hipHop.matchedPresetName(), "Hip-Hop");
    EXPECT_EQ(EQPreset::smallSpeakers.matchedPresetName(), "Small Speakers");
}

TEST(EQPreset, HasANameOnlyWhenEveryGainIsExactlyTheSame) {
    EXPECT_EQ(presetOf({-4, -3, -2, 0, 2, 4, 4, 3, 1, -2}).matchedPresetName(), "Podcast");
    EXPECT_EQ(presetOf({-4, -3, -2, 0, 2, 4.0001F, 4, 3, 1, -2}).matchedPresetName(), std::nullopt);
    EXPECT_EQ(EQPreset().matchedPresetName(), std::nullopt);
}

TEST(EQPreset, IsWrittenAsItsGainsOnly) {
    EXPECT_EQ(JSON(EQPreset(3, 0, -2.5F)).dump(), R"({"gains":[0,0,0,3,0,0,0,-2.5,0,0]})");
}

TEST(EQPreset, CannotBeWrittenWithGainsThatAreNoNumbers) {
    const EQPreset preset(std::numeric_limits<float>::quiet_NaN(), 0, 0);
    EXPECT_THROW((void)coding::text(JSON(preset)), CodingError);
}

RC_GTEST_PROP(EQPreset, ComesBackAsItWasWritten, ()) {
    const auto gains = *rc::gen::container<std::vector<float>>(10, rc::gen::arbitrary<float>());
    const EQPreset preset = presetOf(gains);
    RC_ASSERT(JSON::parse(JSON(preset).dump()).get<EQPreset>() == preset);
}

TEST(EQPreset, ReadsTwelveGainsAsTheFirstTenAndFourPaddedWithZeros) {
    const EQPreset twelve = decoded(R"({"gains":[1,2,3,4,5,6,7,8,9,10,11,12]})");
    EXPECT_EQ(twelve.gains, (Gains{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(JSON(twelve).dump(), R"({"gains":[1,2,3,4,5,6,7,8,9,10]})");
    const EQPreset four = decoded(R"({"gains":[1.5,2,3,4]})");
    EXPECT_EQ(four.gains, (Gains{1.5F, 2, 3, 4}));
    EXPECT_EQ(JSON(four).dump(), R"({"gains":[1.5,2,3,4,0,0,0,0,0,0]})");
}

TEST(EQPreset, ReadsTheOlderFormWithItsThreeKnobs) {
    EXPECT_EQ(decoded(R"({"bassGain":3,"trebleGain":-2})").gains,
              (Gains{0, 0, 0, 3, 0, 0, 0, -2, 0, 0}));
    EXPECT_EQ(decoded(R"({"bassGain":1,"midGain":2.5,"trebleGain":3})").gains,
              (Gains{0, 0, 0, 1, 0, 2.5F, 0, 3, 0, 0}));
    EXPECT_EQ(decoded("{}"), EQPreset());
}

TEST(EQPreset, PrefersTheGainsWhereBothFormsAreThere) {
    EXPECT_EQ(decoded(R"({"gains":[1],"bassGain":"loud"})").gains, Gains{1});
}

TEST(EQPreset, ReadsTheOlderFormWhateverIsWrongWithTheGains) {
    for (const char* gains : {"null", "3", "true", "\"x\"", "{}", "[1,\"2\"]", "[null]", "[[1]]",
                              "[1e300]", "[1,2,3,4,5,6,7,8,9,10,false]"}) {
        const std::string text = std::string(R"({"gains":)") + gains + R"(,"midGain":7})";
        EXPECT_EQ(decoded(text.c_str()).gains, (Gains{0, 0, 0, 0, 0, 7})) << text;
    }
}

TEST(EQPreset, CannotBeReadFromKnobsThatAreNoNumbers) {
    for (const char* text :
         {R"({"bassGain":"3"})", R"({"midGain":[1]})", R"({"trebleGain":true})",
          R"({"bassGain":1,"midGain":2,"trebleGain":{}})", R"({"gains":3,"midGain":"x"})"})
        EXPECT_THROW((void)decoded(text), CodingError) << text;
}

TEST(EQPreset, CannotBeReadFromWhatIsNoObject) {
    for (const char* text : {"null", "3", "[1,2,3]", "\"Rock\""})
        EXPECT_THROW((void)decoded(text), CodingError) << text;
}

} // namespace
} // namespace orvanta
