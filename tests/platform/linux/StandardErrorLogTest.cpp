#include "platform/linux/StandardErrorLog.h"

#include "tests/platform/linux/Pipe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <functional>
#include <future>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

TEST(StandardErrorLog, WritesLevelCategoryAndMessageOnALine) {
    Pipe pipe;
    StandardErrorLog log(LogLevel::debug, pipe.input());
    log.write({LogLevel::debug, "com.example", "Engine", "starting"});
    log.write({LogLevel::info, "com.example", "Store", "loaded 3 entries"});
    log.write({LogLevel::error, "com.example", "Engine", "failed: -50"});
    EXPECT_EQ(pipe.contents(), "debug Engine: starting\n"
                               "info Store: loaded 3 entries\n"
                               "error Engine: failed: -50\n");
}

TEST(StandardErrorLog, TakesOneLineFeedOffTheEndAndNoMore) {
    Pipe pipe;
    StandardErrorLog log(LogLevel::debug, pipe.input());
    log.write({LogLevel::info, "", "A", "one\n"});
    log.write({LogLevel::info, "", "A", "two\n\n"});
    log.write({LogLevel::info, "", "A", ""});
    EXPECT_EQ(pipe.contents(), "info A: one\ninfo A: two\n\ninfo A: \n");
}

TEST(StandardErrorLog, LeavesOutMessagesBelowItsMinimum) {
    Pipe pipe;
    StandardErrorLog log(LogLevel::info, pipe.input());
    log.write({LogLevel::debug, "", "A", "left out"});
    log.write({LogLevel::info, "", "A", "kept"});
    log.write({LogLevel::error, "", "A", "kept too"});
    EXPECT_EQ(pipe.contents(), "info A: kept\nerror A: kept too\n");
}

TEST(StandardErrorLog, KeepsLinesOfSeveralThreadsApart) {
    constexpr int kThreads = 4;
    constexpr int kLines = 100;
    Pipe pipe;
    StandardErrorLog log(LogLevel::debug, pipe.input());
    std::vector<std::thread> writers;
    for (int writer = 0; writer < kThreads; ++writer) {
        writers.emplace_back([&log, writer] {
            const std::string message(50, static_cast<char>('a' + writer));
            for (int line = 0; line < kLines; ++line)
                log.write({LogLevel::info, "", "T", message});
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    std::istringstream lines(pipe.contents());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_EQ(line.size(), std::string("info T: ").size() + 50) << line;
        ASSERT_EQ(std::set<char>(line.begin() + 8, line.end()).size(), 1U) << line;
    }
    EXPECT_EQ(count, kThreads * kLines);
}

TEST(StandardErrorLog, BearsAClosedDescriptor) {
    StandardErrorLog log(LogLevel::debug, -1);
    log.write({LogLevel::error, "", "A", "lost"});
}

std::atomic<int> brokenPipes = 0;

/// Counts the signals that a write to a closed pipe sends, which otherwise end the program.
class BrokenPipeCount : public ::testing::Test {
protected:
    BrokenPipeCount() {
        brokenPipes = 0;

        struct sigaction action {};

        action.sa_handler = [](int) {
            ++brokenPipes;
        };
        sigaction(SIGPIPE, &action, &former_);
        pipe_.closeOutput();
    }

    ~BrokenPipeCount() override { sigaction(SIGPIPE, &former_, nullptr); }

    static bool isBlocked() {
        sigset_t mask;
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        return sigismember(&mask, SIGPIPE) == 1;
    }

    static bool isPending() {
        sigset_t pending;
        sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    static void block(int how) {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGPIPE);
        pthread_sigmask(how, &signals, nullptr);
    }

    Pipe pipe_;
    StandardErrorLog log_{LogLevel::debug, pipe_.input()};

private:
    struct sigaction former_ {};
};

using StandardErrorLogOnAClosedPipe = BrokenPipeCount;

TEST_F(StandardErrorLogOnAClosedPipe, LosesTheLineAndSendsNoSignal) {
    log_.write({LogLevel::error, "", "A", "lost"});
    EXPECT_EQ(brokenPipes, 0);
    EXPECT_FALSE(isBlocked());
}

TEST_F(StandardErrorLogOnAClosedPipe, LeavesTheSignalsOfACallerThatBlocksThemAsTheyAre) {
    block(SIG_BLOCK);
    log_.write({LogLevel::error, "", "A", "lost"});
    EXPECT_FALSE(isPending());
    pthread_kill(pthread_self(), SIGPIPE);
    log_.write({LogLevel::error, "", "A", "lost"});
    EXPECT_TRUE(isPending());
    EXPECT_TRUE(isBlocked());
    block(SIG_UNBLOCK);
    EXPECT_EQ(brokenPipes, 1);
}

/// A pipe that is full, and whose reader does not read.
class StandardErrorLogOnAFullPipe : public ::testing::Test {
protected:
    StandardErrorLogOnAFullPipe() { pipe_.fill(); }

    /// Whether the writing came back by itself, well before the bound of a busy machine.
    bool comesBack(const std::function<void()>& writing) {
        auto done = std::async(std::launch::async, writing);
        const bool back = done.wait_for(std::chrono::seconds(30)) == std::future_status::ready;
        while (done.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            static_cast<void>(pipe_.readSome(4096));
        return back;
    }

    Pipe pipe_;
    StandardErrorLog log_{LogLevel::debug, pipe_.input()};
};

TEST_F(StandardErrorLogOnAFullPipe, LosesTheLineAfterAShortWait) {
    EXPECT_TRUE(comesBack([&] { log_.write({LogLevel::info, "", "A", "lost"}); }));
    EXPECT_EQ(pipe_.contents().find_first_not_of('x'), std::string::npos);
}

TEST_F(StandardErrorLogOnAFullPipe, WaitsForOneLineOnlyAndNotForTheRest) {
    // An hour, were it to wait for each.
    EXPECT_TRUE(comesBack([&] {
        for (int line = 0; line < 36000; ++line)
            log_.write({LogLevel::info, "", "A", "lost"});
    }));
}

TEST_F(StandardErrorLogOnAFullPipe, WritesAgainOnceThereIsRoom) {
    ASSERT_TRUE(comesBack([&] { log_.write({LogLevel::info, "", "A", "lost"}); }));
    static_cast<void>(pipe_.readSome(std::size_t{1} << 20U));
    log_.write({LogLevel::info, "", "A", "kept"});
    EXPECT_EQ(pipe_.contents(), "info A: kept\n");
}

TEST_F(StandardErrorLogOnAFullPipe, BeginsANewLineAfterOneThatWasCut) {
    const std::string room = pipe_.readSome(8192);
    const std::string message(20000, 'm');
    ASSERT_TRUE(comesBack([&] { log_.write({LogLevel::info, "", "A", message}); }));
    static_cast<void>(pipe_.readSome(4096));
    log_.write({LogLevel::info, "", "A", "kept"});
    const std::string rest = pipe_.contents();
    const std::string lines = rest.substr(rest.find_first_not_of('x'));
    EXPECT_EQ(lines, ("info A: " + message).substr(0, room.size()) + "\ninfo A: kept\n");
}

} // namespace
} // namespace orvanta::test
