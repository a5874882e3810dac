#include "core/services/CrashReporter.h"

#include "tests/core/services/support/OrdinaryUser.h"
#include "tests/core/services/support/ScopedUmask.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FileContent.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/ScriptedWallClock.h"
#include "tests/support/SmallDisk.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <exception>
#include <fstream>
#include <stdexcept>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;
using crash::UncaughtException;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

/// What `install` sets is the whole program's: put back as it was.
class ScopedHandlers {
public:
    ScopedHandlers() {
        for (std::size_t index = 0; index < kSignals.size(); ++index)
            sigaction(kSignals[index], nullptr, &actions_[index]);
    }

    ScopedHandlers(const ScopedHandlers&) = delete;
    ScopedHandlers& operator=(const ScopedHandlers&) = delete;

    ~ScopedHandlers() {
        for (std::size_t index = 0; index < kSignals.size(); ++index)
            sigaction(kSignals[index], &actions_[index], nullptr);
        std::set_terminate(terminate_);
    }

    static constexpr std::array kSignals{SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL, SIGTRAP};

private:
    std::array<struct sigaction, kSignals.size()> actions_{};
    const std::terminate_handler terminate_ = std::get_terminate();
};

class CrashReporterTest : public ::testing::Test {
protected:
    HostInfo host() const { return {home_.path(), "2.0.1", "417", "Test OS 3"}; }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(crashes_ / name, std::ios::binary) << text;
    }

    void writeReports(int count) const {
        for (int number = 1; number <= count; ++number)
            write("crash-2026-01-0" + std::to_string(number) + "T00-00-00Z.log",
                  "report " + std::to_string(number));
    }

    const TemporaryDirectory home_;
    const fs::path logs_ = home_.path() / "Library/Logs/Orvanta";
    const fs::path crashes_ = logs_ / "crashes";
    ScriptedWallClock clock_;
    CrashReporter reporter_{host(), clock_};
    const ScopedHandlers handlers_;
};

TEST_F(CrashReporterTest, MakesItsFolderForTheUserAlone) {
    EXPECT_EQ(reporter_.logDir(), crashes_);
    for (const fs::path& folder :
         {crashes_, logs_, logs_.parent_path(), logs_.parent_path().parent_path()})
        EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all) << folder;
}

TEST_F(CrashReporterTest, FindsNothingBeforeItIsInstalled) {
    EXPECT_FALSE(reporter_.hasUnsentReports());
    EXPECT_EQ(reporter_.unsentReportCount(), 0);
    EXPECT_FALSE(reporter_.composeReportEmail());
    EXPECT_FALSE(reporter_.composeReportURL());
}

TEST_F(CrashReporterTest, CountsTheMarkerOfAFreshHomeFolder) {
    reporter_.install();
    EXPECT_TRUE(reporter_.hasUnsentReports());
    EXPECT_EQ(reporter_.unsentReportCount(), 1);
    const auto email = reporter_.composeReportEmail();
    ASSERT_TRUE(email);
    EXPECT_EQ(email->subject, "Orvanta Crash Report — v2.0.1");
    EXPECT_EQ(email->body,
              "Hi Meridane,\n"
              "\n"
              "Orvanta encountered a crash. Here are the details:\n"
              "\n"
              "App Version: 2.0.1\n"
              "macOS: Test OS 3\n"
              "Reports: 1\n"
              "\n"
              "--- crash-marker.log ---\n"
              "\n"
              "\n"
              "[Additional context: describe what you were doing when the crash happened]\n");
}

TEST_F(CrashReporterTest, TellsTheActivityLogOfEachLaunch) {
    reporter_.install();
    clock_.time += std::chrono::hours(1);
    reporter_.install();
    EXPECT_EQ(fileContent(logs_ / "activity.log"),
              "[2026-11-21T12:34:56Z] 🟢 Orvanta launched — crash reporter installed\n"
              "[2026-11-21T13:34:56Z] 🟢 Orvanta launched — crash reporter installed\n");
}

TEST_F(CrashReporterTest, MakesFilesForTheUserAloneWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{0777}}) {
        const ScopedUmask umask(mask);
        const TemporaryDirectory home;
        CrashReporter reporter({home.path()}, clock_);
        reporter.install();
        reporter.handleException({"int"});
        reporter.markReportsSent();
        const fs::path logs = home.path() / "Library/Logs/Orvanta";
        for (const char* name : {"activity.log", "crashes/sent/crash-marker.log",
                                 "crashes/sent/crash-2026-11-21T12-34-56Z.log"})
            EXPECT_EQ(fs::status(logs / name).permissions(),
                      fs::perms::owner_read | fs::perms::owner_write)
                << name;
        EXPECT_EQ(fs::status(logs / "crashes/sent").permissions(), fs::perms::owner_all);
    }
}

