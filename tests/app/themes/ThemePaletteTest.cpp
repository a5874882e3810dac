#include "app/themes/ThemePalette.h"

#include <gtest/gtest.h>

#include <array>

namespace orvanta {
namespace {

/// A field with the channels that were worked out by hand for both themes, to three decimals.
struct Row {
    const char* name;
    ThemeColor ThemePalette::*field;
    std::array<double, 3> classic;
    std::array<double, 3> meridane;
};

constexpr std::array<Row, 19> kRows{{
    {"accent", &ThemePalette::accent, {0.955, 0.712, 0.145}, {0.303, 0.509, 0.798}},
    {"accentSecondary",
     &ThemePalette::accentSecondary,
     {0.937, 0.723, 0.223},
     {0.430, 0.588, 0.810}},
    {"accentGlow", &ThemePalette::accentGlow, {0.955, 0.712, 0.145}, {0.303, 0.509, 0.798}},
    {"boostAmber", &ThemePalette::boostAmber, {0.955, 0.550, 0.145}, {0.850, 0.442, 0.150}},
    {"warmOrange", &ThemePalette::warmOrange, {0.955, 0.483, 0.145}, {0.825, 0.392, 0.175}},
    {"gradientStart", &ThemePalette::gradientStart, {0.966, 0.735, 0.194}, {0.303, 0.509, 0.798}},
    {"gradientEnd", &ThemePalette::gradientEnd, {0.840, 0.300, 0.120}, {0.260, 0.260, 0.540}},
    {"green", &ThemePalette::green, {0.135, 0.765, 0.450}, {0.135, 0.765, 0.450}},
    {"yellow", &ThemePalette::yellow, {0.950, 0.950, 0.050}, {0.950, 0.950, 0.050}},
    {"red", &ThemePalette::red, {0.932, 0.168, 0.168}, {0.932, 0.168, 0.168}},
    {"blue", &ThemePalette::blue, {0.168, 0.550, 0.932}, {0.168, 0.550, 0.932}},
    {"purple", &ThemePalette::purple, {0.655, 0.235, 0.865}, {0.655, 0.235, 0.865}},
    {"featureVolume", &ThemePalette::featureVolume, {0.190, 0.550, 0.910}, {0.150, 0.733, 0.850}},
    {"featureRouting", &ThemePalette::featureRouting, {0.550, 0.235, 0.865}, {0.775, 0.325, 0.775}},
    {"featureEQ", &ThemePalette::featureEQ, {0.135, 0.765, 0.765}, {0.180, 0.720, 0.540}},
    {"featureCompressor",
     &ThemePalette::featureCompressor,
     {0.865, 0.235, 0.550},
     {0.820, 0.280, 0.370}},
    {"featureRecording",
     &ThemePalette::featureRecording,
     {0.887, 0.213, 0.213},
     {0.856, 0.296, 0.184}},
    {"featureBalance", &ThemePalette::featureBalance, {0.900, 0.633, 0.100}, {0.800, 0.700, 0.200}},
    {"featureShortcuts",
     &ThemePalette::featureShortcuts,
     {0.180, 0.720, 0.450},
     {0.240, 0.720, 0.320}},
}};

void expectChannels(const ThemeColor& color, const std::array<double, 3>& channels) {
    // The last digit of a half was rounded either way.
    constexpr double tolerance = 0.00055;
    EXPECT_NEAR(color.red, channels[0], tolerance);
    EXPECT_NEAR(color.green, channels[1], tolerance);
    EXPECT_NEAR(color.blue, channels[2], tolerance);
}

TEST(ThemePalette, HasTheseColorsInBothThemes) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        expectChannels(ThemePalette::classic().*row.field, row.classic);
        expectChannels(ThemePalette::meridane().*row.field, row.meridane);
    }
}

TEST(ThemePalette, IsOpaqueButForTheGlow) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        const bool isGlow = row.field == &ThemePalette::accentGlow;
        EXPECT_EQ((ThemePalette::classic().*row.field).opacity, isGlow ? 0.18 : 1.0);
        EXPECT_EQ((ThemePalette::meridane().*row.field).opacity, isGlow ? 0.22 : 1.0);
    }
}

TEST(ThemePalette, IsMadeOnce) {
    EXPECT_EQ(&ThemePalette::classic(), &ThemePalette::classic());
    EXPECT_EQ(&ThemePalette::meridane(), &ThemePalette::meridane());
}

TEST(ThemeColor, IsTheSameRedAtBothEndsOfTheCircle) {
    EXPECT_EQ(ThemeColor::fromHSL(0, 0.85, 0.55), ThemeColor::fromHSL(360, 0.85, 0.55));
}

TEST(ThemeColor, IsGreyWithoutSaturation) {
    const ThemeColor grey = ThemeColor::fromHSL(123, 0, 0.4);
    expectChannels(grey, {0.4, 0.4, 0.4});
}

TEST(ThemeColor, IsPureAtSixPlacesOfTheCircle) {
    expectChannels(ThemeColor::fromHSL(0, 1, 0.5), {1, 0, 0});
    expectChannels(ThemeColor::fromHSL(60, 1, 0.5), {1, 1, 0});
    expectChannels(ThemeColor::fromHSL(120, 1, 0.5), {0, 1, 0});
    expectChannels(ThemeColor::fromHSL(180, 1, 0.5), {0, 1, 1});
    expectChannels(ThemeColor::fromHSL(240, 1, 0.5), {0, 0, 1});
    expectChannels(ThemeColor::fromHSL(300, 1, 0.5), {1, 0, 1});
}

TEST(ThemeColor, KeepsItsChannelsUnderAnotherOpacity) {
    const ThemeColor half = ThemePalette::classic().red.withOpacity(0.5);
    EXPECT_EQ(half.opacity, 0.5);
    EXPECT_EQ(half.withOpacity(1.0), ThemePalette::classic().red);
}

} // namespace
} // namespace orvanta
