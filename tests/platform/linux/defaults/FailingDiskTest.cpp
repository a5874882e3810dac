// A disk that is full, cannot be written or fails at any moment: the program goes on, memory
// stands, the log says so, and what was stored before stays.

#include "tests/platform/linux/defaults/support/DefaultsFolder.h"
#include "tests/platform/linux/defaults/support/FileLayer.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <optional>
#include <sqlite3.h>
#include <system_error>

namespace orvanta {
namespace {

namespace fs = std::filesystem;

using test::FileOperation;

constexpr SavingPace kImpatient{.betweenWrites = Seconds(0), .beforeRetry = Seconds(0.001)};

/// Lets the operations on files that come at one place in their order fail, or all from there on.
class Faults final : public test::FileObserver {
public:
    enum class Duration { once, forEver };

    Faults(int first, Duration duration) : first_(first), duration_(duration) {}

    [[nodiscard]] bool haveBegun() const { return count_ >= first_; }

    bool next() {
        const int number = ++count_;
        return duration_ == Duration::once ? number == first_ : number >= first_;
    }

    int allow(FileOperation operation, const std::string& /*path*/) override {
        if (!next())
            return SQLITE_OK;
        switch (operation) {
        case FileOperation::open:
            return SQLITE_CANTOPEN;
        case FileOperation::write:
            return SQLITE_FULL;
        case FileOperation::truncate:
            return SQLITE_IOERR_TRUNCATE;
        case FileOperation::sync:
            return SQLITE_IOERR_FSYNC;
        case FileOperation::remove:
            return SQLITE_IOERR_DELETE;
        }
        return SQLITE_IOERR;
    }

private:
    const int first_;
    const Duration duration_;
    std::atomic<int> count_ = 0;
};

/// Files that fail as the faults have it.
class FaultyFiles final : public FileOperations {
public:
    explicit FaultyFiles(Faults& faults) : faults_(faults) {}

    void makeFolder(const fs::path& folder) override {
        fail();
        files_.makeFolder(folder);
    }

    bool makeFile(const fs::path& file) override {
        fail();
        return files_.makeFile(file);
    }

    void makePrivate(const fs::path& file) override {
        fail();
        files_.makePrivate(file);
    }

    bool link(const fs::path& file, const fs::path& name) override {
        fail();
        return files_.link(file, name);
    }

    void remove(const fs::path& file) override {
        fail();
        files_.remove(file);
    }

    void rename(const fs::path& from, const fs::path& to) override {
        fail();
        files_.rename(from, to);
    }

    void sync(const fs::path& /*fileOrFolder*/) override { fail(); }

private:
    void fail() {
        if (faults_.next())
            throw std::system_error(ENOSPC, std::generic_category());
    }

    Faults& faults_;
    SystemFileOperations files_;
};

/// What stands in the folder when a run begins.
enum class Before { nothing, journalOfAKilledRun, garbage };

struct FaultCase {
    Before before;
    Faults::Duration duration;
};

struct EveryFault : testing::TestWithParam<FaultCase> {};

/// The folder as `before` has it.
void prepare(test::DefaultsFolder& settings, Before before) {
    if (before == Before::garbage) {
        fs::create_directories(settings.folder);
        std::ofstream(settings.file) << "this is no database";
    }
    if (before != Before::journalOfAKilledRun)
        return;
    const fs::path killed = settings.directory.path() / "killed";
    {
        auto defaults = settings.run();
        defaults.setString("theme", "old");
        defaults.setString("kept", "since then");
        ASSERT_TRUE(defaults.synchronize());
        fs::copy(settings.folder, killed, fs::copy_options::recursive);
    }
    fs::remove_all(settings.folder);
    fs::rename(killed, settings.folder);
}

/// Whatever failed, what bears the name of a copy is one.
void expectSoundCopyOrNone(const test::DefaultsFolder& settings, Before before) {
    const fs::path copy = settings.folder / "settings-last-start.db";
    if (!fs::exists(copy))
        return;
    DefaultsDatabase database(copy, "com.meridane.orvanta", sqlite::Access::immutable);
    EXPECT_EQ(database.values().contains("kept"), before == Before::journalOfAKilledRun);
}

TEST_P(EveryFault, LeavesMemoryAsItIsAndTheDiskOldOrNew) {
    const auto [before, duration] = GetParam();
    int first = 1;
    for (;; ++first) {
        test::DefaultsFolder settings;
        prepare(settings, before);
        settings.log.clear();
        Faults faults(first, duration);
        const test::FileLayer layer(faults);
        FaultyFiles files(faults);
        {
            SQLiteUserDefaults defaults(settings.place(layer.name()), settings.clock, settings.log,
                                        kImpatient, files);
            defaults.setString("theme", "new");
            (void)defaults.synchronize();
            defaults.setString("other", "new");
            (void)defaults.synchronize();
            EXPECT_EQ(defaults.string("theme"), "new");
            EXPECT_EQ(defaults.string("other"), "new");
        }
        if (!faults.haveBegun())
            break;

        const bool hasSaidSo = settings.hasLogged(LogLevel::error, "");
        settings.log.clear();
        expectSoundCopyOrNone(settings, before);
        const auto next = settings.run();
        const auto old = before == Before::journalOfAKilledRun ? std::optional<std::string>("old")
                                                               : std::nullopt;
        const bool isNew = next.string("theme") == "new" && next.string("other") == "new";
        EXPECT_TRUE(next.string("theme") == "new" || next.string("theme") == old) << first;
        EXPECT_TRUE(isNew || hasSaidSo) << first;
        EXPECT_TRUE(isNew || duration == Faults::Duration::forEver) << first;
        EXPECT_EQ(next.has("kept"), old.has_value()) << first;
    }
    EXPECT_GT(first, 20) << "or nothing was made to fail";
}

INSTANTIATE_TEST_SUITE_P(
    Disk, EveryFault,
    testing::Values(FaultCase{Before::nothing, Faults::Duration::once},
                    FaultCase{Before::nothing, Faults::Duration::forEver},
                    FaultCase{Before::journalOfAKilledRun, Faults::Duration::once},
                    FaultCase{Before::journalOfAKilledRun, Faults::Duration::forEver},
                    FaultCase{Before::garbage, Faults::Duration::once},
                    FaultCase{Before::garbage, Faults::Duration::forEver}));

struct DiskOfItsOwn : testing::Test, test::DefaultsFolder {
    test::SmallDisk disk{256 * 1024};