TEST_F(CrashReporterTest, TakesTheFatalSignals) {
    reporter_.install();
    for (const int signal : ScopedHandlers::kSignals) {
        struct sigaction action {};

        sigaction(signal, nullptr, &action);
        EXPECT_NE(action.sa_handler, SIG_DFL) << signal;
        EXPECT_NE(action.sa_flags & SA_ONSTACK, 0) << signal;
    }
}

TEST_F(CrashReporterTest, LetsNoChildProgramHaveTheMarker) {
    reporter_.install();
    const auto openFilesOf = [](const std::string& process) {
        return runToEnd({"ls", "-l", "/proc/" + process + "/fd"});
    };
    EXPECT_THAT(openFilesOf(std::to_string(getpid())), HasSubstr("crash-marker.log"));
    EXPECT_THAT(openFilesOf("self"), Not(HasSubstr("crash-marker.log")));
}

TEST_F(CrashReporterTest, MailsTwoReportsAndTheMarker) {
    reporter_.install();
    writeReports(2);
    write("crash-marker.log", "CRASH:SIG:11\n");
    EXPECT_EQ(reporter_.unsentReportCount(), 3);
    EXPECT_THAT(reporter_.composeReportEmail()->body,
                EndsWith("\nReports: 3\n"
                         "\n"
                         "--- crash-2026-01-01T00-00-00Z.log ---\n"
                         "report 1\n"
                         "\n"
                         "--- crash-2026-01-02T00-00-00Z.log ---\n"
                         "report 2\n"
                         "\n"
                         "--- crash-marker.log ---\n"
                         "CRASH:SIG:11\n"
                         "\n"
                         "\n"
                         "[Additional context: describe what you were doing when the crash "
                         "happened]\n"));
}

TEST_F(CrashReporterTest, MailsTheLastTwoOfFourReportsAndTheMarker) {
    reporter_.install();
    writeReports(4);
    const std::string body = reporter_.composeReportEmail()->body;
    EXPECT_THAT(body, EndsWith("\nReports: 5\n"
                               "\n"
                               "--- crash-2026-01-03T00-00-00Z.log ---\n"
                               "report 3\n"
                               "\n"
                               "--- crash-2026-01-04T00-00-00Z.log ---\n"
                               "report 4\n"
                               "\n"
                               "--- crash-marker.log ---\n"
                               "\n"
                               "\n"
                               "[Additional context: describe what you were doing when the crash "
                               "happened]\n"));
}

TEST_F(CrashReporterTest, LeavesOutOfTheMailWhatIsNoUTF8) {
    writeReports(3);
    write("crash-2026-01-02T00-00-00Z.log", "caf\xe9");
    const std::string body = reporter_.composeReportEmail()->body;
    EXPECT_THAT(body, HasSubstr("\nReports: 3\n"));
    EXPECT_THAT(body, HasSubstr("\nreport 1\n"));
    EXPECT_THAT(body, Not(HasSubstr("01-02T")));
    EXPECT_THAT(body, HasSubstr("\nreport 3\n"));
}

TEST_F(CrashReporterTest, FindsReportsByTheirNamesAmongTheFilesOfTheFolder) {
    for (const char* name : {"crash-.log", "crash-x.log"})
        write(name, "");
    for (const char* name : {"crash-x.log.417", "crash.log", "Crash-x.log", "xcrash-x.log",
                             "crash-x.LOG", "crash-log", "crash-x.log~", "activity.log"})
        write(name, "");
    fs::create_directories(crashes_ / "crash-folder.log");
    fs::create_directories(crashes_ / "sent");
    write("sent/crash-y.log", "");
    EXPECT_EQ(reporter_.unsentReportCount(), 2);
}

TEST_F(CrashReporterTest, AsksForAMissingVersionInTheMail) {
    const CrashReporter reporter({.homeDirectory = home_.path()}, clock_);
    writeReports(1);
    const auto email = reporter.composeReportEmail();
    EXPECT_EQ(email->subject, "Orvanta Crash Report — v?");
    EXPECT_THAT(email->body, HasSubstr("\nApp Version: ?\nmacOS: \nReports: 1\n"));
}

