#pragma once

#include "core/platform/AudioClient.h"
#include "platform/linux/LinuxWorkspace.h"
#include "tests/support/TemporaryDirectory.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace orvanta::test {

/// A process as a test writes it.
struct ScriptedProcess {
    std::int32_t pid = 0;
    std::int32_t parent = 1;
    std::int32_t session = 0;
    std::string executable = {};
    std::vector<std::string> arguments = {}; ///< without the program itself
    std::string commandName = {};            ///< the one before them; empty for the executable's
    std::string unit = {};                   ///< the innermost control group
    std::string flatpakID = {};
    std::int32_t innermostPID = 0;
    std::string name = "process";
    std::uint64_t startTime = 0; ///< 0 for one that is the pid
};

/// A proc file system.
class ScriptedProc {
public:
    explicit ScriptedProc(std::filesystem::path root) : root_(std::move(root)) {
        std::filesystem::create_directories(root_);
    }

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    /// Stands in place of an earlier process of this id.
    void run(const ScriptedProcess& process) const {
        const std::string pid = std::to_string(process.pid);
        const auto folder = root_ / pid;
        end(process.pid);
        std::filesystem::create_directories(folder);
        const auto start =
            process.startTime != 0 ? process.startTime : static_cast<std::uint64_t>(process.pid);
        write(folder / "stat", pid + " (" + process.name + ") S " + std::to_string(process.parent) +
                                   " 1 " + std::to_string(process.session) +
                                   " 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 " + std::to_string(start) +
                                   " 0 0\n");
        if (!process.executable.empty())
            std::filesystem::create_symlink(process.executable, folder / "exe");
        std::string commandLine =
            (process.commandName.empty() ? process.executable : process.commandName) + '\0';
        for (const std::string& argument : process.arguments)
            commandLine += argument + '\0';
        write(folder / "cmdline", commandLine);
        write(folder / "cgroup",
              "0::/user.slice/user-1000.slice/user@1000.service/app.slice/" + process.unit + "\n");
        if (!process.flatpakID.empty()) {
            std::filesystem::create_directories(folder / "root");
            write(folder / "root/.flatpak-info",
                  "[Application]\nname=" + process.flatpakID + "\n\n[Instance]\ninstance-id=1\n");
            write(folder / "mountinfo",
                  "80 79 0:50 /newroot / rw,nosuid - tmpfs tmpfs rw,uid=1000\n"
                  "81 80 0:50 /bindfile7 /.flatpak-info ro,nosuid - tmpfs tmpfs rw,uid=1000\n"
                  "82 80 8:1 /usr /usr ro,nosuid master:1 - ext4 /dev/sda1 rw\n");
        }
        const std::string inner =
            process.innermostPID != 0 ? "\t" + std::to_string(process.innermostPID) : "";
        write(folder / "status", "Name:\tx\nNSpid:\t" + pid + inner + "\nThreads:\t1\n");
    }

    void end(std::int32_t pid) const { std::filesystem::remove_all(root_ / std::to_string(pid)); }

    static void write(const std::filesystem::path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

private:
    std::filesystem::path root_;
};

/// An audio client as a test writes it.
struct ScriptedClient {
    std::int32_t pid = 0;
    std::string name = {};
    std::string applicationID = {};
    std::string iconName = {};
    std::string binary = {};
};

/// What programs tell the audio server.
class ScriptedAudioClients final : public AudioClients {
public:
    /// Stands in place of what the process has told before.
    void play(const ScriptedClient& client) {
        stop(client.pid);
        clients_.push_back(
            {client.pid, client.name, client.applicationID, client.iconName, client.binary});
    }

    void stop(std::int32_t pid) {
        std::erase_if(clients_, [pid](const AudioClient& client) { return client.pid == pid; });
    }

    [[nodiscard]] std::vector<AudioClient> audioClients() const override { return clients_; }

    [[nodiscard]] std::optional<AudioClient> audioClient(std::int32_t pid) const override {
        for (const AudioClient& client : clients_)
            if (client.pid == pid)
                return client;
        return std::nullopt;
    }

private:
    std::vector<AudioClient> clients_;
};

/// A whole desktop in a folder of its own, on a clock that stands still unless told.
class ScriptedDesktop {
public:
    /// Installs an entry; `more` are further lines of it.
    void install(const std::string& id, const std::string& name, const std::string& exec,
                 const std::string& more = "") const {
        ScriptedProc::write(entryFile(id), "[Desktop Entry]\nType=Application\nName=" + name +
                                               "\nExec=" + exec + "\n" + more + "\n");
    }

    [[nodiscard]] std::filesystem::path entryFile(const std::string& id) const {
        return folders.dataFolders.front() / "applications" / (id + ".desktop");
    }

    /// To the next pass over the applications.
    void nextPass() { now += std::chrono::seconds(1); }

    TemporaryDirectory directory;
    DesktopFolders folders{.home = directory.path() / "home",
                           .dataHome = directory.path() / "home/.local/share",
                           .dataFolders = {directory.path() / "usr/share"},
                           .configHome = directory.path() / "home/.config",
                           .executableFolders = {directory.path() / "usr/bin"},
                           .locales = {"de_AT.UTF-8"}};
    ScriptedProc proc{directory.path() / "proc"};
    ScriptedAudioClients clients;
    std::chrono::steady_clock::time_point now;
    LinuxWorkspace workspace{folders, &clients, proc.root(), [this] {
                                 return now;
                             }};
};

} // namespace orvanta::test
