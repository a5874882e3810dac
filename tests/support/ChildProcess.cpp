#include "tests/support/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace orvanta::test {

namespace {

/// The child's side of the fork: only calls that are safe there, for the test program has threads.
[[noreturn]] void becomeProgram(char* const* arguments, pid_t parent, int input, int output,
                                int errors) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(127);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    execvp(arguments[0], arguments);
    _exit(127);
}

std::vector<char*> argumentPointers(std::vector<std::string>& command) {
    std::vector<char*> pointers;
    pointers.reserve(command.size() + 1);
    for (std::string& word : command)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ChildProcess::ChildProcess(const Launch& launch) {
    std::vector<std::string> command = launch.command;
    const std::vector<char*> arguments = argumentPointers(command);

    const int log = open(launch.logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    int sockets[2] = {open("/dev/null", O_RDONLY | O_CLOEXEC), -1};
    if (launch.isTalkedTo) {
        close(sockets[0]);
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0)
            throw std::runtime_error("no socket pair for " + command[0]);
        conversation_ = sockets[1];
    }
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0)
        becomeProgram(arguments.data(), parent, sockets[0], launch.isTalkedTo ? sockets[0] : log,
                      log);
    close(sockets[0]);
    close(log);
    if (pid_ < 0)
        throw std::runtime_error("cannot start " + command[0]);
}

ChildProcess::~ChildProcess() {
    stop();
    if (conversation_ >= 0)
        close(conversation_);
}

void ChildProcess::reap(int status) {
    waitStatus_ = status;
    exitCode_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

bool ChildProcess::isRunning() {
    return !exitCode().has_value();
}

std::optional<int> ChildProcess::exitCode() {
    int status = 0;
    if (!exitCode_ && waitpid(pid_, &status, WNOHANG) == pid_)
        reap(status);
    return exitCode_;
}

std::optional<int> ChildProcess::waitStatus() {
    std::ignore = exitCode();
    return waitStatus_;
}

bool ChildProcess::waitForExit(Seconds bound) {
    return eventually(bound, [this] { return !isRunning(); });
}

void ChildProcess::signal(int number) const {
    if (!exitCode_)
        ::kill(pid_, number);
}

void ChildProcess::stop() {
    if (!isRunning())
        return;
    signal(SIGTERM);
    signal(SIGCONT);
    if (!waitForExit(Seconds(3)))
        kill();
}

void ChildProcess::kill() {
    if (!isRunning())
        return;
    signal(SIGKILL);
    int status = 0;
    if (waitpid(pid_, &status, 0) == pid_)
        reap(status);
}

void ChildProcess::writeLine(const std::string& line) const {
    const std::string text = line + "\n";
    if (send(conversation_, text.data(), text.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(text.size()))
        throw std::runtime_error("a child program does not listen any more");
}

std::optional<std::string> ChildProcess::readLine(Seconds bound) {
    const double end = monotonicSeconds() + bound.count();
    for (;;) {
        const std::size_t lineEnd = received_.find('\n');
        if (lineEnd != std::string::npos) {
            std::string line = received_.substr(0, lineEnd);
            received_.erase(0, lineEnd + 1);
            return line;
        }
        const double left = end - monotonicSeconds();
        pollfd waiting = {conversation_, POLLIN, 0};
        if (left <= 0 || poll(&waiting, 1, static_cast<int>(left * 1000) + 1) <= 0)
            return std::nullopt;
        char bytes[512];
        const ssize_t count = recv(conversation_, bytes, sizeof bytes, 0);
        if (count <= 0)
            return std::nullopt;
        received_.append(bytes, static_cast<std::size_t>(count));
    }
}

double ChildProcess::processorSeconds() const {
    clockid_t clock = {};
    timespec time = {};
    if (clock_getcpuclockid(pid_, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

std::string runToEnd(const std::vector<std::string>& command, Seconds bound) {
    ChildProcess child({.command = command, .logFile = "/dev/null", .isTalkedTo = true});
    std::string output;
    const double end = monotonicSeconds() + bound.count();
    while (std::optional<std::string> line =
               child.readLine(Seconds(std::max(0.0, end - monotonicSeconds()))))
        output += *line + "\n";
    if (!child.waitForExit(Seconds(std::max(0.1, end - monotonicSeconds()))))
        throw std::runtime_error(command[0] + " did not end in time; it said: " + output);
    if (child.exitCode() != 0)
        throw std::runtime_error(command[0] + " failed with " + std::to_string(*child.exitCode()) +
                                 "; it said: " + output);
    return output;
}

} // namespace orvanta::test
