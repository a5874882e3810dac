#include "platform/linux/processes/RunningProcesses.h"

#include "tests/support/ScriptedDesktop.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <functional>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

class RunningProcessesTest : public ::testing::Test {
protected:
    [[nodiscard]] const desktop::Process& looked(std::int32_t pid) {
        processes_.refresh(now_);
        return processes_.all().at(pid);
    }

    /// In place, as the kernel does it: the process's folder stays the same.
    void moveToGroup(std::int32_t pid, const std::string& unit) const {
        ScriptedProc::write(directory_.path() / std::to_string(pid) / "cgroup",
                            "0::/app.slice/" + unit + "\n");
    }

    /// So that the process is no longer new.
    void settle() {
        processes_.refresh(now_);
        now_ += std::chrono::seconds(1);
        processes_.refresh(now_);
    }

    std::chrono::steady_clock::time_point now_;
    TemporaryDirectory directory_;
    ScriptedProc proc_{directory_.path()};
    desktop::RunningProcesses processes_{directory_.path()};
};

TEST_F(RunningProcessesTest, TellWhatTheFilesSay) {
    proc_.run({.pid = 42,
               .parent = 7,
               .session = 6,
               .executable = "/usr/bin/player",
               .unit = "app-player-1.scope",
               .flatpakID = "org.example.Player",
               .innermostPID = 2,
               .name = "a) S 9 (b",
               .startTime = 99});
    const auto& process = looked(42);
    EXPECT_EQ(process.pid, 42);
    EXPECT_EQ(process.parent, 7);
    EXPECT_EQ(process.session, 6);
    EXPECT_EQ(process.startTime, 99U);
    EXPECT_EQ(process.name, "a) S 9 (b");
    EXPECT_EQ(process.executable, "/usr/bin/player");
    EXPECT_EQ(process.program(), "/usr/bin/player");
    EXPECT_EQ(process.scope.applicationIDs.front(), "player");
    EXPECT_EQ(process.flatpakID, "org.example.Player");
    EXPECT_EQ(process.innermostPID, 2);
}

TEST_F(RunningProcessesTest, KnowTheScriptOfAnInterpreter) {
    proc_.run({.pid = 42,
               .executable = "/usr/bin/python3.11",
               .arguments = {"-u", "/usr/share/player/player.py"}});
    EXPECT_EQ(looked(42).program(), "/usr/share/player/player.py");
    proc_.run({.pid = 43, .executable = "/usr/bin/python3.11"});
    EXPECT_EQ(looked(43).program(), "/usr/bin/python3.11");
}

TEST_F(RunningProcessesTest, KnowAProgramThatWasReplacedOnDisk) {
    proc_.run({.pid = 42, .executable = "/usr/bin/player (deleted)"});
    EXPECT_EQ(looked(42).executable, "/usr/bin/player");
    const fs::path odd = directory_.path() / "odd (deleted)";
    ScriptedProc::write(odd, "program");
    proc_.run({.pid = 43, .executable = odd});
    EXPECT_EQ(looked(43).executable, odd);
}

TEST_F(RunningProcessesTest, ComeAndGo) {
    proc_.run({.pid = 42});
    EXPECT_FALSE(processes_.find(42));
    EXPECT_TRUE(processes_.exists(42));
    processes_.refresh(now_);
    EXPECT_TRUE(processes_.find(42));
    proc_.end(42);
    processes_.refresh(now_);
    EXPECT_FALSE(processes_.find(42));
    EXPECT_FALSE(processes_.exists(42));
}

TEST_F(RunningProcessesTest, KeepTheirRevisionUntilTheyRunSomethingElse) {
    proc_.run({.pid = 42, .executable = "/usr/bin/sh"});
    const auto first = looked(42).revision;
    EXPECT_EQ(looked(42).revision, first);
    proc_.run({.pid = 42, .executable = "/usr/bin/player"});
    const auto second = looked(42).revision;
    EXPECT_NE(second, first);
    // Another process of the same id and program.
    proc_.run({.pid = 42, .executable = "/usr/bin/player", .startTime = 4711});
    EXPECT_NE(looked(42).revision, second);
}

TEST_F(RunningProcessesTest, AreSeenWhenTheyMoveToTheirControlGroupWithinASecond) {
    proc_.run({.pid = 42, .executable = "/usr/bin/player", .unit = "launcher.service"});
    // Several looks at once, as questions about other new processes bring them.
    for (int look = 0; look < 5; ++look)
        EXPECT_TRUE(looked(42).scope.applicationIDs.empty());
    moveToGroup(42, "app-player-1.scope");
    now_ += std::chrono::seconds(1);
    EXPECT_FALSE(looked(42).scope.applicationIDs.empty());
}

TEST_F(RunningProcessesTest, AreSeenSometimeWhenTheyMoveLater) {
    proc_.run({.pid = 42, .executable = "/usr/bin/player", .unit = "launcher.service"});
    settle();
    const auto revision = looked(42).revision;
    moveToGroup(42, "app-player-1.scope");
    for (int look = 0; look < 8; ++look)
        processes_.refresh(now_);
    EXPECT_FALSE(looked(42).scope.applicationIDs.empty());
    EXPECT_NE(looked(42).revision, revision);
}

