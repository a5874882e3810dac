// orvanta_crashing_program HOME CAUSE [OPTION...]
//
// Installs the crash reporter with that home folder, says something on standard output, and dies of
// the cause (Deaths.h).
// Options:
//   --without-reporter     dies without it
//   --installed-twice      installs it once more
//   --worker               dies on a thread of its own
//   --core-files           lets the system write a core file, into the home folder
//   --without-output       is started without standard output
//   --reports-sent         marks the reports as sent before it dies
//   --folder-gone          all logs are removed before it dies
//   --folder-closed        no file can be made in the folder for reports by then
//   --handler-returns, --handler-throws
//                          had a handler of its own for uncaught exceptions, which does that
//   --second-exception     while the report is being written a second thread throws
#include "core/services/CrashReporter.h"
#include "tests/core/services/support/Deaths.h"
#include "tests/platform/runloop/ThreadStatus.h"
#include "tests/support/ScriptedWallClock.h"

#include <atomic>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <set>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;
/// Nobody waits longer for a death that does not come.
constexpr unsigned kSecondsToLive = 60;

/// Asked for the time of a report, it can do something first.
class InterruptedClock final : public WallClock {
public:
    std::function<void()> interruption;

    [[nodiscard]] WallTime now() const override {
        if (interruption)
            interruption();
        return calendar_.now();
    }

private:
    const ScriptedWallClock calendar_{};
};

/// Returns when another thread has thrown as well and sleeps in what this led to.
void letASecondThreadThrow() {
    static std::atomic<pid_t> second{0};
    if (second != 0)
        return;
    std::thread([] {
        second = thisThreadID();
        throw std::runtime_error("the second");
    }).detach();
    std::ignore = becomesTrue([] { return second != 0 && isAsleep(second); });
}

void closeFolder(const fs::path& folder) {
    chmod(folder.c_str(), 0500);
    // Whom no permission keeps out takes those of somebody whom they do.
    if (geteuid() == 0 && seteuid(kNobody) != 0)
        throw std::runtime_error("cannot become somebody else");
}

void limitCoreFiles(bool areWanted) {
    rlimit limit{};
    getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = areWanted ? limit.rlim_max : 0;
    setrlimit(RLIMIT_CORE, &limit);
}

class CrashingProgram {
public:
    CrashingProgram(fs::path home, std::set<std::string> options)
        : home_(std::move(home)), options_(std::move(options)) {}

    void prepare() {
        fs::current_path(home_);
        limitCoreFiles(has("--core-files"));
        if (has("--without-output"))
            close(STDOUT_FILENO);
        if (has("--handler-returns"))
            std::set_terminate([] {});
        if (has("--handler-throws"))
            std::set_terminate([] { throw std::runtime_error("from the handler"); });
        if (!has("--without-reporter"))
            install();
        std::cout << "said on standard output" << std::endl;
    }

    void die(const std::string& cause) const {
        if (!has("--worker"))
            return dieOf(cause);
        std::thread([&cause] { dieOf(cause); }).join();
    }

private:
    [[nodiscard]] bool has(const std::string& option) const { return options_.contains(option); }

    void install() {
        CrashReporter& reporter = CrashReporter::makeShared(
            {.homeDirectory = home_, .shortVersion = "1.2", .operatingSystemVersion = "Test OS 3"},
            clock_);
        reporter.install();
        if (has("--installed-twice"))
            reporter.install();
        if (has("--reports-sent"))
            reporter.markReportsSent();
        if (has("--folder-gone"))
            fs::remove_all(home_ / "Library");
        if (has("--folder-closed"))
            closeFolder(reporter.logDir());
        if (has("--second-exception"))
            clock_.interruption = letASecondThreadThrow;
    }

    const fs::path home_;
    const std::set<std::string> options_;
    InterruptedClock clock_;
};

} // namespace
} // namespace orvanta::test

int main(int argc, char** argv) {
    if (argc < 3)
        return 2;
    alarm(orvanta::test::kSecondsToLive);
    orvanta::test::CrashingProgram program(argv[1], {argv + 3, argv + argc});
    program.prepare();
    program.die(argv[2]);
    return 3;
}
