#include "platform/qt/session/SingleInstance.h"

#include "platform/qt/session/ShowRequest.h"
#include "tests/platform/qt/support/EventLoop.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {
namespace {

namespace fs = std::filesystem;

using Start = SingleInstance::Start;

constexpr Seconds kAnswerBound{30.0};

/// Whether the program has a file of that name open.
bool hasOpened(const ChildProcess& program, const std::string& name) {
    std::error_code ignored;
    const fs::path descriptors = "/proc/" + std::to_string(program.pid()) + "/fd";
    for (const auto& each : fs::directory_iterator(descriptors, ignored))
        if (fs::read_symlink(each, ignored).filename() == name)
            return true;
    return false;
}

class ASingleInstance : public testing::Test {
protected:
    ASingleInstance() { startQt(); }

    /// Another process.
    [[nodiscard]] std::unique_ptr<ChildProcess> startProgram(const std::string& patience = "30",
                                                             const std::string& name = "mixer") {
        return std::make_unique<ChildProcess>(ChildProcess::Launch{
            .command = {ORVANTA_SINGLE_INSTANCE, folder_.string(), name, patience},
            .isTalkedTo = true});
    }

    /// The first start, in this process.
    void own(Seconds patience = kAnswerBound) {
        instance_.emplace(
            SingleInstance::Settings{.folder = folder_, .name = "mixer", .patience = patience},
            [this] { ++shown_; });
    }

    /// Somebody who connects and says that.
    void visit(QLocalSocket& visitor, const QByteArray& words) {
        visitor.connectToServer(QString::fromStdString(socket_.string()));
        ASSERT_TRUE(visitor.waitForConnected());
        visitor.write(words);
    }

    [[nodiscard]] bool isTurnedAway(QLocalSocket& visitor) {
        return eventuallyInEventLoop(
            kAnswerBound, [&] { return visitor.state() == QLocalSocket::UnconnectedState; });
    }

    const TemporaryDirectory directory_;
    const fs::path folder_ = directory_.path() / "session";
    const fs::path socket_ = folder_ / "mixer.socket";
    int shown_ = 0;
    std::optional<SingleInstance> instance_;
};

TEST_F(ASingleInstance, IsAskedToShowItselfByEveryLaterStart) {
    own();
    ASSERT_EQ(instance_->start(), Start::first);
    for (int start = 1; start <= 3; ++start) {
        const auto later = startProgram();
        EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return shown_ == start; }));
        EXPECT_EQ(later->readLine(kAnswerBound), "heard");
        EXPECT_TRUE(later->waitForExit(kAnswerBound));
    }
    EXPECT_EQ(shown_, 3);
}

TEST_F(ASingleInstance, IsOneAmongManyThatStartAtOnce) {
    constexpr int kStarts = 8;
    std::vector<std::unique_ptr<ChildProcess>> programs;
    for (int start = 0; start < kStarts; ++start)
        programs.push_back(startProgram());
    ChildProcess* first = nullptr;
    int heard = 0;
    for (const auto& program : programs) {
        const auto word = program->readLine(kAnswerBound);
        heard += word == "heard" ? 1 : 0;
        if (word == "first") {
            EXPECT_EQ(first, nullptr);
            first = program.get();
        }
    }
    EXPECT_EQ(heard, kStarts - 1);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->readLine(kAnswerBound), "show");
}

TEST_F(ASingleInstance, IsFollowedByTheNextOneWhenItHasEnded) {
    own();
    instance_.reset();
    EXPECT_FALSE(fs::exists(socket_));
    own();
    EXPECT_EQ(instance_->start(), Start::first);
}

TEST_F(ASingleInstance, IsFollowedByTheNextOneWhenItWasKilled) {
    const auto killed = startProgram();
    ASSERT_EQ(killed->readLine(kAnswerBound), "first");
    killed->kill();
    ASSERT_TRUE(fs::exists(socket_)) << "which nobody was left to remove";
    own();
    EXPECT_EQ(instance_->start(), Start::first);
    const auto later = startProgram();
    EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return shown_ == 1; }));
    EXPECT_EQ(later->readLine(kAnswerBound), "heard");
}

TEST_F(ASingleInstance, TakesThePlaceOfAnyFileThatLiesThere) {
    fs::create_directories(folder_);
    std::ofstream(socket_) << "no socket";
    own();
    const auto later = startProgram();
    EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return shown_ == 1; }));
}

