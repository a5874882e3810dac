#include "core/engine/FirstCallbackLog.h"

#include "tests/support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace orvanta::test {
namespace {

TEST(FirstCallbackLog, WritesARecordAtDebugLevelUnderItsLoggersCategory) {
    RecordingLog log;
    const Logger logger(log, "tapManager");
    FirstCallbackLog first(logger);
    first.post({1024, 2, 512, 1, 1, 2});
    first.flush();
    const auto messages = log.messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].text, "Audio buffers: in=1024samp/2ch out=512samp/1ch bufs=1in/2out");
    EXPECT_EQ(messages[0].level, LogLevel::debug);
    EXPECT_EQ(messages[0].subsystem, "com.meridane.orvanta");
    EXPECT_EQ(messages[0].category, "tapManager");
}

TEST(FirstCallbackLog, WritesWhatIsWaitingWhenItEnds) {
    RecordingLog log;
    const Logger logger(log, "tapManager");
    {
        FirstCallbackLog first(logger);
        for (long number = 0; number < 10; ++number)
            first.post({number, 0, 0, 0, 0, 0});
    }
    EXPECT_EQ(log.messages().size(), 10U);
}

TEST(FirstCallbackLog, WritesByItselfSoonAfterAPost) {
    RecordingLog log;
    const Logger logger(log, "tapManager");
    FirstCallbackLog first(logger);
    first.post({1, 1, 1, 1, 1, 1});
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (log.messages().empty() && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    EXPECT_EQ(log.messages().size(), 1U);
}

/// A system log that lets nobody through until it is opened.
class ClosedLog final : public SystemLog {
public:
    void write(const LogRecord& /*record*/) override {
        written.fetch_add(1);
        isOpen_.wait(false);
    }

    void open() {
        isOpen_.store(true);
        isOpen_.notify_all();
    }

    std::atomic<int> written{0};

private:
    std::atomic<bool> isOpen_{false};
};

TEST(FirstCallbackLog, NeverMakesTheIOThreadWaitForALogThatIsStuck) {
    ClosedLog log;
    const Logger logger(log, "tapManager");
    {
        FirstCallbackLog first(logger);
        for (int post = 0; post < 1000; ++post)
            first.post({1, 1, 1, 1, 1, 1});
        log.open();
    }
    EXPECT_GE(log.written.load(), 64) << "as many as there is room for";
    EXPECT_LE(log.written.load(), 1000);
}

TEST(FirstCallbackLog, NeverWritesARecordTwiceOrTornWhileSeveralThreadsPost) {
    RecordingLog log;
    const Logger logger(log, "tapManager");
    constexpr long threads = 4;
    constexpr long postsEach = 500;
    {
        FirstCallbackLog first(logger);
        std::vector<std::thread> ioThreads;
        for (long thread = 0; thread < threads; ++thread)
            ioThreads.emplace_back([&first, thread] {
                for (long post = 0; post < postsEach; ++post) {
                    const long mark = thread * postsEach + post;
                    first.post({mark, mark, mark, mark, mark, mark});
                }
            });
        for (auto& each : ioThreads)
            each.join();
    }
    auto texts = log.texts();
    EXPECT_FALSE(texts.empty());
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(std::adjacent_find(texts.begin(), texts.end()), texts.end());
    for (const std::string& text : texts) {
        long mark = 0;
        ASSERT_EQ(std::sscanf(text.c_str(), "Audio buffers: in=%ldsamp", &mark), 1);
        const std::string m = std::to_string(mark);
        ASSERT_EQ(text, "Audio buffers: in=" + m + "samp/" + m + "ch out=" + m + "samp/" + m +
                            "ch bufs=" + m + "in/" + m + "out");
    }
}

} // namespace
} // namespace orvanta::test
