#include "platform/linux/desktop/DesktopEntries.h"

#include "tests/support/ScriptedDesktop.h"

#include <gtest/gtest.h>

#include <functional>
#include <sys/stat.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

class DesktopEntriesTest : public ::testing::Test {
protected:
    static void write(const fs::path& file, const std::string& name, const std::string& more = "") {
        ScriptedProc::write(file, "[Desktop Entry]\nType=Application\nName=" + name + "\n" + more);
    }

    [[nodiscard]] fs::path userFile(const std::string& name) const {
        return folders_.dataHome / "applications" / name;
    }

    [[nodiscard]] fs::path systemFile(const std::string& name) const {
        return folders_.dataFolders[0] / "applications" / name;
    }

    [[nodiscard]] std::string nameOf(const std::string& id) {
        entries_.refresh();
        const auto found = entries_.all().find(id);
        return found == entries_.all().end() ? "" : found->second->name;
    }

    /// Changes a folder in another tick of the file system's clock than the last change: two in one
    /// tick cannot be told apart by their time.
    static void change(const fs::path& folder, const std::function<void()>& how) {
        const desktop::FolderState before = desktop::stateOf(folder);
        how();
        while (desktop::stateOf(folder) == before) {
            ScriptedProc::write(folder / "tick", "");
            fs::remove(folder / "tick");
            how();
        }
    }

    /// An hour from now, when all that has changed is long ago.
    bool refreshLater() { return entries_.refresh(Clock::now() + std::chrono::hours(1)); }

    using Clock = std::chrono::system_clock;

    TemporaryDirectory directory_;
    DesktopFolders folders_{.home = directory_.path(),
                            .dataHome = directory_.path() / "user",
                            .dataFolders = {directory_.path() / "a", directory_.path() / "b"},
                            .configHome = {},
                            .executableFolders = {},
                            .locales = {}};
    desktop::DesktopEntries entries_{folders_};
};

TEST_F(DesktopEntriesTest, AreNoneWithoutFolders) {
    entries_.refresh();
    EXPECT_TRUE(entries_.all().empty());
}

TEST_F(DesktopEntriesTest, OfOneIDTheFirstFolderCounts) {
    write(folders_.dataFolders[1] / "applications/player.desktop", "Second");
    EXPECT_EQ(nameOf("player"), "Second");
    write(systemFile("player.desktop"), "First");
    EXPECT_EQ(nameOf("player"), "First");
    write(userFile("player.desktop"), "Mine");
    EXPECT_EQ(nameOf("player"), "Mine");
}

TEST_F(DesktopEntriesTest, AreTakenAwayByAHiddenOne) {
    write(systemFile("player.desktop"), "Player");
    write(userFile("player.desktop"), "Player", "Hidden=true\n");
    EXPECT_EQ(nameOf("player"), "");
}

TEST_F(DesktopEntriesTest, AreNotTakenAwayByABrokenOne) {
    write(systemFile("player.desktop"), "Player");
    ScriptedProc::write(userFile("player.desktop"), "not an entry");
    EXPECT_EQ(nameOf("player"), "Player");
}

TEST_F(DesktopEntriesTest, NameSubFoldersWithDashes) {
    write(systemFile("kde/games/chess.desktop"), "Chess");
    EXPECT_EQ(nameOf("kde-games-chess"), "Chess");
}

TEST_F(DesktopEntriesTest, AreFoundByTheirFile) {
    write(systemFile("player.desktop"), "Player");
    entries_.refresh();
    const auto entry = entries_.entryOfFile(systemFile("player.desktop"));
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, "player");
    EXPECT_FALSE(entries_.entryOfFile(userFile("player.desktop")));
}

TEST_F(DesktopEntriesTest, AreReadAgainOnlyWhenAFolderHasChanged) {
    write(systemFile("sub/player.desktop"), "Player");
    EXPECT_TRUE(refreshLater());
    EXPECT_FALSE(refreshLater());
    change(systemFile("sub"), [this] { write(systemFile("sub/radio.desktop"), "Radio"); });
    EXPECT_TRUE(refreshLater());
    EXPECT_TRUE(entries_.all().contains("sub-radio"));
    EXPECT_FALSE(refreshLater());
    change(systemFile("sub"), [this] { fs::remove(systemFile("sub/radio.desktop")); });
    EXPECT_TRUE(refreshLater());
    EXPECT_FALSE(entries_.all().contains("sub-radio"));
}

