#include "core/platform/Logger.h"

#include "tests/support/RecordingLog.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(Logger, FilesEveryMessageUnderTheProgramsSubsystemAndItsOwnCategory) {
    RecordingLog log;
    const Logger logger(log, "tapManager");
    logger.debug("Tap format: %fHz, %uch", 48000.0, 2U);
    logger.info("Created tap %u for PID %d", 7U, 42);
    logger.error("Audio start failed: %d", -1);
    logger.composed("🎧 line with % signs %d\n");

    const auto messages = log.messages();
    ASSERT_EQ(messages.size(), 4U);
    EXPECT_EQ(messages[0].text, "Tap format: 48000.000000Hz, 2ch");
    EXPECT_EQ(messages[0].level, LogLevel::debug);
    EXPECT_EQ(messages[1].text, "Created tap 7 for PID 42");
    EXPECT_EQ(messages[1].level, LogLevel::info);
    EXPECT_EQ(messages[2].text, "Audio start failed: -1");
    EXPECT_EQ(messages[2].level, LogLevel::error);
    EXPECT_EQ(messages[3].text, "🎧 line with % signs %d\n");
    EXPECT_EQ(messages[3].level, LogLevel::debug);
    for (const auto& message : messages) {
        EXPECT_EQ(message.subsystem, "com.meridane.orvanta");
        EXPECT_EQ(message.category, "tapManager");
    }
}

TEST(Logger, FormatsMessagesOfAnyLength) {
    RecordingLog log;
    const Logger logger(log, "tapManager");
    const std::string longText(5000, 'x');
    logger.info("%s", longText.c_str());
    EXPECT_EQ(log.texts().front(), longText);
}

} // namespace
} // namespace orvanta::test
