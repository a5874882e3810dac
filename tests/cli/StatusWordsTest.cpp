#include "cli/StatusWords.h"

#include <gtest/gtest.h>

namespace orvanta::cli {
namespace {

TEST(StatusWords, TellWhatAStatusAtTheEndOfALineMeans) {
    EXPECT_EQ(
        withStatusInWords("Failed to create audio capture: OSStatus 1937010544"),
        "Failed to create audio capture: OSStatus 1937010544 (the audio server or its session "
        "manager does not answer)");
}

TEST(StatusWords, LeaveOtherLinesAlone) {
    for (const std::string line :
         {"", "word", "Audio start failed: 12345", "Audio start failed: -1", "a b c",
          "No audio process found for PID 999"})
        EXPECT_EQ(withStatusInWords(line), line);
}

} // namespace
} // namespace orvanta::cli