TEST_F(RunningProcessesTest, AreNotReadInFullOnceTheyHaveSettled) {
    proc_.run({.pid = 42,
               .executable = "/usr/bin/python3",
               .arguments = {"/a.py"},
               .unit = "app-player-1.scope"});
    settle();
    fs::remove(directory_.path() / "42/cgroup");
    ScriptedProc::write(directory_.path() / "42/cmdline", "");
    for (int look = 0; look < 10; ++look) {
        EXPECT_FALSE(looked(42).scope.applicationIDs.empty());
        EXPECT_EQ(looked(42).script, "/a.py");
    }
}

TEST_F(RunningProcessesTest, AreReadAtEveryLookWhileTheyPlay) {
    proc_.run({.pid = 42, .parent = 7});
    for (std::int32_t parent = 8; parent < 20; ++parent) {
        proc_.run({.pid = 42, .parent = parent});
        processes_.refresh(now_, {42});
        EXPECT_EQ(processes_.all().at(42).parent, parent);
    }
}

TEST_F(RunningProcessesTest, AreReadNowAndThenWhileTheyDoNotPlay) {
    proc_.run({.pid = 42, .parent = 7, .executable = "/usr/bin/sh"});
    settle();
    // In place, so that the folder stays the same: what happens when a process runs another file.
    ScriptedProc::write(directory_.path() / "42/stat", "42 (player) S 1 42 42");
    constexpr int kLooks = 8;
    for (int look = 0; look < kLooks; ++look)
        processes_.refresh(now_);
    EXPECT_EQ(looked(42).parent, 1);
    EXPECT_EQ(looked(42).name, "player");
}

TEST_F(RunningProcessesTest, AreFoundByTheIDInsideTheirFlatpak) {
    proc_.run({.pid = 50, .flatpakID = "org.a.A", .innermostPID = 2});
    proc_.run({.pid = 51, .flatpakID = "org.b.B", .innermostPID = 2});
    proc_.run({.pid = 52, .flatpakID = "org.b.B", .innermostPID = 3});
    processes_.refresh(now_);
    ASSERT_TRUE(processes_.findInFlatpak("org.b.B", 2));
    EXPECT_EQ(processes_.findInFlatpak("org.b.B", 2)->pid, 51);
    EXPECT_FALSE(processes_.findInFlatpak("org.c.C", 2));
    EXPECT_FALSE(processes_.findInFlatpak("org.a.A", 3));
}

TEST_F(RunningProcessesTest, AreAskedForTheirFlatpakInAMountNamespaceOfTheirOwnOnly) {
    const auto nameNamespace = [&](const std::string& process, const std::string& name) {
        fs::create_directories(directory_.path() / process / "ns");
        fs::create_symlink(name, directory_.path() / process / "ns/mnt");
    };
    nameNamespace("self", "mnt:[1]");
    proc_.run({.pid = 42, .flatpakID = "org.a.A"});
    nameNamespace("42", "mnt:[1]");
    proc_.run({.pid = 43, .flatpakID = "org.a.A"});
    nameNamespace("43", "mnt:[2]");
    EXPECT_EQ(looked(42).flatpakID, "");
    EXPECT_EQ(looked(43).flatpakID, "org.a.A");
}

TEST_F(RunningProcessesTest, AreNotAskedForTheirFlatpakWhereOneMightWaitForTheAnswer) {
    const std::string memory = "80 79 0:50 / / rw - tmpfs tmpfs rw\n";
    for (const std::string& mounts :
         {std::string(), std::string("\n80 79\n"), std::string("80 79 0:50 / / rw shared:1 -"),
          std::string("80 79 0:50 / / rw - fuse.sshfs host: rw\n"),
          std::string("80 79 0:50 / / rw shared:1 - nfs4 host:/ rw\n"),
          std::string("80 79 0:50 / /tmp rw - tmpfs tmpfs rw\n"),
          memory + "81 80 0:51 / / rw - fuse x rw\n",
          memory + "81 80 0:51 / /.flatpak-info rw - fuse x rw\n"}) {
        proc_.run({.pid = 42, .flatpakID = "org.a.A"});
        ScriptedProc::write(directory_.path() / "42/mountinfo", mounts);
        EXPECT_EQ(looked(42).flatpakID, "") << mounts;
    }
    proc_.run({.pid = 42, .flatpakID = "org.a.A"});
    ScriptedProc::write(directory_.path() / "42/mountinfo",
                        memory + "81 80 0:51 / /home rw - fuse x rw\n");
    EXPECT_EQ(looked(42).flatpakID, "org.a.A");
}

