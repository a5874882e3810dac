#pragma once

#include "tests/support/Waiting.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace orvanta::test {

/// A program run as a child of the test, which dies with the test program however that ends.
/// It inherits the environment. To be started on the main thread, whose end is what it dies of.
class ChildProcess {
public:
    struct Launch {
        /// The program, looked up along PATH, and its arguments.
        std::vector<std::string> command;
        /// Takes standard error, and standard output of a program that is not talked to.
        std::filesystem::path logFile = "/dev/null";
        /// Standard input and output are a conversation: `writeLine` and `readLine`.
        bool isTalkedTo = false;
    };

    /// Throws std::runtime_error when the program cannot be started.
    explicit ChildProcess(const Launch& launch);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Stops it.
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return pid_; }

    [[nodiscard]] bool isRunning();
    /// False when it still runs after `bound`.
    bool waitForExit(Seconds bound);
    /// The exit code, 128 + n after signal n; nothing while it runs.
    [[nodiscard]] std::optional<int> exitCode();
    /// What `waitpid` told of its end, which tells a signal from an exit and of a core file;
    /// nothing while it runs.
    [[nodiscard]] std::optional<int> waitStatus();

    void signal(int number) const;
    /// Asks it to end, and kills it when it does not do so soon.
    void stop();
    /// SIGKILL; returns when it is gone.
    void kill();

    void writeLine(const std::string& line) const;
    /// Nothing when no whole line came within `bound`.
    std::optional<std::string> readLine(Seconds bound);

    /// Processor time of all its threads so far, in seconds.
    [[nodiscard]] double processorSeconds() const;

private:
    void reap(int status);

    pid_t pid_ = -1;
    int conversation_ = -1;
    std::string received_;
    std::optional<int> exitCode_;
    std::optional<int> waitStatus_;
};

/// Runs a program to its end and returns what it printed on standard output. Throws with its words
/// when it fails or takes longer than `bound`.
std::string runToEnd(const std::vector<std::string>& command, Seconds bound = Seconds(10));

} // namespace orvanta::test
