#include "platform/linux/ProcProcessTable.h"

#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <latch>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

/// Far more than a process of tests needs for a moment of work or for starting.
constexpr Seconds kBound{60};

void doNothing() {}

[[noreturn]] void spin() {
    for (volatile unsigned turns = 0;;)
        turns = turns + 1;
}

constexpr std::size_t kHeldMemory = 64U << 20U;

/// Memory of this process alone that has been written to.
void holdMemory() {
    constexpr std::size_t kSmallestPage = 4096;
    void* const memory =
        mmap(nullptr, kHeldMemory, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return;
    for (std::size_t at = 0; at < kHeldMemory; at += kSmallestPage)
        static_cast<volatile char*>(memory)[at] = 1;
}

/// A child of ours that does its work and then waits to be killed.
class Child {
public:
    explicit Child(void (*work)() = doNothing) : pid_(fork()) {
        if (pid_ == 0) {
            work();
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

TEST(ProcProcessTable, KnowsWhatItsOwnProcessUses) {
    const auto info = ProcProcessTable().taskInfo(getpid());
    ASSERT_TRUE(info);
    EXPECT_GE(info->threadCount, 1);
    EXPECT_GT(info->residentSize, 0U);
    EXPECT_GT(info->virtualSize, info->residentSize);
}

TEST(ProcProcessTable, CountsTheThreadsOfAProcess) {
    constexpr std::int32_t kThreads = 3;
    std::latch end(1);
    std::vector<std::jthread> threads;
    for (std::int32_t thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([&end] { end.wait(); });
    const auto info = ProcProcessTable().taskInfo(getpid());
    end.count_down();
    ASSERT_TRUE(info);
    EXPECT_GE(info->threadCount, kThreads + 1);
}

TEST(ProcProcessTable, SeesTheProcessorTimeOfAProcessGrow) {
    const ProcProcessTable table;
    const Child child(spin);
    const auto total = [&] {
        const auto info = table.taskInfo(child.pid());
        return info ? info->totalUser + info->totalSystem : 0;
    };
    const auto before = total();
    EXPECT_TRUE(eventually(kBound, [&] { return total() > before; }));
    const auto later = total();
    EXPECT_TRUE(eventually(kBound, [&] { return total() > later; }));
    EXPECT_GT(table.taskInfo(child.pid())->totalUser, 0U) << "it never calls the system";
}

TEST(ProcProcessTable, SeesTheMemoryThatAProcessHolds) {
    const ProcProcessTable table;
    const Child child(holdMemory);
    const auto resident = [&] {
        const auto info = table.taskInfo(child.pid());
        return info ? info->residentSize : 0;
    };
    EXPECT_TRUE(eventually(kBound, [&] { return resident() >= kHeldMemory; }));
    EXPECT_GT(table.taskInfo(child.pid())->virtualSize, kHeldMemory);
}

TEST(ProcProcessTable, KnowsNotWhatAProcessUsesThatHasEnded) {
    const ProcProcessTable table;
    Child child;
    EXPECT_TRUE(table.taskInfo(child.pid()));
    child.end();
    EXPECT_FALSE(table.taskInfo(child.pid()));
}

TEST(ProcProcessTable, KnowsNothingOfIdsThatAreNone) {
    const ProcProcessTable table;
    for (const std::int32_t pid : {0, -1, -12345, 2147483647}) {
        EXPECT_FALSE(table.name(pid)) << pid;
        EXPECT_FALSE(table.path(pid)) << pid;
        EXPECT_FALSE(table.parent(pid)) << pid;
        EXPECT_FALSE(table.taskInfo(pid)) << pid;
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

    [[nodiscard]] std::optional<ProcessTaskInfo> taskInfoOf(const std::string& stat) const {
        write("stat", stat);
        return table_.taskInfo(kPID);
    }

    [[nodiscard]] std::optional<std::string> nameOf(const std::string& comm) const {
        write("comm", comm);
        return table_.name(kPID);
    }

    TemporaryDirectory folder_;
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

/// From the state to the resident pages: 250 ticks in the program, 75 in the system, 12 threads,
/// 1,000,000 bytes, 40 pages.
constexpr auto kFigures = "S 42 4711 4711 0 -1 4194560 1 2 3 4 250 75 5 6 20 0 12 0 99 1000000 40";

TEST_F(WrittenProcTest, FindsWhatTheProcessUsesBehindNamesOfAllKinds) {
    const auto ticksPerSecond = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    const ProcessTaskInfo expected{.virtualSize = 1'000'000,
                                   .residentSize = 40 * pageSize,
                                   .totalUser = 250'000'000'000 / ticksPerSecond,
                                   .totalSystem = 75'000'000'000 / ticksPerSecond,
                                   .threadCount = 12};
    for (const char* name : {"player", "Web Content", "a) S 1 2 3 (b", ") R 1 2", "((", ""})
        EXPECT_EQ(taskInfoOf("4711 (" + std::string(name) + ") " + kFigures +
                             " 18446744073709551615 1 1 0\n"),
                  expected)
            << name;
}

TEST_F(WrittenProcTest, TellsTheProcessorTimeOfCenturiesInFull) {
    const auto ticksPerSecond = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    constexpr std::uint64_t kSeconds = 10'000'000'000;
    const auto info =
        taskInfoOf("4711 (old) S 1 1 1 0 -1 0 0 0 0 0 " +
                   std::to_string(kSeconds * ticksPerSecond) + " 0 0 0 20 0 1 0 99 0 0");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->totalUser, kSeconds * 1'000'000'000);
}

TEST_F(WrittenProcTest, KnowsNotWhatTheProcessUsesWhereAFigureIsMissingOrBroken) {
    const std::string whole = std::string("4711 (player) ") + kFigures;
    ASSERT_TRUE(taskInfoOf(whole));
    for (auto end = whole.rfind(' '); end != std::string::npos && end > 0;
         end = whole.rfind(' ', end - 1))
        EXPECT_FALSE(taskInfoOf(whole.substr(0, end))) << whole.substr(0, end);
    for (const char* figure : {"250", "75", "12", "1000000", "40"}) {
        std::string broken = whole;
        broken.replace(broken.rfind(std::string(" ") + figure) + 1, 2, "x1");
        EXPECT_FALSE(taskInfoOf(broken)) << broken;
    }
    EXPECT_FALSE(taskInfoOf(""));
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