TEST_F(DesktopEntriesTest, AreReadOnceFromAFolderDatedInTheFuture) {
    write(systemFile("player.desktop"), "Player");
    fs::last_write_time(systemFile(""), fs::file_time_type::clock::now() + std::chrono::hours(48));
    EXPECT_TRUE(refreshLater());
    EXPECT_FALSE(refreshLater());
}

TEST_F(DesktopEntriesTest, AreReadOnceUnderAClockThatIsLate) {
    write(systemFile("player.desktop"), "Player");
    EXPECT_TRUE(entries_.refresh(Clock::now() - std::chrono::hours(48)));
    EXPECT_FALSE(entries_.refresh(Clock::now()));
}

TEST_F(DesktopEntriesTest, AreReadAgainWhenALinkMovesToAnotherFolderOfTheSameTime) {
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (const char* name : {"Old", "New"}) {
        write(directory_.path() / name / "player.desktop", name);
        fs::last_write_time(directory_.path() / name, time);
    }
    fs::create_directories(folders_.dataFolders[0]);
    const fs::path link = folders_.dataFolders[0] / "applications";
    fs::create_directory_symlink(directory_.path() / "Old", link);
    EXPECT_TRUE(refreshLater());
    EXPECT_EQ(entries_.all().at("player")->name, "Old");
    fs::remove(link);
    fs::create_directory_symlink(directory_.path() / "New", link);
    EXPECT_TRUE(refreshLater());
    EXPECT_EQ(entries_.all().at("player")->name, "New");
}

TEST_F(DesktopEntriesTest, AreReadAgainWhenAFolderChangesAndItsTimeIsSetBack) {
    write(systemFile("player.desktop"), "Player");
    const auto time = fs::last_write_time(systemFile(""));
    EXPECT_TRUE(refreshLater());
    change(systemFile(""), [&] {
        write(systemFile("radio.desktop"), "Radio");
        fs::last_write_time(systemFile(""), time);
    });
    EXPECT_TRUE(refreshLater());
    EXPECT_TRUE(entries_.all().contains("radio"));
}

TEST_F(DesktopEntriesTest, AreReadAgainWhenAFolderComes) {
    EXPECT_TRUE(entries_.refresh());
    EXPECT_FALSE(entries_.refresh());
    write(userFile("player.desktop"), "Player");
    EXPECT_EQ(nameOf("player"), "Player");
}

TEST_F(DesktopEntriesTest, AreReadAgainShortlyAfterAChangeSinceAnotherMayFollowInTheSameTick) {
    write(systemFile("player.desktop"), "Player");
    EXPECT_TRUE(entries_.refresh());
    EXPECT_TRUE(entries_.refresh());
}

TEST_F(DesktopEntriesTest, FollowNoLinksToFolders) {
    write(systemFile("player.desktop"), "Player");
    fs::create_directory_symlink(systemFile(""), systemFile("again"));
    EXPECT_EQ(nameOf("player"), "Player");
    EXPECT_EQ(entries_.all().size(), 1U);
}

TEST_F(DesktopEntriesTest, FollowLinksToFiles) {
    write(directory_.path() / "exported.desktop", "Exported");
    fs::create_directories(systemFile(""));
    fs::create_symlink(directory_.path() / "exported.desktop", systemFile("player.desktop"));
    EXPECT_EQ(nameOf("player"), "Exported");
}

TEST_F(DesktopEntriesTest, PassOverWhatIsNoSmallFile) {
    write(systemFile("player.desktop"), "Player");
    fs::create_directories(systemFile("folder.desktop"));
    ASSERT_EQ(mkfifo(systemFile("pipe.desktop").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", systemFile("endless.desktop"));
    fs::create_symlink("/nowhere", systemFile("dangling.desktop"));
    write(systemFile("huge.desktop"), "Huge");
    fs::resize_file(systemFile("huge.desktop"), std::uintmax_t(1) << 30U);
    ScriptedProc::write(systemFile(".desktop"), "[Desktop Entry]\nType=Application\nName=x\n");
    entries_.refresh();
    ASSERT_EQ(entries_.all().size(), 1U);
    EXPECT_EQ(entries_.all().begin()->first, "player");
}

TEST_F(DesktopEntriesTest, ReadAnEntryOfHundredKilobytes) {
    write(systemFile("player.desktop"), "Player", "Comment=" + std::string(100000, 'x') + "\n");
    EXPECT_EQ(nameOf("player"), "Player");
}

} // namespace
} // namespace orvanta::test