TEST_F(CrashReporterTest, ComposesAURLOfTheMail) {
    write("crash-a.log", "50 % & more");
    EXPECT_EQ(reporter_.composeReportURL(),
              "mailto:support@orvanta.meridane.com"
              "?subject=Orvanta%20Crash%20Report%20%E2%80%94%20v2.0.1"
              "&body=Hi%20Meridane%2C%0A%0A"
              "Orvanta%20encountered%20a%20crash.%20Here%20are%20the%20details%3A%0A%0A"
              "App%20Version%3A%202.0.1%0AmacOS%3A%20Test%20OS%203%0AReports%3A%201%0A"
              "%0A---%20crash-a.log%20---%0A50%20%25%20%26%20more%0A"
              "%0A%5BAdditional%20context%3A%20describe%20what%20you%20were%20doing%20when%20the%20"
              "crash%20happened%5D%0A");
}

TEST_F(CrashReporterTest, WritesAReportAndRepeatsItInTheActivityLog) {
    reporter_.handleException({"std::runtime_error", "no device", {"libc.so.6 abort + 18"}});
    const std::string report = fileContent(crashes_ / "crash-2026-11-21T12-34-56Z.log");
    EXPECT_EQ(report, "═══════════════════════════════════════════════════\n"
                      "Orvanta Crash Report\n"
                      "═══════════════════════════════════════════════════\n"
                      "Timestamp: 2026-11-21T12:34:56Z\n"
                      "App Version: 2.0.1 (417)\n"
                      "macOS: Test OS 3\n"
                      "Type: EXCEPTION\n"
                      "Reason: std::runtime_error: no device\n"
                      "\n"
                      "Call Stack:\n"
                      "  0: libc.so.6 abort + 18\n"
                      "\n"
                      "═══════════════════════════════════════════════════");
    EXPECT_EQ(fileContent(logs_ / "activity.log"),
              "[2026-11-21T12:34:56Z] 🔴 CRASH: " + report + "\n");
    EXPECT_EQ(reporter_.unsentReportCount(), 1);
}

TEST_F(CrashReporterTest, ReplacesAReportOfTheSameSecond) {
    reporter_.handleException({"int", "the earlier, which is longer"});
    reporter_.handleException({"int", "the later"});
    EXPECT_EQ(reporter_.unsentReportCount(), 1);
    EXPECT_THAT(fileContent(crashes_ / "crash-2026-11-21T12-34-56Z.log"),
                HasSubstr("\nReason: int: the later\n"));
    clock_.time += std::chrono::seconds(1);
    reporter_.handleException({"int"});
    EXPECT_EQ(reporter_.unsentReportCount(), 2);
}

TEST_F(CrashReporterTest, TakesAwayWhatADeathInTheMiddleOfAReportHasLeft) {
    write("crash-2026-01-01T00-00-00Z.log.4711", "half of a rep");
    write("crash-2026-01-01T00-00-00Z.log.kept", "the user's own");
    reporter_.install();
    EXPECT_FALSE(fs::exists(crashes_ / "crash-2026-01-01T00-00-00Z.log.4711"));
    EXPECT_TRUE(fs::exists(crashes_ / "crash-2026-01-01T00-00-00Z.log.kept"));
}

TEST_F(CrashReporterTest, PutsReportsAsideWithTheirMarker) {
    reporter_.install();
    writeReports(2);
    write("other.log", "");
    reporter_.markReportsSent();
    EXPECT_FALSE(reporter_.hasUnsentReports());
    EXPECT_TRUE(fs::exists(crashes_ / "other.log"));
    EXPECT_EQ(fileContent(crashes_ / "sent/crash-2026-01-01T00-00-00Z.log"), "report 1");
    EXPECT_EQ(fileContent(crashes_ / "sent/crash-2026-01-02T00-00-00Z.log"), "report 2");
    EXPECT_EQ(fileContent(crashes_ / "sent/crash-marker.log"), "");
    // The next launch makes a fresh one.
    reporter_.install();
    EXPECT_EQ(reporter_.unsentReportCount(), 1);
}

TEST_F(CrashReporterTest, LeavesWhereItIsWhatWasSentBeforeUnderTheSameName) {
    writeReports(2);
    fs::create_directory(crashes_ / "sent");
    write("sent/crash-2026-01-01T00-00-00Z.log", "sent before");
    reporter_.markReportsSent();
    EXPECT_EQ(fileContent(crashes_ / "sent/crash-2026-01-01T00-00-00Z.log"), "sent before");
    EXPECT_EQ(fileContent(crashes_ / "crash-2026-01-01T00-00-00Z.log"), "report 1");
    EXPECT_EQ(fileContent(crashes_ / "sent/crash-2026-01-02T00-00-00Z.log"), "report 2");
}

