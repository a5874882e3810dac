#include "tests/support/ChildProcess.h"
#include "tests/support/FileContent.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sys/wait.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

constexpr Seconds kBound{120};

std::string markerLine(int signal) {
    return "CRASH:SIG:" + std::to_string(signal) + "\n";
}

/// Programs that die, one after the other, and what they leave in a home folder.
class Crashes {
public:
    /// The status by which its parent sees it end.
    int run(const std::string& cause, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> command{ORVANTA_CRASHING_PROGRAM, home().string(), cause};
        command.insert(command.end(), options.begin(), options.end());
        ChildProcess program({.command = command, .logFile = home() / "output"});
        EXPECT_TRUE(program.waitForExit(kBound));
        return program.waitStatus().value_or(0);
    }

    [[nodiscard]] const fs::path& home() const { return home_.path(); }

    [[nodiscard]] fs::path logs() const { return home() / "Library/Logs/Orvanta"; }

    [[nodiscard]] std::string marker() const {
        return fileContent(logs() / "crashes/crash-marker.log");
    }

    [[nodiscard]] fs::path reportFile() const {
        return logs() / "crashes/crash-2026-11-21T12-34-56Z.log";
    }

    [[nodiscard]] std::string report() const { return fileContent(reportFile()); }

    [[nodiscard]] std::size_t filesInFolder() const {
        const fs::directory_iterator folder(logs() / "crashes");
        return static_cast<std::size_t>(std::distance(begin(folder), end(folder)));
    }

    [[nodiscard]] std::string output() const { return fileContent(home() / "output"); }

private:
    const TemporaryDirectory home_;
};

void expectDeathOf(int status, int signal) {
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), signal);
}

/// A cause of death, the signal that it ends in, and the thread.
struct Death {
    std::string cause;
    int signal;
    std::string thread;
};

void PrintTo(const Death& death, std::ostream* out) {
    *out << death.cause << ' ' << death.thread;
}

std::vector<Death> onBothThreads(const std::vector<Death>& deaths) {
    std::vector<Death> both;
    for (const Death& death : deaths)
        for (const char* thread : {"main", "worker"})
            both.push_back({death.cause, death.signal, thread});
    return both;
}

