// When the workspace looks at the desktop again and what it answers until then.

#include "tests/platform/linux/LinuxWorkspaceTest.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

/// The application that comes and goes in these tests, under the id "player".
void installPlayer(const ScriptedDesktop& desktop) {
    desktop.install("player", "Player", "/usr/bin/player");
}

/// Its process, of id 100.
void runPlayer(const ScriptedProc& proc) {
    proc.run({.pid = 100, .executable = "/usr/bin/player"});
}

/// Nobody plays; every look asks once who does.
class LookCounter final : public AudioClients {
public:
    [[nodiscard]] int looks() const { return looks_; }

    [[nodiscard]] std::vector<AudioClient> audioClients() const override {
        ++looks_;
        return {};
    }

    [[nodiscard]] std::optional<AudioClient> audioClient(std::int32_t /*pid*/) const override {
        return std::nullopt;
    }

private:
    mutable int looks_ = 0;
};

TEST_F(LinuxWorkspaceTest, AnswersOnePassFromOneLook) {
    installPlayer(desktop_);
    runPlayer(proc_);
    ASSERT_TRUE(desktop_.workspace.runningApplication(100));
    proc_.end(100);
    EXPECT_EQ(desktop_.workspace.runningApplications().size(), 1U);
    desktop_.nextPass();
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
    EXPECT_TRUE(desktop_.workspace.runningApplications().empty());
}

TEST_F(LinuxWorkspaceTest, LooksAgainForAProcessThatHasComeSince) {
    installPlayer(desktop_);
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
    runPlayer(proc_);
    EXPECT_TRUE(desktop_.workspace.runningApplication(100));
}

TEST_F(LinuxWorkspaceTest, LooksOnceForAProcessThatCannotBeRead) {
    const LookCounter counter;
    const LinuxWorkspace workspace(desktop_.folders, &counter, proc_.root(),
                                   [this] { return desktop_.now; });
    std::filesystem::create_directories(proc_.root() / "100"); // and nothing in it
    for (int question = 0; question < 10; ++question)
        EXPECT_FALSE(workspace.runningApplication(100));
    EXPECT_EQ(counter.looks(), 2); // the first of all, and one for this process
    desktop_.nextPass();
    for (int question = 0; question < 10; ++question)
        EXPECT_FALSE(workspace.runningApplication(100));
    EXPECT_EQ(counter.looks(), 4);
    installPlayer(desktop_);
    runPlayer(proc_);
    desktop_.nextPass();
    EXPECT_TRUE(workspace.runningApplication(100));
}

TEST_F(LinuxWorkspaceTest, LooksAgainForAClientThatHasComeOrChangedSince) {
    proc_.run({.pid = 100, .executable = "/usr/bin/x"});
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
    desktop_.clients.play({.pid = 100, .name = "One"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->localizedName, "One");
    desktop_.clients.play({.pid = 100, .name = "Two"});
    EXPECT_EQ(desktop_.workspace.runningApplication(100)->localizedName, "Two");
    desktop_.clients.stop(100);
    EXPECT_FALSE(desktop_.workspace.runningApplication(100));
}

TEST_F(LinuxWorkspaceTest, SeesApplicationsThatAreInstalledAndRemoved) {
    runPlayer(proc_);
    EXPECT_EQ(idOf(100), "(none)");
    installPlayer(desktop_);
    EXPECT_EQ(idOf(100), "player");
    std::filesystem::remove(desktop_.entryFile("player"));
    EXPECT_EQ(idOf(100), "(none)");
}

TEST_F(LinuxWorkspaceTest, SeesAtOnceWhenAProcessThatPlaysRunsSomethingElse) {
    installPlayer(desktop_);
    proc_.run({.pid = 100, .executable = "/usr/bin/sh"});
    desktop_.clients.play({.pid = 100, .name = "x"});
    for (int look = 0; look < 10; ++look)
        EXPECT_EQ(idOf(100), "(no id)");
    runPlayer(proc_);
    EXPECT_EQ(idOf(100), "player");
}

TEST(LinuxWorkspace, AnswersSeveralThreadsWhileTheDesktopChanges) {
    ScriptedDesktop desktop;
    desktop.install("player", "Player", "/usr/bin/player", "Icon=player");
    ScriptedProc::write(desktop.folders.dataFolders[0] / "pixmaps/player.png", "picture");
    runPlayer(desktop.proc);
    std::atomic<int> calls = 0;
    // Every other question brings a new look.
    const LinuxWorkspace workspace(desktop.folders, &desktop.clients, desktop.proc.root(), [&] {
        return std::chrono::steady_clock::time_point(std::chrono::milliseconds(100) * ++calls);
    });
    std::atomic<int> found = 0;
    constexpr int kRounds = 50;
    const auto ask = [&] {
        for (int round = 0; round < kRounds; ++round) {
            const auto file = workspace.urlForApplication("player");
            const bool hasPicture = file && workspace.iconForFile(*file)->imageFile(48);
            if (hasPicture && workspace.runningApplication(100))
                ++found;
        }
    };
    std::vector<std::thread> threads;
    for (int number = 0; number < 3; ++number)
        threads.emplace_back(ask);
    for (int round = 0; round < kRounds; ++round) {
        desktop.install("radio" + std::to_string(round), "Radio", "radio");
        desktop.proc.run({.pid = 200 + round, .executable = "/usr/bin/radio"});
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(found, 3 * kRounds);
}

} // namespace
} // namespace orvanta::test
