// What a person can go back to: the copies of earlier starts, and what could not be read.

#include "tests/platform/linux/defaults/support/DefaultsFolder.h"
#include "tests/platform/linux/defaults/support/FileLayer.h"
#include "tests/support/FileContent.h"

#include <gtest/gtest.h>

#include <fstream>

namespace orvanta {
namespace {

namespace fs = std::filesystem;

struct DefaultsCopiesTest : testing::Test, test::DefaultsFolder {
    /// What a database beside the file says of "theme".
    [[nodiscard]] std::optional<std::string> themeIn(const std::string& name) {
        DefaultsStorage::Place copy = place();
        copy.file = folder / name;
        return SQLiteUserDefaults(copy, clock, log).string("theme");
    }

    void damage(std::string_view content) {
        fs::create_directories(folder);
        fs::remove(file); // a file system may wait for the disk when one is emptied and written
        std::ofstream(file, std::ios::binary) << content;
    }
};

TEST_F(DefaultsCopiesTest, AreOfTheLastStartAndOfTheOneBefore) {
    runSetting("theme", "first");
    EXPECT_FALSE(names().contains("settings-last-start.db")) << "there was nothing to copy";
    runSetting("theme", "second");
    EXPECT_EQ(themeIn("settings-last-start.db"), "first");
    runSetting("theme", "third");
    EXPECT_EQ(themeIn("settings-last-start.db"), "second");
    EXPECT_EQ(themeIn("settings-start-before.db"), "first");
    runSetting("theme", "fourth");
    EXPECT_EQ(themeIn("settings-last-start.db"), "third");
    EXPECT_EQ(themeIn("settings-start-before.db"), "second");
    EXPECT_EQ(stored("theme"), "fourth");
}

TEST_F(DefaultsCopiesTest, HoldWhatAKilledRunHadNotYetMovedOutOfItsJournal) {
    {
        auto defaults = run();
        defaults.setString("theme", "first");
        ASSERT_TRUE(defaults.synchronize());
        ASSERT_TRUE(fs::file_size(folder / "settings.db-wal") > 0);
        fs::copy(folder, directory.path() / "killed", fs::copy_options::recursive);
    }
    fs::remove_all(folder);
    fs::rename(directory.path() / "killed", folder);
    runSetting("theme", "second");
    EXPECT_EQ(themeIn("settings-last-start.db"), "first");
}

TEST_F(DefaultsCopiesTest, AreTheUsersAlone) {
    runSetting("theme", "first");
    runSetting("theme", "second");
    EXPECT_EQ(fs::status(folder / "settings-last-start.db").permissions(), fs::perms(0600));
    EXPECT_FALSE(names().contains("settings-unfinished-copy.db"));
}

TEST_F(DefaultsCopiesTest, LeftUnfinishedByAKilledRunGoWithTheNext) {
    runSetting("theme", "first");
    // A number that no process has.
    std::ofstream(folder / "settings-unfinished-copy-2147483647.db") << "half a copy";
    std::ofstream(folder / "settings-unfinished-copy-of-mine.db") << "the user's own";
    runSetting("theme", "second");
    EXPECT_EQ(names(), (std::set<std::string>{"settings.db", "settings-last-start.db",
                                              "settings-unfinished-copy-of-mine.db"}));
}

TEST_F(DefaultsCopiesTest, ComeBackByBeingPutInPlace) {
    runSetting("theme", "wanted");
    runSetting("theme", "spoilt");
    fs::copy_file(folder / "settings-last-start.db", file, fs::copy_options::overwrite_existing);
    EXPECT_EQ(stored("theme"), "wanted");
}

TEST_F(DefaultsCopiesTest, DoNotChangeWhenADatabaseCannotBeRead) {
    runSetting("theme", "first");
    runSetting("theme", "second");
    runSetting("theme", "third");
    damage("no database at all, but long enough to be looked at");
    runSetting("theme", "fresh");
    EXPECT_EQ(themeIn("settings-last-start.db"), "second");
    EXPECT_EQ(themeIn("settings-start-before.db"), "first");
}

TEST_F(DefaultsCopiesTest, AnUnreadableDatabaseIsMovedAsideAndTheProgramStartsFresh) {
    const std::string garbage(5000, 'g');
    damage(garbage);
    runSetting("theme", "fresh");
    EXPECT_EQ(stored("theme"), "fresh");
    const std::string aside = folder / "settings-unreadable-2026-11-21T12-34-56Z.db";
    EXPECT_EQ(test::fileContent(aside), garbage);
    EXPECT_TRUE(log.has(
        LogLevel::error,
        "The settings database is unreadable (file is not a database) and was moved to " + aside));
}

TEST_F(DefaultsCopiesTest, TwoOfOneSecondAreBothKept) {
    for (const char* garbage : {"one that is no database", "another that is none"}) {
        damage(garbage);
        runSetting("theme", "fresh");
    }
    EXPECT_EQ(test::fileContent(folder / "settings-unreadable-2026-11-21T12-34-56Z.db"),
              "one that is no database");
    EXPECT_EQ(test::fileContent(folder / "settings-unreadable-2026-11-21T12-34-56Z-2.db"),
              "another that is none");
}

TEST_F(DefaultsCopiesTest, TheJournalOfAnUnreadableDatabaseIsNotTakenForTheNewOnes) {
    for (const char* journal : {"settings.db-wal", "settings.db-journal"}) {
        damage("no database at all");
        std::ofstream(folder / journal) << "its journal";
        runSetting("theme", journal);
        EXPECT_EQ(stored("theme"), journal);
    }
}

TEST_F(DefaultsCopiesTest, ATableOfAnotherShapeIsMovedAside) {
    fs::create_directories(folder);
    damage("");
    sqlite::Connection(file, sqlite::Access::readWrite)
        .run("CREATE TABLE \"com.meridane.orvanta\" (name, number)");
    runSetting("theme", "fresh");
    EXPECT_EQ(stored("theme"), "fresh");
    EXPECT_TRUE(names().contains("settings-unreadable-2026-11-21T12-34-56Z.db"));
}

TEST_F(DefaultsCopiesTest, AnEmptyFileIsAnEmptyDatabase) {
    damage("");
    runSetting("theme", "first");
    EXPECT_EQ(stored("theme"), "first");
    EXPECT_FALSE(hasLogged(LogLevel::error, ""));
}

struct DamagedDatabase : DefaultsCopiesTest {
    std::string sound;

