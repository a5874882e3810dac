#include "cli/ConsoleLog.h"

#include "tests/support/RecordingLog.h"

#include <gtest/gtest.h>

namespace orvanta::cli {
namespace {

TEST(ConsoleLog, RemembersTheEnginesLastErrorAndPassesEverythingOn) {
    test::RecordingLog next;
    ConsoleLog log(&next);
    EXPECT_EQ(log.lastError(), "");
    log.write({LogLevel::error, "s", "tapManager", "first"});
    log.write({LogLevel::error, "s", "tapManager", "second"});
    log.write({LogLevel::info, "s", "tapManager", "third"});
    log.write({LogLevel::error, "s", "pipewire", "fourth"});
    EXPECT_EQ(log.lastError(), "second");
    EXPECT_EQ(next.texts(), (std::vector<std::string>{"first", "second", "third", "fourth"}));
}

TEST(ConsoleLog, ForgetsWhatWasBefore) {
    ConsoleLog log(nullptr);
    log.write({LogLevel::error, "s", "tapManager", "old"});
    log.forgetLastError();
    EXPECT_EQ(log.lastError(), "");
    log.write({LogLevel::error, "s", "recorder", "new"});
    EXPECT_EQ(log.lastError(), "new");
}

TEST(ConsoleLog, NeedsNobodyBehindIt) {
    ConsoleLog log(nullptr);
    log.write({LogLevel::error, "s", "tapManager", "alone"});
    EXPECT_EQ(log.lastError(), "alone");
}

} // namespace
} // namespace orvanta::cli
