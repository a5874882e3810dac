// What one pass over the applications costs the Linux desktop, beside the audio server's part.

#include "tests/support/ScriptedDesktop.h"

#include <benchmark/benchmark.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace test = orvanta::test;
using orvanta::LinuxWorkspace;
using orvanta::RunningApplication;

constexpr int kProcesses = 400;
constexpr int kEntries = 100;
constexpr std::int32_t kFirstPlayingPID = 1000;

/// What discovery asks in one pass.
void pass(const LinuxWorkspace& workspace, const std::vector<std::int32_t>& clients) {
    std::vector<RunningApplication> applications;
    for (const std::int32_t pid : clients)
        if (auto application = workspace.runningApplication(pid))
            applications.push_back(*std::move(application));
    benchmark::DoNotOptimize(workspace.runningApplications());
    // Once for the first list, once for the merged one.
    for (int time = 0; time < 2; ++time)
        for (const RunningApplication& application : applications)
            if (application.bundleIdentifier)
                if (const auto file = workspace.urlForApplication(*application.bundleIdentifier))
                    benchmark::DoNotOptimize(workspace.iconForFile(*file));
}

void installEntries(const test::ScriptedDesktop& desktop) {
    for (int number = 0; number < kEntries; ++number) {
        const std::string name = "player" + std::to_string(number);
        desktop.install("org.example." + name, name, "/usr/bin/" + name + " %U", "Icon=" + name);
    }
    // As if they had been installed long ago: fresh folders are read at every look.
    std::filesystem::last_write_time(desktop.entryFile("x").parent_path(),
                                     std::filesystem::file_time_type::clock::now() -
                                         std::chrono::hours(1));
}

/// Half of the clients are applications with an entry, a quarter their helpers, a quarter players
/// without one.
test::ScriptedProcess scriptedProcess(int number) {
    test::ScriptedProcess process;
    process.pid = kFirstPlayingPID + number;
    process.session = process.pid - number % 4;
    process.executable = "/usr/bin/player" + std::to_string(number % kEntries);
    if (number % 4 == 1) {
        process.parent = process.pid - 1;
        process.executable = "/usr/libexec/helper";
    } else if (number % 4 == 2) {
        process.executable = "/usr/bin/tool" + std::to_string(number);
    }
    return process;
}

std::vector<std::int32_t> play(test::ScriptedDesktop& desktop, int clients, std::int32_t firstPID) {
    std::vector<std::int32_t> pids;
    for (int number = 0; number < clients; ++number) {
        pids.push_back(firstPID + number);
        desktop.clients.play({.pid = pids.back(), .name = "Playback", .binary = "x"});
    }
    return pids;
}

void writtenProcesses(benchmark::State& state) {
    test::ScriptedDesktop desktop;
    installEntries(desktop);
    for (int number = 0; number < kProcesses; ++number)
        desktop.proc.run(scriptedProcess(number));
    const auto clients = play(desktop, static_cast<int>(state.range(0)), kFirstPlayingPID);
    const auto step = [&] {
        desktop.nextPass();
        pass(desktop.workspace, clients);
    };
    step();
    step();
    for (auto _ : state)
        step();
}

/// The first pass, which reads everything for the first time.
void firstPassOverWrittenProcesses(benchmark::State& state) {
    test::ScriptedDesktop desktop;
    installEntries(desktop);
    for (int number = 0; number < kProcesses; ++number)
        desktop.proc.run(scriptedProcess(number));
    const auto clients = play(desktop, static_cast<int>(state.range(0)), kFirstPlayingPID);
    for (auto _ : state) {
        const LinuxWorkspace workspace(desktop.folders, &desktop.clients, desktop.proc.root());
        pass(workspace, clients);
    }
}

/// Children of ours that wait until they are killed.
class Children {
public:
    explicit Children(int count) {
        for (int number = 0; number < count; ++number) {
            const pid_t child = fork();
            if (child == 0) {
                pause();
                _exit(0);
            }
            pids_.push_back(child);
        }
    }

    Children(const Children&) = delete;
    Children& operator=(const Children&) = delete;

    ~Children() {
        for (const pid_t pid : pids_)
            kill(pid, SIGKILL);
        for (const pid_t pid : pids_)
            waitpid(pid, nullptr, 0);
    }

    [[nodiscard]] const std::vector<pid_t>& pids() const { return pids_; }

private:
    std::vector<pid_t> pids_;
};

/// 400 processes of this machine's kernel, and whatever else runs on it.
void realProcesses(benchmark::State& state) {
    test::ScriptedDesktop desktop;
    installEntries(desktop);
    const Children children(kProcesses);
    std::vector<std::int32_t> clients;
    for (const pid_t pid : children.pids()) {
        if (clients.size() == static_cast<std::size_t>(state.range(0)))
            break;
        clients.push_back(pid);
        desktop.clients.play({.pid = pid, .name = "Playback", .binary = "x"});
    }
    const LinuxWorkspace workspace(desktop.folders, &desktop.clients, "/proc",
                                   [&desktop] { return desktop.now; });
    const auto step = [&] {
        desktop.nextPass();
        pass(workspace, clients);
    };
    step();
    step();
    for (auto _ : state)
        step();
}

BENCHMARK(writtenProcesses)->Arg(10)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(firstPassOverWrittenProcesses)->Arg(10)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(realProcesses)->Arg(10)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);

} // namespace