    void SetUp() override {
        {
            auto defaults = run();
            for (int key = 0; key < 50; ++key)
                defaults.setString(std::to_string(key), std::string(300, 'v'));
            defaults.setData("long", std::string(20'000, 'd'));
        }
        sound = test::fileContent(file);
    }

    [[nodiscard]] std::string withEightBytesTurned(std::size_t place) const {
        std::string damaged = sound;
        for (std::size_t byte = place; byte < std::min(place + 8, damaged.size()); ++byte)
            damaged[byte] = static_cast<char>(~damaged[byte]);
        return damaged;
    }

    void expectThatItCanBeWrittenAgain(std::string_view content) {
        damage(content);
        runSetting("theme", "after");
        EXPECT_EQ(stored("theme"), "after");
        fs::remove_all(folder);
    }
};

TEST_F(DamagedDatabase, ReadsOrIsRefusedWhereverTheDamageIs) {
    test::FileObserver nobody;
    const test::FileLayer layer(nobody);
    for (std::size_t place = 0; place < sound.size(); place += 7) {
        damage(withEightBytesTurned(place));
        try {
            DefaultsDatabase database(file, "com.meridane.orvanta", sqlite::Access::readWrite,
                                      layer.name());
            EXPECT_LE(database.values().size(), 51U);
        } catch (const sqlite::Error& error) {
            EXPECT_TRUE(isUnreadable(error)) << place << ": " << error.what();
        }
    }
}

TEST_F(DamagedDatabase, IsWrittenAgainOrReplaced) {
    for (std::size_t place = 0; place < sound.size(); place += sound.size() / 100)
        expectThatItCanBeWrittenAgain(withEightBytesTurned(place));
}

TEST_F(DamagedDatabase, IsWrittenAgainOrReplacedWhenItsEndIsMissing) {
    for (std::size_t length = 0; length < sound.size(); length += sound.size() / 16)
        expectThatItCanBeWrittenAgain(sound.substr(0, length));
}

} // namespace
} // namespace orvanta
