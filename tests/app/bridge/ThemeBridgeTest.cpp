#include "app/bridge/ThemeBridge.h"

#include "tests/support/MemoryUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QColor>
#include <QQmlEngine>
#include <QSignalSpy>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class ThemeBridgeTest : public testing::Test {
protected:
    [[nodiscard]] QColor color(const char* name) const {
        return theme_.colors().value(name).value<QColor>();
    }

    MemoryUserDefaults defaults_;
    ThemeManager manager_{defaults_};
    ThemeBridge theme_{manager_};
};

TEST_F(ThemeBridgeTest, HasAllNineteenColoursByTheirNames) {
    EXPECT_THAT(theme_.colors().keys(),
                UnorderedElementsAre("accent", "accentSecondary", "accentGlow", "boostAmber",
                                     "warmOrange", "gradientStart", "gradientEnd", "green",
                                     "yellow", "red", "blue", "purple", "featureVolume",
                                     "featureRouting", "featureEQ", "featureCompressor",
                                     "featureRecording", "featureBalance", "featureShortcuts"));
}

TEST_F(ThemeBridgeTest, HasEachColourUnderItsOwnName) {
    const auto expectColor = [this](const char* name, const ThemeColor& expected) {
        EXPECT_NEAR(color(name).redF(), expected.red, 1e-4) << name;
        EXPECT_NEAR(color(name).greenF(), expected.green, 1e-4) << name;
        EXPECT_NEAR(color(name).blueF(), expected.blue, 1e-4) << name;
        EXPECT_NEAR(color(name).alphaF(), expected.opacity, 1e-4) << name;
    };
    for (const ThemeChoice choice : kThemeChoices) {
        manager_.choice.set(choice);
        const ThemePalette& palette = paletteOf(choice);
        expectColor("accent", palette.accent);
        expectColor("accentSecondary", palette.accentSecondary);
        expectColor("accentGlow", palette.accentGlow);
        expectColor("boostAmber", palette.boostAmber);
        expectColor("warmOrange", palette.warmOrange);
        expectColor("gradientStart", palette.gradientStart);
        expectColor("gradientEnd", palette.gradientEnd);
        expectColor("green", palette.green);
        expectColor("yellow", palette.yellow);
        expectColor("red", palette.red);
        expectColor("blue", palette.blue);
        expectColor("purple", palette.purple);
        expectColor("featureVolume", palette.featureVolume);
        expectColor("featureRouting", palette.featureRouting);
        expectColor("featureEQ", palette.featureEQ);
        expectColor("featureCompressor", palette.featureCompressor);
        expectColor("featureRecording", palette.featureRecording);
        expectColor("featureBalance", palette.featureBalance);
        expectColor("featureShortcuts", palette.featureShortcuts);
    }
}

TEST_F(ThemeBridgeTest, TellsOfAnotherThemeAtOnceWithItsColours) {
    QColor told;
    QObject::connect(&theme_, &ThemeBridge::changed, &theme_, [&] { told = color("accent"); });
    const QColor before = color("accent");
    manager_.choice.set(ThemeChoice::meridane);
    EXPECT_EQ(told, color("accent"));
    EXPECT_NE(told, before);
}

TEST_F(ThemeBridgeTest, OffersTheThemesByNameAndTakesTheirNumbers) {
    EXPECT_THAT(theme_.themeNames(), ElementsAre("Classic", "Meridane"));
    EXPECT_EQ(theme_.themeIndex(), 0);
    EXPECT_EQ(theme_.themeHelp(), "Theme: Classic — click to switch");
    theme_.chooseTheme(1);
    EXPECT_EQ(theme_.themeIndex(), 1);
    EXPECT_EQ(theme_.themeHelp(), "Theme: Meridane — click to switch");
    EXPECT_EQ(defaults_.string(ThemeManager::defaultsKey), "meridane");
    QSignalSpy changes(&theme_, &ThemeBridge::changed);
    theme_.chooseTheme(-1);
    theme_.chooseTheme(2);
    EXPECT_EQ(theme_.themeIndex(), 1);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(ThemeBridgeTest, GoesRoundTheThemes) {
    theme_.chooseNextTheme();
    EXPECT_EQ(theme_.themeIndex(), 1);
    theme_.chooseNextTheme();
    EXPECT_EQ(theme_.themeIndex(), 0);
}

TEST_F(ThemeBridgeTest, BeginsWithTheStoredTheme) {
    defaults_.setString(ThemeManager::defaultsKey, "meridane");
    ThemeManager manager(defaults_);
    EXPECT_EQ(ThemeBridge(manager).themeIndex(), 1);
}

TEST_F(ThemeBridgeTest, PassesTheDesktopsWishesOn) {
    QSignalSpy wishes(&theme_, &ThemeBridge::lookChanged);
    EXPECT_EQ(theme_.property("isHighContrast"), false);
    EXPECT_EQ(theme_.property("isMotionReduced"), false);
    theme_.setLook({.isHighContrast = true});
    EXPECT_EQ(theme_.property("isHighContrast"), true);
    EXPECT_EQ(theme_.property("isMotionReduced"), false);
    theme_.setLook({.isMotionReduced = true});
    EXPECT_EQ(theme_.property("isHighContrast"), false);
    EXPECT_EQ(theme_.property("isMotionReduced"), true);
    EXPECT_EQ(wishes.count(), 2);
}

TEST_F(ThemeBridgeTest, IsTheOneThatItsEngineWasTold) {
    QQmlEngine engine;
    ThemeBridge::setFor(engine, theme_);
    EXPECT_EQ(ThemeBridge::create(&engine, &engine), &theme_);
}

} // namespace
} // namespace orvanta::test
