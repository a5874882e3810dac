#include "app/console/RecordingText.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta::test {
namespace {

TEST(RecordingText, TellsTheDurationInTenths) {
    EXPECT_EQ(recordingText::duration(0.0), "00:00.0");
    EXPECT_EQ(recordingText::duration(727.49), "12:07.4");
    EXPECT_EQ(recordingText::duration(59.99), "00:59.9");
    EXPECT_EQ(recordingText::duration(7200.0), "120:00.0");
    EXPECT_EQ(recordingText::duration(-1.0), "00:00.0");
    EXPECT_EQ(recordingText::duration(std::numeric_limits<double>::quiet_NaN()), "00:00.0");
}

TEST(RecordingText, SaysWhatTheButtonWouldDo) {
    EXPECT_EQ(recordingText::buttonText(false), "Start Recording");
    EXPECT_EQ(recordingText::buttonText(true), "Stop Recording");
}

TEST(RecordingText, DescribesTheFormats) {
    EXPECT_EQ(recordingText::formatTitle(RecordingFormat::wav), "WAV");
    EXPECT_EQ(recordingText::formatDetail(RecordingFormat::wav), "Lossless 32-bit");
    EXPECT_EQ(recordingText::bitDepth(RecordingFormat::wav), "32-bit float");
    EXPECT_EQ(recordingText::formatTitle(RecordingFormat::m4a), "M4A");
    EXPECT_EQ(recordingText::formatDetail(RecordingFormat::m4a), "AAC 256 kbps");
    EXPECT_EQ(recordingText::bitDepth(RecordingFormat::m4a), "AAC 256 kbps");
}

TEST(RecordingText, DescribesWhatIsCaptured) {
    EXPECT_EQ(recordingText::modeTitle(RecordingMode::processed), "Processed");
    EXPECT_EQ(recordingText::modeDetail(RecordingMode::processed), "After EQ, compression, gate");
    EXPECT_EQ(recordingText::signal(RecordingMode::processed),
              "Processed (post-EQ, post-compressor)");
    EXPECT_EQ(recordingText::modeTitle(RecordingMode::original), "Original");
    EXPECT_EQ(recordingText::modeDetail(RecordingMode::original), "Raw app audio, unprocessed");
    EXPECT_EQ(recordingText::signal(RecordingMode::original), "Original (raw app audio)");
    EXPECT_EQ(recordingText::modeTitle(RecordingMode::both), "Both");
    EXPECT_EQ(recordingText::modeDetail(RecordingMode::both), "Two files simultaneously");
    EXPECT_EQ(recordingText::signal(RecordingMode::both), "Both — 2 files simultaneously");
}

TEST(RecordingText, ShortensFoldersWithinTheUsersOwn) {
    EXPECT_EQ(recordingText::folder("/people/ada/Music/Takes", "/people/ada"), "~/Music/Takes");
    EXPECT_EQ(recordingText::folder("/people/ada", "/people/ada"), "~");
    EXPECT_EQ(recordingText::folder("/people/adam/Music", "/people/ada"), "/people/adam/Music");
    EXPECT_EQ(recordingText::folder("/media/disk", "/people/ada"), "/media/disk");
    EXPECT_EQ(recordingText::folder("/media/disk", ""), "/media/disk");
}

} // namespace
} // namespace orvanta::test