std::string nameOf(const ::testing::TestParamInfo<Death>& info) {
    std::string name = info.param.cause + "_" + info.param.thread;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

std::vector<std::string> optionsOf(const Death& death) {
    return death.thread == "worker" ? std::vector<std::string>{"--worker"}
                                    : std::vector<std::string>{};
}

std::vector<Death> faults() {
    return {
        {"segmentation", SIGSEGV, ""}, {"bus-error", SIGBUS, ""},
#if defined(__x86_64__)
            {"division", SIGFPE, ""}, {"illegal-instruction", SIGILL, ""},
            {"breakpoint", SIGTRAP, ""},
#endif
    };
}

class FatalSignal : public ::testing::TestWithParam<Death> {};

TEST_P(FatalSignal, LeavesItsLineAndEndsTheProgram) {
    Crashes crashes;
    expectDeathOf(crashes.run(GetParam().cause, optionsOf(GetParam())), GetParam().signal);
    EXPECT_EQ(crashes.marker(), markerLine(GetParam().signal));
    EXPECT_EQ(crashes.filesInFolder(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Raised, FatalSignal,
                         ::testing::ValuesIn(onBothThreads({{"raise-11", SIGSEGV, ""},
                                                            {"raise-7", SIGBUS, ""},
                                                            {"raise-6", SIGABRT, ""},
                                                            {"raise-8", SIGFPE, ""},
                                                            {"raise-4", SIGILL, ""},
                                                            {"raise-5", SIGTRAP, ""}})),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(ByFault, FatalSignal, ::testing::ValuesIn(onBothThreads(faults())),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(ByOverflow, FatalSignal,
                         ::testing::Values(Death{"stack-overflow", SIGSEGV, "main"}), nameOf);

class Exception : public ::testing::TestWithParam<Death> {};

TEST_P(Exception, LeavesAReportAndTheLineOfTheSignalThatFollows) {
    Crashes crashes;
    expectDeathOf(crashes.run(GetParam().cause, optionsOf(GetParam())), SIGABRT);
    EXPECT_EQ(crashes.marker(), markerLine(SIGABRT));
    EXPECT_THAT(crashes.report(), HasSubstr("\nType: EXCEPTION\n"));
    EXPECT_EQ(crashes.filesInFolder(), 2U);
    EXPECT_THAT(fileContent(crashes.logs() / "activity.log"),
                ::testing::EndsWith("[2026-11-21T12:34:56Z] 🔴 CRASH: " + crashes.report() + "\n"));
}

INSTANTIATE_TEST_SUITE_P(ThatNobodyCatches, Exception,
                         ::testing::ValuesIn(onBothThreads({{"runtime-error", SIGABRT, ""},
                                                            {"own-exception", SIGABRT, ""},
                                                            {"number", SIGABRT, ""},
                                                            {"broken-what", SIGABRT, ""},
                                                            {"memory", SIGABRT, ""},
                                                            {"forgotten-thread", SIGABRT, ""}})),
                         nameOf);

std::string reasonAfter(const std::string& cause) {
    Crashes crashes;
    crashes.run(cause);
    const std::string report = crashes.report();
    const auto start = report.find("Reason: ");
    return report.substr(start, report.find('\n', start) - start);
}

TEST(ExceptionReport, NamesTheTypeAndGivesItsReason) {
    EXPECT_EQ(reasonAfter("runtime-error"), "Reason: std::runtime_error: no such device: ½ \uFFFD");
    EXPECT_EQ(reasonAfter("memory"), "Reason: std::bad_alloc: std::bad_alloc");
}

TEST(ExceptionReport, SaysUnknownForAReasonThatIsMissing) {
    EXPECT_EQ(reasonAfter("own-exception"), "Reason: orvanta::test::Mixer::DeviceLost: unknown");
    EXPECT_EQ(reasonAfter("number"), "Reason: int: unknown");
    EXPECT_THAT(reasonAfter("nameless-reason"), MatchesRegex("Reason: .*NamelessReason: unknown"));
}

TEST(ExceptionReport, NamesTheExceptionWhoseReasonCannotBeAskedFor) {
    EXPECT_THAT(reasonAfter("broken-what"), MatchesRegex("Reason: .*BrokenWhat: unknown"));
}

TEST(ExceptionReport, NamesAnEndWithoutException) {
    EXPECT_EQ(reasonAfter("forgotten-thread"), "Reason: std::terminate: unknown");
}

TEST(ExceptionReport, HasItsWholeForm) {
    Crashes crashes;
    crashes.run("own-exception");
    const std::string rule = "═══════════════════════════════════════════════════";
    const std::string report = crashes.report();
    const std::string head = rule + "\nOrvanta Crash Report\n" + rule +
                             "\n"
                             "Timestamp: 2026-11-21T12:34:56Z\n"
                             "App Version: 1.2 (?)\n"
                             "macOS: Test OS 3\n"
                             "Type: EXCEPTION\n"
                             "Reason: orvanta::test::Mixer::DeviceLost: unknown\n"
                             "\n"
                             "Call Stack:\n";
    ASSERT_THAT(report, StartsWith(head));
    const std::string foot = "\n\n" + rule;
    ASSERT_THAT(report, ::testing::EndsWith(foot));

    std::istringstream stack(report.substr(head.size(), report.size() - head.size() - foot.size()));
    int index = 0;
    std::string thrower;
    for (std::string line; std::getline(stack, line); ++index) {
        const std::string start = "  " + std::to_string(index) + ": ";
        EXPECT_THAT(line, MatchesRegex(start + "[^ /]+ (.+ \\+ [0-9]+|0x[0-9a-f]+ \\(\\+0x[0-9a-f]+"
                                               "\\))"));
        if (line.find(" orvanta::test::loseTheDevice() + ") != std::string::npos)
            thrower = line;
    }
    EXPECT_GT(index, 3);
    EXPECT_THAT(thrower, HasSubstr(": orvanta_crashing_program "));
    EXPECT_THAT(report, Not(HasSubstr("onTerminate")));
    EXPECT_THAT(report, Not(HasSubstr("callStackSymbols")));
}

TEST(ExceptionReport, IsTheUsersAlone) {
    Crashes crashes;
    crashes.run("number");
    for (const fs::path& file : {crashes.reportFile(), crashes.logs() / "crashes/crash-marker.log",
                                 crashes.logs() / "activity.log"})
        EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write)
            << file;
}

TEST(ExceptionReport, IsThatOfTheFirstOfTwoThreads) {
    Crashes crashes;
    expectDeathOf(crashes.run("runtime-error", {"--second-exception"}), SIGABRT);
    EXPECT_THAT(crashes.report(), HasSubstr("\nReason: std::runtime_error: no such device"));
    EXPECT_THAT(fileContent(crashes.logs() / "activity.log"), Not(HasSubstr("the second")));
    // The second one, too, where the first took longer than the second waits.
    EXPECT_THAT(crashes.marker(),
                AnyOf(markerLine(SIGABRT), markerLine(SIGABRT) + markerLine(SIGABRT)));
}

TEST(ExceptionReport, ComesBeforeTheHandlerThatStoodThereBefore) {
    Crashes crashes;
    crashes.run("runtime-error");
    // What the language prints of its own accord.
    EXPECT_THAT(crashes.output(), HasSubstr("terminate called after throwing an instance of "));
    EXPECT_THAT(crashes.output(), HasSubstr("no such device"));
}

TEST(ExceptionReport, IsWrittenOnceByAReporterThatWasInstalledTwice) {
    Crashes crashes;
    expectDeathOf(crashes.run("runtime-error", {"--installed-twice"}), SIGABRT);
    EXPECT_EQ(crashes.marker(), markerLine(SIGABRT));
    EXPECT_EQ(crashes.filesInFolder(), 2U);
    EXPECT_THAT(crashes.output(), HasSubstr("terminate called after throwing an instance of "));
}

TEST(ExceptionReport, IsFollowedByTheEndWhateverTheHandlerBeforeDoes) {
    for (const char* option : {"--handler-returns", "--handler-throws"}) {
        Crashes crashes;
        expectDeathOf(crashes.run("own-exception", {option}), SIGABRT);
        EXPECT_EQ(crashes.marker(), markerLine(SIGABRT));
        EXPECT_THAT(crashes.report(), HasSubstr("\nReason: orvanta::test::Mixer::DeviceLost"));
    }
}

TEST(ExceptionReport, DoesNotHappenWhereNoFileCanBeMade) {
    Crashes crashes;
    expectDeathOf(crashes.run("runtime-error", {"--folder-closed"}), SIGABRT);
    EXPECT_EQ(crashes.marker(), markerLine(SIGABRT));
    EXPECT_EQ(crashes.filesInFolder(), 1U);
    EXPECT_THAT(crashes.output(), HasSubstr("terminate called after throwing an instance of "));
}

TEST(ExceptionReport, DoesNotHappenInAFolderThatIsGone) {
    Crashes crashes;
    expectDeathOf(crashes.run("runtime-error", {"--folder-gone"}), SIGABRT);
    EXPECT_FALSE(fs::exists(crashes.logs()));
    EXPECT_THAT(crashes.output(), HasSubstr("terminate called after throwing an instance of "));
}

TEST(CrashMarker, GathersALineForEachDeath) {
    Crashes crashes;
    crashes.run("raise-11");
    crashes.run("number");
    crashes.run("raise-5");
    EXPECT_EQ(crashes.marker(), markerLine(11) + markerLine(6) + markerLine(5));
}

TEST(CrashMarker, IsWrittenToWhereItWasMovedUntilTheNextLaunchMakesAFreshOne) {
    Crashes crashes;
    crashes.run("raise-11", {"--reports-sent"});
    EXPECT_FALSE(fs::exists(crashes.logs() / "crashes/crash-marker.log"));
    EXPECT_EQ(fileContent(crashes.logs() / "crashes/sent/crash-marker.log"), markerLine(11));
    crashes.run("raise-8");
    EXPECT_EQ(crashes.marker(), markerLine(8));
    EXPECT_EQ(fileContent(crashes.logs() / "crashes/sent/crash-marker.log"), markerLine(11));
}

TEST(CrashMarker, TakesNothingOfWhatAProgramWithoutStandardOutputPrints) {
    Crashes crashes;
    expectDeathOf(crashes.run("runtime-error", {"--without-output"}), SIGABRT);
    EXPECT_EQ(crashes.marker(), markerLine(SIGABRT));
    EXPECT_THAT(crashes.report(), HasSubstr("\nReason: std::runtime_error"));
}

TEST(CrashMarker, IsMissedWhereItCannotBeOpenedAndTheProgramEndsAllTheSame) {
    Crashes crashes;
    fs::create_directories(crashes.logs() / "crashes/crash-marker.log");
    expectDeathOf(crashes.run("segmentation"), SIGSEGV);
    expectDeathOf(crashes.run("number"), SIGABRT);
    EXPECT_THAT(crashes.report(), HasSubstr("\nReason: int"));

    Crashes withoutFolder;
    std::ofstream(withoutFolder.home() / "Library") << "a file";
    expectDeathOf(withoutFolder.run("segmentation"), SIGSEGV);
    expectDeathOf(withoutFolder.run("runtime-error"), SIGABRT);
}

/// A program under a sanitizer dies of a fatal signal as any other does.
ScopedEnvironment::Variables withoutHandlersOfSanitizers() {
    ScopedEnvironment::Variables variables;
    for (const char* name : {"ASAN_OPTIONS", "TSAN_OPTIONS"}) {
        const char* const present = std::getenv(name);
        variables[name] = std::string(present != nullptr ? present : "") +
                          ":handle_segv=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0"
                          ":handle_sigtrap=0:handle_abort=0";
    }
    return variables;
}

class EndOfProgram : public ::testing::TestWithParam<Death> {
protected:
    static void expectTheSameEnd(std::vector<std::string> options) {
        const ScopedEnvironment environment(withoutHandlersOfSanitizers());
        Crashes with;
        Crashes without;
        const int status = with.run(GetParam().cause, options);
        options.emplace_back("--without-reporter");
        EXPECT_EQ(status, without.run(GetParam().cause, options));
        expectDeathOf(status, GetParam().signal);
        EXPECT_FALSE(fs::exists(without.logs()));
    }

    /// Whether a program's core file lands in the folder where it runs.
    static bool coreFilesAreWrittenInPlace() {
        std::ifstream file("/proc/sys/kernel/core_pattern");
        std::string pattern;
        return std::getline(file, pattern) && pattern.find_first_of("|/") == std::string::npos;
    }
};

TEST_P(EndOfProgram, IsWhatItWouldBeWithoutTheReporter) {
    expectTheSameEnd(optionsOf(GetParam()));
}

#ifndef ORVANTA_IS_SANITIZED
// A sanitizer's memory map fills a disk.
TEST_P(EndOfProgram, LeavesTheCoreFileThatItWouldLeaveWithoutTheReporter) {
    if (!coreFilesAreWrittenInPlace())
        GTEST_SKIP() << "this system takes core files elsewhere";
    std::vector<std::string> options = optionsOf(GetParam());
    options.emplace_back("--core-files");
    expectTheSameEnd(options);
    Crashes crashes;
    EXPECT_TRUE(WCOREDUMP(crashes.run(GetParam().cause, options)));
}
#endif

INSTANTIATE_TEST_SUITE_P(
    Of, EndOfProgram,
    ::testing::ValuesIn(onBothThreads({{"raise-11", SIGSEGV, ""},
                                       {"raise-6", SIGABRT, ""},
                                       {"segmentation", SIGSEGV, ""},
                                       {"bus-error", SIGBUS, ""},
                                       {"runtime-error", SIGABRT, ""},
                                       {"number", SIGABRT, ""},
                                       {"forgotten-thread", SIGABRT, ""},
                                       // The language's own handler falls over it.
                                       {"nameless-reason", SIGSEGV, ""},
                                       {"stack-overflow", SIGSEGV, ""}})),
    nameOf);

} // namespace
} // namespace orvanta::test
