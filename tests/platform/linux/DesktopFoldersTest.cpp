#include "platform/linux/desktop/DesktopFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>

namespace orvanta::test {
namespace {

using ::testing::ElementsAre;

/// The environment as a test wants it, and as it was afterwards.
class DesktopFoldersTest : public ::testing::Test {
protected:
    DesktopFoldersTest() {
        for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME",
                                 "PATH", "LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"}) {
            const char* const value = std::getenv(name);
            before_[name] = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
            unsetenv(name);
        }
        set("HOME", "/home/anna");
    }

    ~DesktopFoldersTest() override {
        for (const auto& [name, value] : before_)
            if (value)
                setenv(name.c_str(), value->c_str(), 1);
            else
                unsetenv(name.c_str());
    }

    static void set(const char* name, const char* value) { setenv(name, value, 1); }

private:
    std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(DesktopFoldersTest, HaveDefaults) {
    const auto folders = DesktopFolders::fromEnvironment();
    EXPECT_EQ(folders.home, "/home/anna");
    EXPECT_EQ(folders.dataHome, "/home/anna/.local/share");
    EXPECT_EQ(folders.configHome, "/home/anna/.config");
    EXPECT_THAT(folders.dataFolders,
                ElementsAre("/usr/local/share", "/usr/share",
                            "/home/anna/.local/share/flatpak/exports/share",
                            "/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"));
    EXPECT_THAT(folders.locales, ElementsAre("C"));
    EXPECT_FALSE(folders.executableFolders.empty());
}

TEST_F(DesktopFoldersTest, FollowTheEnvironment) {
    set("XDG_DATA_HOME", "/data");
    set("XDG_CONFIG_HOME", "/config");
    set("XDG_DATA_DIRS", "/var/lib/flatpak/exports/share/:/x::relative:/x");
    set("PATH", "/p:/q");
    const auto folders = DesktopFolders::fromEnvironment();
    EXPECT_EQ(folders.dataHome, "/data");
    EXPECT_EQ(folders.configHome, "/config");
    EXPECT_THAT(folders.executableFolders, ElementsAre("/p", "/q"));
    EXPECT_THAT(folders.allDataFolders(),
                ElementsAre("/data", "/var/lib/flatpak/exports/share", "/x",
                            "/data/flatpak/exports/share", "/var/lib/snapd/desktop"));
}

TEST_F(DesktopFoldersTest, TakeNoRelativeFolders) {
    set("XDG_DATA_HOME", "data");
    EXPECT_EQ(DesktopFolders::fromEnvironment().dataHome, "/home/anna/.local/share");
}

TEST_F(DesktopFoldersTest, KnowTheUsersLanguages) {
    set("LANG", "de_AT.UTF-8");
    EXPECT_THAT(DesktopFolders::fromEnvironment().locales, ElementsAre("de_AT.UTF-8"));
    set("LC_MESSAGES", "fr_FR.UTF-8");
    EXPECT_THAT(DesktopFolders::fromEnvironment().locales, ElementsAre("fr_FR.UTF-8"));
    set("LC_ALL", "it_IT.UTF-8");
    set("LANGUAGE", "de:en");
    EXPECT_THAT(DesktopFolders::fromEnvironment().locales, ElementsAre("de", "en", "it_IT.UTF-8"));
    set("LC_ALL", "C");
    EXPECT_THAT(DesktopFolders::fromEnvironment().locales, ElementsAre("C"));
}

} // namespace
} // namespace orvanta::test