TEST_F(ASingleInstance, IsFollowedByAStartThatFindsItGoneBeforeItListens) {
    std::optional<SessionLock> lock(std::in_place, folder_ / "mixer.instance");
    ASSERT_EQ(lock->take(), SessionLock::State::ours);
    const auto later = startProgram();
    ASSERT_TRUE(eventually(kAnswerBound, [&] { return hasOpened(*later, "mixer.instance"); }));
    lock.reset();
    EXPECT_EQ(later->readLine(kAnswerBound), "first");
}

TEST_F(ASingleInstance, ThatHangsIsNotWaitedForLong) {
    const auto hung = startProgram();
    ASSERT_EQ(hung->readLine(kAnswerBound), "first");
    hung->signal(SIGSTOP);
    EXPECT_EQ(startProgram("0.2")->readLine(kAnswerBound), "unanswered");
    hung->signal(SIGCONT);
    EXPECT_EQ(startProgram()->readLine(kAnswerBound), "heard");
}

TEST_F(ASingleInstance, ThatNeverListensIsNotWaitedForLong) {
    SessionLock lock(folder_ / "mixer.instance");
    ASSERT_EQ(lock.take(), SessionLock::State::ours);
    EXPECT_EQ(startProgram("0.2")->readLine(kAnswerBound), "unanswered");
}

TEST_F(ASingleInstance, LeavesProgramsOfOtherNamesAlone) {
    own();
    EXPECT_EQ(startProgram("30", "demonstration")->readLine(kAnswerBound), "first");
    EXPECT_EQ(shown_, 0);
}

TEST_F(ASingleInstance, TurnsAwayWhoeverSaysAnythingElse) {
    own();
    for (const QByteArray& words :
         {QByteArray("quit\n"), QByteArray("showing"), QByteArray(1'000'000, 's'),
          QByteArray(4, '\0'), QByteArray("\xFF\xFE")}) {
        QLocalSocket visitor;
        visit(visitor, words);
        EXPECT_TRUE(isTurnedAway(visitor)) << words.left(10).toStdString();
    }
    EXPECT_EQ(shown_, 0);
}

TEST_F(ASingleInstance, TurnsAwayWhoeverSaysNothing) {
    own(Seconds(0.05));
    QLocalSocket silent;
    visit(silent, {});
    QLocalSocket halfway;
    visit(halfway, "sho");
    EXPECT_TRUE(isTurnedAway(silent));
    EXPECT_TRUE(isTurnedAway(halfway));
    EXPECT_EQ(shown_, 0);
}

TEST_F(ASingleInstance, HearsARequestThatComesInPieces) {
    own();
    QLocalSocket visitor;
    visit(visitor, "sh");
    EXPECT_TRUE(eventLoopComesToRest());
    visitor.write("ow\nshow\n");
    EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return shown_ == 1; }));
    EXPECT_TRUE(isTurnedAway(visitor));
    EXPECT_EQ(visitor.readAll(), QByteArray(kShowAnswer));
    EXPECT_EQ(shown_, 1) << "once for each visitor";
}

TEST_F(ASingleInstance, MayEndWhileItIsShown) {
    instance_.emplace(SingleInstance::Settings{.folder = folder_, .name = "mixer"},
                      [this] { instance_.reset(); });
    const auto later = startProgram();
    EXPECT_TRUE(eventuallyInEventLoop(kAnswerBound, [&] { return !instance_; }));
    EXPECT_EQ(later->readLine(kAnswerBound), "heard");
}

TEST_F(ASingleInstance, KeepsItsFilesToTheUser) {
    own();
    EXPECT_EQ(fs::status(folder_).permissions(), fs::perms::owner_all);
    constexpr auto kOthers = fs::perms::group_all | fs::perms::others_all;
    for (const auto& entry : fs::directory_iterator(folder_))
        EXPECT_EQ(entry.status().permissions() & kOthers, fs::perms::none) << entry.path();
    EXPECT_TRUE(fs::is_socket(socket_));
}

TEST_F(ASingleInstance, IsTheFirstWhereNobodyCouldKnow) {
    instance_.emplace(SingleInstance::Settings{.folder = "/proc", .name = "mixer"}, [] {});
    EXPECT_EQ(instance_->start(), Start::first);
}

TEST(SessionFolders, AreTheSessionsOwnOrElseTheSettings) {
    EXPECT_EQ(sessionFolder("/run/user/7", "/home/u/.config/orvanta"), "/run/user/7");
    for (const char* const none : {static_cast<const char*>(nullptr), "", "run"})
        EXPECT_EQ(sessionFolder(none, "/home/u/.config/orvanta"), "/home/u/.config/orvanta");
}

} // namespace
} // namespace orvanta::test