TEST_F(RunningProcessesTest, TellTheirFlatpakInASmallRegularFileOnly) {
    const fs::path info = directory_.path() / "42/root/.flatpak-info";
    const auto idOf42 = [&](const std::function<void()>& replace) {
        proc_.run({.pid = 42, .flatpakID = "org.a.A"});
        EXPECT_EQ(looked(42).flatpakID, "org.a.A");
        proc_.run({.pid = 42, .flatpakID = "org.a.A", .startTime = 4711});
        fs::rename(info, directory_.path() / "elsewhere");
        replace();
        return looked(42).flatpakID;
    };
    // What it links to is found from our root and not from its own.
    EXPECT_EQ(idOf42([&] { fs::create_symlink(directory_.path() / "elsewhere", info); }), "");
    EXPECT_EQ(idOf42([&] { fs::create_symlink("/dev/zero", info); }), "");
    EXPECT_EQ(idOf42([&] { ASSERT_EQ(mkfifo(info.c_str(), 0600), 0); }), "");
    EXPECT_EQ(idOf42([&] { fs::create_directories(info); }), "");
    EXPECT_EQ(idOf42([&] {
                  fs::rename(directory_.path() / "elsewhere", info);
                  fs::resize_file(info, std::uintmax_t(1) << 30U);
              }),
              "");
}

TEST_F(RunningProcessesTest, BearBrokenFiles) {
    fs::create_directories(directory_.path() / "12x");
    fs::create_directories(directory_.path() / "99999999999");
    fs::create_directories(directory_.path() / "41");
    for (const char* stat : {"", "42", "42 (x", "42 (x)", ") 42 (", "42 (x) S", "42 (x) S y z"}) {
        proc_.run({.pid = 42});
        ScriptedProc::write(directory_.path() / "42/stat", stat);
        ScriptedProc::write(directory_.path() / "42/cmdline", "");
        fs::remove(directory_.path() / "42/cgroup");
        const auto& process = looked(42);
        EXPECT_EQ(process.parent, 0) << stat;
        EXPECT_EQ(process.startTime, 0U) << stat;
    }
    EXPECT_EQ(processes_.all().size(), 1U);
}

TEST(RunningProcesses, AreNoneWithoutAProcFolder) {
    desktop::RunningProcesses processes("/nowhere");
    processes.refresh({});
    EXPECT_TRUE(processes.all().empty());
}

/// A child of ours in a root of its own that is built as a Flatpak's is: in memory, and with the
/// info bound over an empty file. It waits to be killed.
class SandboxedChild {
public:
    explicit SandboxedChild(const fs::path& folder) {
        std::array<int, 2> ready{};
        if (pipe(ready.data()) != 0)
            return;
        pid_ = fork();
        if (pid_ == 0) {
            const char isBuilt = buildRoot(folder) ? 'y' : 'n';
            if (write(ready[1], &isBuilt, 1) == 1)
                pause();
            _exit(0);
        }
        close(ready[1]);
        char isBuilt = 'n';
        isBuilt_ = read(ready[0], &isBuilt, 1) == 1 && isBuilt == 'y';
        close(ready[0]);
    }

    SandboxedChild(const SandboxedChild&) = delete;
    SandboxedChild& operator=(const SandboxedChild&) = delete;

    ~SandboxedChild() {
        if (pid_ <= 0)
            return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }

    [[nodiscard]] pid_t pid() const { return pid_; }

    [[nodiscard]] bool isBuilt() const { return isBuilt_; }

private:
    static bool buildRoot(const fs::path& folder) {
        const fs::path info = folder / ".flatpak-info";
        const fs::path source = folder / "bindfile";
        if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", folder.c_str(), "tmpfs", 0, nullptr) != 0)
            return false;
        ScriptedProc::write(source, "[Application]\nname=org.example.Player\n");
        ScriptedProc::write(info, "");
        return mount(source.c_str(), info.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
               chroot(folder.c_str()) == 0;
    }

    pid_t pid_ = -1;
    bool isBuilt_ = false;
};

TEST(RunningProcesses, KnowTheFlatpakOfARealSandbox) {
    const TemporaryDirectory directory;
    const SandboxedChild child(directory.path());
    if (!child.isBuilt())
        GTEST_SKIP() << "no mounts of one's own here";
    desktop::RunningProcesses processes("/proc");
    processes.refresh({});
    ASSERT_TRUE(processes.find(child.pid()));
    EXPECT_EQ(processes.find(child.pid())->flatpakID, "org.example.Player");
    EXPECT_EQ(processes.find(getpid())->flatpakID, "");
}

TEST(RunningProcesses, KnowThisOne) {
    desktop::RunningProcesses processes("/proc");
    processes.refresh({});
    const desktop::Process* const self = processes.find(getpid());
    ASSERT_TRUE(self);
    EXPECT_EQ(self->parent, getppid());
    EXPECT_EQ(self->session, getsid(0));
    EXPECT_EQ(self->executable, fs::read_symlink("/proc/self/exe"));
    EXPECT_GT(self->startTime, 0U);
}

} // namespace
} // namespace orvanta::test
