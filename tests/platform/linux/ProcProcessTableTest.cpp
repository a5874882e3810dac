#include "platform/linux/ProcProcessTable.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

/// A child of ours that waits to be killed.
class Child {
public:
    Child() : pid_(fork()) {
        if (pid_ == 0) {
            pause();
            _exit(0);
        }
    }

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    ~Child() { end(); }

    [[nodiscard]] pid_t pid() const { return pid_; }

    void end() {
        if (hasEnded_)
            return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        hasEnded_ = true;
    }

private:
    pid_t pid_;
    bool hasEnded_ = false;
};

TEST(ProcProcessTable, KnowsItsOwnProcess) {
    const ProcProcessTable table;
    EXPECT_EQ(table.ownPID(), getpid());
    EXPECT_EQ(table.parent(table.ownPID()), getppid());
    EXPECT_EQ(table.path(table.ownPID()), fs::read_symlink("/proc/self/exe").string());
    // The kernel cuts this program's name.
    EXPECT_EQ(table.name(table.ownPID()), "orvanta_linux_t");
}

TEST(ProcProcessTable, KnowsAChildAndForgetsItWhenItHasEnded) {
    const ProcProcessTable table;
    Child child;
    EXPECT_EQ(table.parent(child.pid()), getpid());
    EXPECT_EQ(table.path(child.pid()), table.path(getpid()));
    EXPECT_TRUE(table.name(child.pid()));
    child.end();
    EXPECT_FALSE(table.parent(child.pid()));
    EXPECT_FALSE(table.path(child.pid()));
    EXPECT_FALSE(table.name(child.pid()));
}

TEST(ProcProcessTable, KnowsNothingOfIdsThatAreNone) {
    const ProcProcessTable table;
    for (const std::int32_t pid : {0, -1, -12345, 2147483647}) {
        EXPECT_FALSE(table.name(pid)) << pid;
        EXPECT_FALSE(table.path(pid)) << pid;
        EXPECT_FALSE(table.parent(pid)) << pid;
    }
}

/// A table over files that a test writes.
class WrittenProcTest : public ::testing::Test {
protected:
    static constexpr std::int32_t kPID = 4711;

    WrittenProcTest() { fs::create_directories(entry("")); }

    [[nodiscard]] fs::path entry(const std::string& file) const {
        return folder_.path() / std::to_string(kPID) / file;
    }

    void write(const std::string& file, const std::string& text) const {
        std::ofstream(entry(file), std::ios::binary) << text;
    }

    [[nodiscard]] std::optional<std::int32_t> parentOf(const std::string& stat) const {
        write("stat", stat);
        return table_.parent(kPID);
    }

    [[nodiscard]] std::optional<std::string> nameOf(const std::string& comm) const {
        write("comm", comm);
        return table_.name(kPID);
    }

    TemporaryFolder folder_;
    ProcProcessTable table_{folder_.path()};
};

TEST_F(WrittenProcTest, FindsTheParentBehindNamesOfAllKinds) {
    EXPECT_EQ(parentOf("4711 (player) S 42 4711 4711 0 -1"), 42);
    EXPECT_EQ(parentOf("4711 (Web Content) R 43 4711"), 43);
    EXPECT_EQ(parentOf("4711 (a) S 1 (b) S 44 4711"), 44);
    EXPECT_EQ(parentOf("4711 (() S 45 4711"), 45);
    EXPECT_EQ(parentOf("4711 ()) S 46 4711"), 46);
    EXPECT_EQ(parentOf("4711 (two\nlines) Z 47 4711"), 47);
    EXPECT_EQ(parentOf("4711 () S 48 4711"), 48);
    EXPECT_EQ(parentOf("1 (systemd) S 0 1 1"), 0);
}

TEST_F(WrittenProcTest, FindsNoParentInBrokenLines) {
    for (const char* stat :
         {"", "4711", "4711 (player", "4711 (player)", "4711 (player) ", "4711 (player) S",
          "4711 (player) S ", "4711 (player) S x 4711", "4711 (player) S 99999999999 4711"})
        EXPECT_FALSE(parentOf(stat)) << stat;
}

TEST_F(WrittenProcTest, TakesTheNameWithoutItsLineFeed) {
    EXPECT_EQ(nameOf("player\n"), "player");
    EXPECT_EQ(nameOf("two\nlines\n"), "two\nlines");
    EXPECT_EQ(nameOf("Web Content\n"), "Web Content");
}

TEST_F(WrittenProcTest, HasNoNameWhereItIsEmpty) {
    EXPECT_FALSE(nameOf("\n"));
    EXPECT_FALSE(nameOf(""));
}

TEST_F(WrittenProcTest, CutsTheNameAtSixteenBytes) {
    EXPECT_EQ(nameOf("0123456789abcdefXYZ\n"), "0123456789abcdef");
}

TEST_F(WrittenProcTest, LeavesOutACharacterThatTheKernelCutInTwo) {
    EXPECT_EQ(nameOf("spieler-mu\xC3\xBCsig\n"), "spieler-mu\xC3\xBCsig");
    EXPECT_EQ(nameOf("lautsprecher-m\xC3\n"), "lautsprecher-m");
    EXPECT_EQ(nameOf("music-player-\xE9\x9F\n"), "music-player-");
    EXPECT_EQ(nameOf("music-player\xE9\x9F\xB3\n"), "music-player\xE9\x9F\xB3");
    EXPECT_EQ(nameOf("player \xF0\x9F\x8E\n"), "player ");
    EXPECT_EQ(nameOf("0123456789abcd\xE9\x9F\xB3\n"), "0123456789abcd");
}

TEST_F(WrittenProcTest, TellsThePathOfTheExecutable) {
    fs::create_symlink("/usr/bin/player", entry("exe"));
    EXPECT_EQ(table_.path(kPID), "/usr/bin/player");
}

TEST_F(WrittenProcTest, TellsWhereAReplacedProgramWasStartedFrom) {
    fs::create_symlink("/usr/bin/player (deleted)", entry("exe"));
    EXPECT_EQ(table_.path(kPID), "/usr/bin/player");
}

TEST_F(WrittenProcTest, BelievesAnExecutableThatIsReallyCalledDeleted) {
    const fs::path program = folder_.path() / "player (deleted)";
    std::ofstream(program) << "program";
    fs::create_symlink(program, entry("exe"));
    EXPECT_EQ(table_.path(kPID), program.string());
}

} // namespace
} // namespace orvanta::test