TEST_F(CrashReporterTest, MakesTheFolderForSentReportsAlsoWithoutAny) {
    EXPECT_FALSE(reporter_.composeReportURL());
    reporter_.markReportsSent();
    EXPECT_TRUE(fs::is_directory(crashes_ / "sent"));
}

TEST_F(CrashReporterTest, KeepsReportsWhereTheyCannotBePutAside) {
    writeReports(1);
    write("sent", "a file");
    reporter_.markReportsSent();
    EXPECT_EQ(reporter_.unsentReportCount(), 1);
}

/// Does everything there is to do, none of which may throw.
void exercise(CrashReporter& reporter) {
    reporter.install();
    reporter.handleException({"int"});
    reporter.markReportsSent();
}

TEST_F(CrashReporterTest, BearsAHomeFolderThatIsMissingOrAFile) {
    const fs::path file = home_.path() / "file";
    std::ofstream(file) << "a file";
    for (const fs::path& home : {file, fs::path("/proc/nowhere")}) {
        CrashReporter reporter({.homeDirectory = home}, clock_);
        exercise(reporter);
        EXPECT_FALSE(reporter.hasUnsentReports());
        EXPECT_EQ(reporter.unsentReportCount(), 0);
        EXPECT_FALSE(reporter.composeReportURL());
    }
    EXPECT_EQ(fileContent(file), "a file");
}

TEST_F(CrashReporterTest, BearsAFileInPlaceOfItsFolder) {
    fs::remove(crashes_);
    std::ofstream(crashes_) << "a file";
    exercise(reporter_);
    EXPECT_FALSE(reporter_.hasUnsentReports());
    EXPECT_EQ(fileContent(crashes_), "a file");
    EXPECT_THAT(fileContent(logs_ / "activity.log"), HasSubstr("launched"));
}

TEST_F(CrashReporterTest, BearsAFolderThatCannotBeReadOrWritten) {
    const TemporaryDirectory home;
    const OrdinaryUser user(home.path());
    CrashReporter reporter({.homeDirectory = home.path()}, clock_);
    reporter.handleException({"int"});
    EXPECT_TRUE(reporter.hasUnsentReports());

    fs::permissions(reporter.logDir(), fs::perms::owner_read | fs::perms::owner_exec);
    exercise(reporter);
    EXPECT_EQ(reporter.unsentReportCount(), 1);
    EXPECT_TRUE(reporter.composeReportEmail());

    fs::permissions(reporter.logDir(), fs::perms::none);
    exercise(reporter);
    EXPECT_FALSE(reporter.hasUnsentReports());
    EXPECT_EQ(reporter.unsentReportCount(), 0);
    EXPECT_FALSE(reporter.composeReportEmail());
    fs::permissions(reporter.logDir(), fs::perms::owner_all);
}

TEST_F(CrashReporterTest, LeavesNoHalfOfAReportOnAFullDisk) {
    const SmallDisk disk(64U << 10U);
    if (disk.failure())
        GTEST_SKIP() << *disk.failure();
    CrashReporter reporter({.homeDirectory = disk.path()}, clock_);
    reporter.install();
    const UncaughtException exception{"int", std::string(16'000, 'x')};
    disk.fillUpTo(8192);
    reporter.handleException(exception);
    EXPECT_EQ(reporter.unsentReportCount(), 1) << "the marker";
    EXPECT_EQ(std::distance(fs::directory_iterator(reporter.logDir()), {}), 1);

    disk.fillUpTo(0);
    exercise(reporter);
    disk.makeSpace();
    reporter.handleException(exception);
    EXPECT_TRUE(reporter.hasUnsentReports());
}

TEST_F(CrashReporterTest, LeavesNoHalfOfAReportThatMayNotGrow) {
    {
        const FileSizeLimit limit(200);
        reporter_.handleException({"int"});
    }
    EXPECT_TRUE(fs::is_empty(crashes_));
}

TEST(SharedCrashReporter, IsMadeOnceOfWhatTheFirstCallGives) {
    static ScriptedWallClock clock;
    const TemporaryDirectory home;
    EXPECT_THROW(std::ignore = CrashReporter::shared(), std::logic_error);
    CrashReporter& made = CrashReporter::makeShared({.homeDirectory = home.path()}, clock);
    EXPECT_EQ(made.logDir(), home.path() / "Library/Logs/Orvanta/crashes");
    EXPECT_EQ(&CrashReporter::shared(), &made);
    EXPECT_EQ(&CrashReporter::makeShared({.homeDirectory = "/elsewhere"}, clock), &made);
}

} // namespace
} // namespace orvanta::test
