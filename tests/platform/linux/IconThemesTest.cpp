#include "platform/linux/icons/IconThemes.h"

#include "platform/linux/icons/ThemeIcon.h"
#include "tests/support/ScriptedDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class IconThemesTest : public ::testing::Test {
protected:
    /// A theme with square folders of these sizes and one scalable from 8 to 256.
    void addTheme(const std::string& name, const std::string& inherits,
                  const std::vector<int>& sizes = {16, 48}) const {
        std::string list = "scalable/apps";
        std::string sections = "[scalable/apps]\nSize=64\nMinSize=8\nMaxSize=256\nType=Scalable\n";
        for (const int size : sizes) {
            const std::string path = std::to_string(size) + "/apps";
            list += "," + path;
            sections += "[" + path + "]\nSize=" + std::to_string(size) + "\nType=Fixed\n";
        }
        ScriptedProc::write(icons() / name / "index.theme",
                            "[Icon Theme]\nName=" + name + "\nInherits=" + inherits +
                                "\nDirectories=" + list + "\n" + sections);
    }

    [[nodiscard]] fs::path icons() const { return folders_.dataFolders[0] / "icons"; }

    [[nodiscard]] fs::path addPicture(const std::string& path) const {
        ScriptedProc::write(icons() / path, "picture");
        return icons() / path;
    }

    void chooseTheme(const std::string& name) const {
        ScriptedProc::write(folders_.configHome / "gtk-3.0/settings.ini",
                            "[Settings]\ngtk-icon-theme-name=" + name + "\n");
    }

    TemporaryDirectory directory_;
    DesktopFolders folders_{.home = directory_.path() / "home",
                            .dataHome = directory_.path() / "user",
                            .dataFolders = {directory_.path() / "system"},
                            .configHome = directory_.path() / "config",
                            .executableFolders = {},
                            .locales = {}};
    desktop::IconThemes themes_{folders_};
};

TEST_F(IconThemesTest, HaveNothingWithoutFolders) {
    EXPECT_FALSE(themes_.file("player", 32));
    EXPECT_EQ(themes_.themeName(), "");
}

TEST_F(IconThemesTest, TakeTheFolderMadeForTheSize) {
    addTheme("hicolor", "");
    const auto small = addPicture("hicolor/16/apps/player.png");
    const auto large = addPicture("hicolor/48/apps/player.png");
    const auto drawn = addPicture("hicolor/scalable/apps/player.svg");
    EXPECT_EQ(themes_.file("player", 16), small);
    EXPECT_EQ(themes_.file("player", 48), large);
    EXPECT_EQ(themes_.file("player", 32), drawn);
}

TEST_F(IconThemesTest, ShrinkRatherThanBlowUp) {
    addTheme("hicolor", "", {16, 48, 128});
    const auto small = addPicture("hicolor/16/apps/player.png");
    const auto middle = addPicture("hicolor/48/apps/player.png");
    const auto large = addPicture("hicolor/128/apps/player.png");
    EXPECT_EQ(themes_.file("player", 17), middle);
    EXPECT_EQ(themes_.file("player", 49), large);
    EXPECT_EQ(themes_.file("player", 500), large);
    EXPECT_EQ(themes_.file("player", 1), small);
}

TEST_F(IconThemesTest, LookInTheUsersThemeFirstThenInThoseItInheritsFrom) {
    addTheme("hicolor", "");
    addTheme("Base", "hicolor");
    addTheme("Mine", "Base");
    chooseTheme("Mine");
    const auto common = addPicture("hicolor/16/apps/player.png");
    EXPECT_EQ(themes_.file("player", 16), common);
    const auto inherited = addPicture("Base/48/apps/player.png");
    EXPECT_EQ(desktop::IconThemes(folders_).file("player", 16), inherited);
    const auto own = addPicture("Mine/16/apps/player.png");
    EXPECT_EQ(desktop::IconThemes(folders_).file("player", 16), own);
}

TEST_F(IconThemesTest, FallBackOnAdwaita) {
    addTheme("Adwaita", "hicolor");
    const auto picture = addPicture("Adwaita/16/apps/player.png");
    EXPECT_EQ(themes_.file("player", 16), picture);
}

TEST_F(IconThemesTest, EndWhereThemesInheritInACircle) {
    addTheme("One", "Two,One");
    addTheme("Two", "One,Missing,../Two");
    chooseTheme("One");
    EXPECT_FALSE(themes_.file("player", 16));
}

TEST_F(IconThemesTest, MergeAThemesFoldersOfSeveralPlaces) {
    addTheme("hicolor", "");
    const fs::path own = folders_.dataHome / "icons/hicolor/16/apps/player.png";
    ScriptedProc::write(own, "picture");
    EXPECT_EQ(themes_.file("player", 16), own);
}

TEST_F(IconThemesTest, KnowTheUsualFoldersWhereHicolorHasNoDescription) {
    const auto picture = addPicture("hicolor/48x48/apps/player.png");
    EXPECT_EQ(themes_.file("player", 32), picture);
}

TEST_F(IconThemesTest, SeeIconsInstalledLater) {
    addTheme("hicolor", "");
    EXPECT_FALSE(themes_.file("player", 16));
    const auto picture = addPicture("hicolor/16/apps/player.png");
    // As installers do.
    fs::last_write_time(icons() / "hicolor",
                        fs::file_time_type::clock::now() + std::chrono::hours(1));
    EXPECT_EQ(themes_.file("player", 16), picture);
}

