#include "platform/linux/defaults/SQLiteUserDefaults.h"

#include "tests/platform/linux/defaults/support/DefaultsFolder.h"
#include "tests/support/FileContent.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>
#include <thread>

namespace orvanta {
namespace {

namespace fs = std::filesystem;

/// Lets files be made with every right for the time of a test.
struct OpenUmask {
    OpenUmask() = default;
    OpenUmask(const OpenUmask&) = delete;
    OpenUmask& operator=(const OpenUmask&) = delete;

    ~OpenUmask() { ::umask(before); }

    mode_t before = ::umask(0);
};

int rights(const fs::path& path) {
    return static_cast<int>(fs::status(path).permissions());
}

struct SQLiteUserDefaultsTest : testing::Test, test::DefaultsFolder {};

TEST_F(SQLiteUserDefaultsTest, IsEmptyAndLeavesNoFileAtAFirstStart) {
    const auto defaults = run();
    EXPECT_FALSE(defaults.has("any"));
    EXPECT_EQ(defaults.data("any"), std::nullopt);
    EXPECT_EQ(defaults.string("any"), std::nullopt);
    EXPECT_FALSE(defaults.boolean("any"));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(log.texts().empty());
}

TEST_F(SQLiteUserDefaultsTest, ReadsBackAtOnceWhatWasSet) {
    auto defaults = run();
    defaults.setData("data", "{}");
    defaults.setString("text", "dark");
    defaults.setBoolean("flag", true);
    EXPECT_EQ(defaults.data("data"), "{}");
    EXPECT_EQ(defaults.string("text"), "dark");
    EXPECT_TRUE(defaults.boolean("flag"));
    EXPECT_TRUE(defaults.has("data") && defaults.has("text") && defaults.has("flag"));
}

TEST_F(SQLiteUserDefaultsTest, GivesTheNextRunAllThatWasSet) {
    const std::string bytes("\0\xff{}\0", 5);
    {
        auto defaults = run();
        defaults.setData("data", bytes);
        defaults.setData("empty", "");
        defaults.setString("text", "Grüße\n");
        defaults.setString("nothing", "");
        defaults.setBoolean("on", true);
        defaults.setBoolean("off", false);
        defaults.setData("long", std::string(1'000'000, 'x'));
    }
    const auto defaults = run();
    EXPECT_EQ(defaults.data("data"), bytes);
    EXPECT_EQ(defaults.data("empty"), "");
    EXPECT_EQ(defaults.string("text"), "Grüße\n");
    EXPECT_EQ(defaults.string("nothing"), "");
    EXPECT_TRUE(defaults.boolean("on"));
    EXPECT_TRUE(defaults.has("off"));
    EXPECT_FALSE(defaults.boolean("off"));
    EXPECT_EQ(defaults.data("long"), std::string(1'000'000, 'x'));
    EXPECT_TRUE(log.texts().empty());
}

TEST_F(SQLiteUserDefaultsTest, KeepsTheLastOfManyValues) {
    {
        auto defaults = run();
        for (int value = 0; value <= 1000; ++value)
            defaults.setString("volume", std::to_string(value));
    }
    EXPECT_EQ(stored("volume"), "1000");
}

TEST_F(SQLiteUserDefaultsTest, TakesNoKindForAnother) {
    auto defaults = run();
    defaults.setString("text", "1");
    EXPECT_EQ(defaults.data("text"), std::nullopt);
    EXPECT_FALSE(defaults.boolean("text"));
    defaults.setBoolean("text", true);
    EXPECT_EQ(defaults.string("text"), std::nullopt);
    EXPECT_TRUE(defaults.boolean("text"));
}

TEST_F(SQLiteUserDefaultsTest, HasItOnTheDiskWhenSynchronizeReturns) {
    auto defaults = run();
    defaults.setString("theme", "dark");
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(DefaultsDatabase(file, "com.meridane.orvanta").values().count("theme"), 1U);
    EXPECT_TRUE(defaults.synchronize()) << "with nothing to do";
}

TEST_F(SQLiteUserDefaultsTest, AnswersFromMemory) {
    runSetting("theme", "dark");
    auto defaults = run();
    defaults.setString("other", "new");
    ASSERT_TRUE(defaults.synchronize());
    fs::remove_all(folder);
    EXPECT_EQ(defaults.string("theme"), "dark");
    EXPECT_EQ(defaults.string("other"), "new");
}

TEST_F(SQLiteUserDefaultsTest, WritesAllAnewWhenTheFileWasRemoved) {
    runSetting("theme", "dark");
    {
        auto defaults = run();
        defaults.setString("other", "old");
        ASSERT_TRUE(defaults.synchronize());
        fs::remove_all(folder);
        defaults.setString("other", "new");
    }
    EXPECT_EQ(stored("theme"), "dark");
    EXPECT_EQ(stored("other"), "new");
}

TEST_F(SQLiteUserDefaultsTest, LeavesAFileThatWasPutInItsPlaceWhole) {
    runSetting("theme", "restored");
    const fs::path restored = directory.path() / "restored.db";
    fs::rename(file, restored);
    {
        auto defaults = run();
        defaults.setString("theme", "dark");
        ASSERT_TRUE(defaults.synchronize());
        fs::rename(restored, file);
        for (int value = 0; value < 20; ++value) {
            defaults.setString("other", std::to_string(value));
            ASSERT_TRUE(defaults.synchronize());
        }
    }
    EXPECT_EQ(stored("theme"), "restored");
    EXPECT_EQ(stored("other"), "19");
    EXPECT_FALSE(hasLogged(LogLevel::error, ""));
}

TEST_F(SQLiteUserDefaultsTest, IsForNobodysEyesButTheUsers) {
    const OpenUmask everything;
    {
        auto defaults = run();
        defaults.setString("theme", "dark");
        ASSERT_TRUE(defaults.synchronize());
        EXPECT_EQ(rights(folder), 0700);
        EXPECT_EQ(rights(directory.path() / "config"), 0700);
        for (const std::string& name : names())
            EXPECT_EQ(rights(folder / name), 0600) << name;
        EXPECT_TRUE(names().contains("settings.db-wal"));
    }
    runSetting("theme", "light");
    fs::permissions(file, fs::perms(0644));
    fs::permissions(folder / "settings-last-start.db", fs::perms(0644));
    const auto defaults = run();
    EXPECT_EQ(rights(file), 0600);
    EXPECT_EQ(rights(folder / "settings-last-start.db"), 0600);
}

TEST_F(SQLiteUserDefaultsTest, SharesAFileWithOtherDomains) {
    runSetting("theme", "dark");
    {
        SQLiteUserDefaults other({file, "an \"other\" domain"}, clock, log);
        EXPECT_FALSE(other.has("theme"));
        other.setString("theme", "light");
    }
    EXPECT_EQ(stored("theme"), "dark");
    EXPECT_EQ(SQLiteUserDefaults({file, "an \"other\" domain"}, clock, log).string("theme"),
              "light");
}

TEST_F(SQLiteUserDefaultsTest, LivesInAFolderOfAnyName) {
    file = directory.path() / "50 % #1? ö" / "settings.db";
    runSetting("theme", "dark");
    EXPECT_EQ(stored("theme"), "dark");
}

TEST_F(SQLiteUserDefaultsTest, LivesUnderAPathThatBeginsWithTwoSlashes) {
    file = "/" + file.native();
    runSetting("theme", "dark");
    EXPECT_EQ(stored("theme"), "dark");
    EXPECT_TRUE(log.texts().empty()) << testing::PrintToString(log.texts());
}

TEST_F(SQLiteUserDefaultsTest, FollowsALinkAlsoToAFileThatIsNotThereYet) {
    const fs::path elsewhere = directory.path() / "elsewhere.db";
    fs::create_directories(folder);
    fs::create_symlink(elsewhere, file);
    runSetting("theme", "dark");
    EXPECT_EQ(stored("theme"), "dark");
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_TRUE(fs::is_regular_file(elsewhere));
}

TEST_F(SQLiteUserDefaultsTest, PassesOverValuesOfAKindItDoesNotKnow) {
    runSetting("theme", "dark");
    sqlite::Connection(file, sqlite::Access::readWrite)
        .run("INSERT INTO \"com.meridane.orvanta\" VALUES ('volume', 0.5)");
    const auto defaults = run();
    EXPECT_FALSE(defaults.has("volume"));
    EXPECT_EQ(defaults.string("theme"), "dark");
}

TEST_F(SQLiteUserDefaultsTest, MayBeSetAndReadOnManyThreads) {
    {
        auto defaults = run();
        std::vector<std::thread> threads;
        for (int each = 0; each < 4; ++each) {
            threads.emplace_back([&defaults, key = std::to_string(each)] {
                for (int value = 1; value <= 200; ++value) {
                    defaults.setString(key, std::to_string(value));
                    EXPECT_EQ(defaults.string(key), std::to_string(value));
                    EXPECT_TRUE(value % 50 != 0 || defaults.synchronize());
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    for (int each = 0; each < 4; ++each)
        EXPECT_EQ(stored(std::to_string(each)), "200");
}

TEST(UserDefaultsFile, StandsInTheUsersFolderForSettings) {
    EXPECT_EQ(userDefaultsFile("/home/u", nullptr), "/home/u/.config/orvanta/settings.db");
    EXPECT_EQ(userDefaultsFile("/home/u", ""), "/home/u/.config/orvanta/settings.db");
    EXPECT_EQ(userDefaultsFile("/home/u", "/etc/u"), "/etc/u/orvanta/settings.db");
    EXPECT_EQ(userDefaultsFile("/home/u", "settings"), "/home/u/.config/orvanta/settings.db")
        << "what a relative folder means depends on where a program was started";
}

} // namespace
} // namespace orvanta
