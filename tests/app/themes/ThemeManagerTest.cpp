#include "app/themes/ThemeManager.h"

#include "platform/memory/InMemoryUserDefaults.h"

#include <gtest/gtest.h>

namespace orvanta {
namespace {

class ThemeManagerTest : public testing::Test {
protected:
    InMemoryUserDefaults defaults_;
};

TEST_F(ThemeManagerTest, IsClassicAtFirst) {
    const ThemeManager themes(defaults_);
    EXPECT_EQ(themes.choice.get(), ThemeChoice::classic);
    EXPECT_EQ(&themes.palette(), &ThemePalette::classic());
    EXPECT_FALSE(defaults_.has(ThemeManager::defaultsKey)) << "looking is no choice";
}

TEST_F(ThemeManagerTest, TakesUpWhatIsStored) {
    defaults_.setString("com.meridane.orvanta.themeChoice", "meridane");
    const ThemeManager themes(defaults_);
    EXPECT_EQ(themes.choice.get(), ThemeChoice::meridane);
    EXPECT_EQ(&themes.palette(), &ThemePalette::meridane());
}

TEST_F(ThemeManagerTest, FallsBackOnClassicFromWhatItDoesNotKnow) {
    for (const char* text : {"", "Meridane", "solarized"}) {
        defaults_.setString(ThemeManager::defaultsKey, text);
        EXPECT_EQ(ThemeManager(defaults_).choice.get(), ThemeChoice::classic) << text;
    }
    defaults_.setBoolean(ThemeManager::defaultsKey, true);
    EXPECT_EQ(ThemeManager(defaults_).choice.get(), ThemeChoice::classic);
}

TEST_F(ThemeManagerTest, GoesRoundTheThemesAndStoresEach) {
    ThemeManager themes(defaults_);
    themes.chooseNext();
    EXPECT_EQ(themes.choice.get(), ThemeChoice::meridane);
    EXPECT_EQ(defaults_.string(ThemeManager::defaultsKey), "meridane");
    themes.chooseNext();
    EXPECT_EQ(themes.choice.get(), ThemeChoice::classic);
    EXPECT_EQ(defaults_.string(ThemeManager::defaultsKey), "classic");
}

TEST_F(ThemeManagerTest, TellsOfAChangeAtOnce) {
    ThemeManager themes(defaults_);
    int announcements = 0;
    std::optional<ThemeChoice> coming;
    const auto object = themes.objectWillChange.observe([&] { ++announcements; });
    const auto value = themes.choice.observe([&](ThemeChoice choice) { coming = choice; });
    themes.choice.set(ThemeChoice::meridane);
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(coming, ThemeChoice::meridane);
}

TEST(ThemeChoice, HasANameForTheStoreAndOneForPeople) {
    EXPECT_EQ(rawValue(ThemeChoice::classic), "classic");
    EXPECT_EQ(rawValue(ThemeChoice::meridane), "meridane");
    EXPECT_EQ(displayName(ThemeChoice::classic), "Classic");
    EXPECT_EQ(displayName(ThemeChoice::meridane), "Meridane");
    for (const ThemeChoice choice : kThemeChoices)
        EXPECT_EQ(themeChoiceFrom(rawValue(choice)), choice);
}

} // namespace
} // namespace orvanta