TEST_F(IconThemesTest, TakeLoosePicturesLast) {
    const fs::path loose = folders_.dataFolders[0] / "pixmaps/player.png";
    ScriptedProc::write(loose, "picture");
    EXPECT_EQ(themes_.file("player", 16), loose);
    EXPECT_EQ(themes_.file("player.png", 16), loose);
    EXPECT_EQ(themes_.file("player.xpm", 16), loose);
}

TEST_F(IconThemesTest, TakeAbsolutePathsAsTheyAre) {
    const auto picture = addPicture("any/place.png");
    EXPECT_EQ(themes_.file(picture.string(), 16), picture);
    EXPECT_FALSE(themes_.file(picture.string() + "x", 16));
}

TEST_F(IconThemesTest, NeverLeaveTheirFolders) {
    ScriptedProc::write(directory_.path() / "secret.png", "picture");
    fs::create_directories(icons());
    EXPECT_FALSE(themes_.file("../../secret", 16));
    EXPECT_FALSE(themes_.file("..", 16));
    EXPECT_FALSE(themes_.file("", 16));
    chooseTheme("../..");
    EXPECT_EQ(themes_.themeName(), "");
}

TEST_F(IconThemesTest, FollowTheSettingsOfGTKThenOfKDE) {
    ScriptedProc::write(folders_.configHome / "kdeglobals", "[Icons]\nTheme=Wind\n");
    EXPECT_EQ(themes_.themeName(), "Wind");
    chooseTheme("Water");
    EXPECT_EQ(themes_.themeName(), "Water");
}

TEST_F(IconThemesTest, MakeIconsThatKeepTheThemeOfTheirKey) {
    addTheme("Wind", "");
    addTheme("Water", "");
    const auto ofWind = addPicture("Wind/16/apps/player.png");
    const auto ofWater = addPicture("Water/16/apps/player.png");
    const auto themes = std::make_shared<const desktop::IconThemes>(folders_);
    chooseTheme("Wind");
    const desktop::ThemeIcon icon("player", themes->themeName(), themes);
    EXPECT_EQ(icon.imageFile(16), ofWind);
    chooseTheme("Water");
    EXPECT_EQ(icon.imageFile(16), ofWind);
    EXPECT_EQ(desktop::ThemeIcon("player", themes->themeName(), themes).imageFile(16), ofWater);
}

TEST(IconTheme, CountsPixelsOfTheScreen) {
    const auto theme = desktop::parseIconTheme(
        "[Icon Theme]\nDirectories=16\nScaledDirectories=16@2\n[16]\nSize=16\n[16@2]\nSize=16\n"
        "Scale=2\nType=Fixed\n");
    ASSERT_EQ(theme.folders.size(), 2U);
    EXPECT_EQ(theme.folders[0].distance(18), 0);
    EXPECT_EQ(theme.folders[0].distance(20), 2);
    EXPECT_EQ(theme.folders[1].size, 32);
    EXPECT_EQ(theme.folders[1].distance(30), 2);
}

TEST(IconTheme, LeavesOutWhatIsBroken) {
    const auto theme = desktop::parseIconTheme(
        "[Icon Theme]\nInherits=good,a/b,..,,\nDirectories=none,zero,huge,/abs,../up,a/../b,ok\n"
        "[zero]\nSize=0\n[huge]\nSize=99999999999\n[/abs]\nSize=16\n[../up]\nSize=16\n"
        "[a/../b]\nSize=16\n[ok]\nSize=16\nScale=-4\nThreshold=x\n");
    EXPECT_THAT(theme.inherits, ElementsAre("good"));
    ASSERT_EQ(theme.folders.size(), 1U);
    EXPECT_EQ(theme.folders[0].path, "ok");
    EXPECT_EQ(theme.folders[0].size, 16);
    EXPECT_THAT(desktop::parseIconTheme("").folders, IsEmpty());
}

TEST(IconTheme, NeverFailsOnArbitraryBytes) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string letters = "[]=\n,/.a0129-\xFF";
    for (int round = 0; round < 5000; ++round) {
        std::string text = "[Icon Theme]\nDirectories=a,b/c\n[a]\nSize=";
        for (auto length = random() % 200; length > 0; --length)
            text += letters[random() % letters.size()];
        for (const auto& folder : desktop::parseIconTheme(text).folders)
            EXPECT_GT(folder.size, 0);
    }
}

TEST_F(IconThemesTest, MakeIconsWithAKeyForEachPicture) {
    const auto themes = std::make_shared<const desktop::IconThemes>(folders_);
    const auto key = [&](const char* icon, const char* theme) {
        return desktop::ThemeIcon(icon, theme, themes).cacheKey();
    };
    EXPECT_EQ(key("player", "Wind"), key("player", "Wind"));
    EXPECT_NE(key("player", "Wind"), key("radio", "Wind"));
    EXPECT_NE(key("player", "Wind"), key("player", "Water"));
    EXPECT_EQ(key("/a/player.png", "Wind"), key("/a/player.png", "Water"));
}

} // namespace
} // namespace orvanta::test