    void SetUp() override {
        if (disk.failure())
            GTEST_SKIP() << *disk.failure();
        folder = disk.path() / "orvanta";
        file = folder / "settings.db";
    }

    [[nodiscard]] SQLiteUserDefaults impatientRun() { return {place(), clock, log, kImpatient}; }

    bool isLoggedSoon(LogLevel level, std::string_view beginning) {
        return test::eventually(Seconds(30), [&] { return hasLogged(level, beginning); });
    }
};

TEST_F(DiskOfItsOwn, SavesWhatIsInMemoryOnceAFullDiskHasSpaceAgain) {
    runSetting("theme", "old");
    {
        auto defaults = impatientRun();
        disk.fillUpTo(0);
        defaults.setData("long", std::string(50'000, 'x'));
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_TRUE(
            hasLogged(LogLevel::error, "Settings cannot be saved: database or disk is full"));
        EXPECT_EQ(defaults.data("long")->size(), 50'000U);
        disk.makeSpace();
        EXPECT_TRUE(isLoggedSoon(LogLevel::info, "Settings are saved again"));
    }
    EXPECT_EQ(run().data("long"), std::string(50'000, 'x'));
    EXPECT_EQ(stored("theme"), "old");
}

TEST_F(DiskOfItsOwn, SaysOnceThatItIsFull) {
    auto defaults = impatientRun();
    disk.fillUpTo(0);
    for (int value = 0; value < 20; ++value) {
        defaults.setData("long", std::string(50'000, 'x'));
        EXPECT_FALSE(defaults.synchronize());
    }
    EXPECT_EQ(log.texts().size(), 1U);
    disk.makeSpace();
}

TEST_F(DiskOfItsOwn, ReadsWhatItCannotWrite) {
    runSetting("theme", "old");
    ASSERT_TRUE(disk.setReadOnly(true));
    {
        auto defaults = impatientRun();
        EXPECT_EQ(defaults.string("theme"), "old");
        defaults.setString("theme", "new");
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_EQ(defaults.string("theme"), "new");
        EXPECT_TRUE(hasLogged(LogLevel::error, "Settings cannot be saved: "));
    }
    EXPECT_TRUE(hasLogged(LogLevel::error, "The settings changed last are lost"));
    ASSERT_TRUE(disk.setReadOnly(false));
    EXPECT_EQ(stored("theme"), "old");
}

TEST_F(DiskOfItsOwn, StartsWithoutAFolderThatItCanMake) {
    ASSERT_TRUE(disk.setReadOnly(true));
    auto defaults = impatientRun();
    defaults.setString("theme", "new");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.string("theme"), "new");
    EXPECT_TRUE(hasLogged(LogLevel::error, "Settings cannot be saved: "));
    ASSERT_TRUE(disk.setReadOnly(false));
    EXPECT_TRUE(test::eventually(Seconds(30), [&] { return defaults.synchronize(); }));
}

TEST_F(DiskOfItsOwn, CopiesTheStateOfTheStartOnceThereIsSpaceForIt) {
    {
        auto defaults = run();
        defaults.setData("long", std::string(60'000, 'x'));
    }
    disk.fillUpTo(std::size_t{48} * 1024); // for what is shared while it is read, not for a copy
    {
        auto defaults = impatientRun();
        EXPECT_TRUE(isLoggedSoon(LogLevel::error, "The settings database could not be copied: "));
        disk.makeSpace();
        defaults.setData("long", "{}");
        EXPECT_TRUE(defaults.synchronize());
    }
    DefaultsDatabase copy(folder / "settings-last-start.db", "com.meridane.orvanta");
    EXPECT_EQ(std::get<DefaultsData>(copy.values().at("long")).bytes->size(), 60'000U);
    EXPECT_EQ(names(), (std::set<std::string>{"settings.db", "settings-last-start.db"}));
}

/// Files of another program that is a little faster than this one.
class FasterProgram final : public FileOperations {
public:
    explicit FasterProgram(std::function<void()> makeItsFile)
        : makeItsFile_(std::move(makeItsFile)) {}

    void makeFolder(const fs::path& folder) override { files_.makeFolder(folder); }

    bool makeFile(const fs::path& file) override {
        if (auto first = std::exchange(makeItsFile_, nullptr))
            first();
        return files_.makeFile(file);
    }

    void makePrivate(const fs::path& file) override { files_.makePrivate(file); }

    bool link(const fs::path& file, const fs::path& name) override {
        return files_.link(file, name);
    }

    void remove(const fs::path& file) override { files_.remove(file); }

    void rename(const fs::path& from, const fs::path& to) override { files_.rename(from, to); }

    void sync(const fs::path& fileOrFolder) override { files_.sync(fileOrFolder); }

private:
    std::function<void()> makeItsFile_;
    SystemFileOperations files_;
};

struct TwoPrograms : testing::Test, test::DefaultsFolder {};

TEST_F(TwoPrograms, ThatStartForTheFirstTimeTogetherLoseNothing) {
    FasterProgram files([this] { runSetting("theme", "the other's"); });
    {
        SQLiteUserDefaults defaults(place(), clock, log, kImpatient, files);
        defaults.setString("mine", "new");
        EXPECT_TRUE(defaults.synchronize());
    }
    EXPECT_EQ(stored("theme"), "the other's");
    EXPECT_EQ(stored("mine"), "new");
}

TEST_F(TwoPrograms, MayCopyAtTheSameTime) {
    runSetting("theme", "old");
    for (int round = 0; round < 10; ++round) {
        auto one = run();
        auto other = run();
        one.setString("one", "new");
        other.setString("other", "new");
    }
    for (const char* copy : {"settings-last-start.db", "settings-start-before.db"})
        EXPECT_TRUE(
            DefaultsDatabase(folder / copy, "com.meridane.orvanta").values().contains("theme"));
}

TEST_F(TwoPrograms, WhereOneHoldsTheFileAtTheOthersStartLoseNothing) {
    runSetting("theme", "old");
    {
        std::optional<sqlite::Connection> other;
        other.emplace(file, sqlite::Access::readWrite);
        other->run("PRAGMA journal_mode = DELETE; BEGIN EXCLUSIVE");
        SQLiteUserDefaults defaults(place(), clock, log, kImpatient);
        EXPECT_TRUE(hasLogged(LogLevel::error, "The settings cannot be read: database is locked"));
        EXPECT_FALSE(defaults.has("theme"));
        defaults.setString("theme", "new");
        other.reset();
        EXPECT_TRUE(test::eventually(Seconds(30), [&] { return defaults.synchronize(); }));
    }
    EXPECT_EQ(stored("theme"), "new");
    const fs::path unread = folder / "settings-not-read-2026-11-21T12-34-56Z.db";
    DefaultsDatabase kept(unread, "com.meridane.orvanta");
    EXPECT_EQ(*std::get<DefaultsText>(kept.values().at("theme")).text, "old");
    EXPECT_TRUE(log.has(LogLevel::error, "The settings that could not be read when the program "
                                         "started are kept in " +
                                             std::string(unread)));
}

struct OddFolder : testing::Test, test::DefaultsFolder {};

TEST_F(OddFolder, ThatIsAFileLeavesSettingsInMemory) {
    std::ofstream(directory.path() / "config") << "a file";
    auto defaults = run();
    defaults.setString("theme", "new");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.string("theme"), "new");
    EXPECT_TRUE(hasLogged(LogLevel::error, "Settings cannot be saved: "));
}

TEST_F(OddFolder, WhereTheDatabaseIsAFolderLeavesSettingsInMemory) {
    fs::create_directories(file);
    auto defaults = run();
    EXPECT_TRUE(hasLogged(LogLevel::error, "The settings cannot be read: "));
    defaults.setString("theme", "new");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(defaults.string("theme"), "new");
    EXPECT_TRUE(fs::is_directory(file));
}

TEST_F(OddFolder, WithADatabaseThatSomebodyHoldsIsWaitedForAndThenWritten) {
    runSetting("theme", "old");
    {
        SQLiteUserDefaults defaults(place(), clock, log, kImpatient);
        ASSERT_TRUE(defaults.synchronize());
        {
            sqlite::Connection other(file, sqlite::Access::readWrite);
            other.run("BEGIN IMMEDIATE");
            defaults.setString("theme", "new");
            EXPECT_FALSE(defaults.synchronize());
            EXPECT_TRUE(hasLogged(LogLevel::error, "Settings cannot be saved: database is locked"));
        }
        EXPECT_TRUE(defaults.synchronize());
    }
    EXPECT_EQ(stored("theme"), "new");
}

} // namespace
} // namespace orvanta
