#include "core/recording/RecordingFormat.h"

#include "core/recording/RecordingMode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

TEST(RecordingFormat, IsOfferedAsWavAndThenM4a) {
    EXPECT_THAT(allRecordingFormats(), ElementsAre(RecordingFormat::wav, RecordingFormat::m4a));
}

TEST(RecordingFormat, HasNamesForPeopleAndForFiles) {
    EXPECT_EQ(displayName(RecordingFormat::wav), "WAV (Lossless)");
    EXPECT_EQ(displayName(RecordingFormat::m4a), "M4A (Compressed)");
    EXPECT_EQ(fileExtension(RecordingFormat::wav), "wav");
    EXPECT_EQ(fileExtension(RecordingFormat::m4a), "m4a");
}

TEST(RecordingFormat, IsCodedAsItsRawValue) {
    for (const RecordingFormat format : allRecordingFormats()) {
        const coding::JSON json = format;
        EXPECT_EQ(json.dump(), "\"" + std::string(rawValue(format)) + "\"");
        EXPECT_EQ(json.get<RecordingFormat>(), format);
        EXPECT_EQ(recordingFormatFrom(rawValue(format)), format);
    }
    EXPECT_EQ(rawValue(RecordingFormat::wav), "wav");
    EXPECT_EQ(rawValue(RecordingFormat::m4a), "m4a");
}

TEST(RecordingFormat, IsNothingElse) {
    EXPECT_EQ(recordingFormatFrom("WAV"), std::nullopt);
    EXPECT_EQ(recordingFormatFrom(""), std::nullopt);
    EXPECT_THROW(coding::JSON("flac").get<RecordingFormat>(), coding::CodingError);
    EXPECT_THROW(coding::JSON(1).get<RecordingFormat>(), coding::CodingError);
}

TEST(RecordingMode, IsOfferedAsProcessedOriginalAndBoth) {
    EXPECT_THAT(allRecordingModes(), ElementsAre(RecordingMode::processed, RecordingMode::original,
                                                 RecordingMode::both));
}

TEST(RecordingMode, HasNamesForPeople) {
    EXPECT_EQ(displayName(RecordingMode::processed), "Processed");
    EXPECT_EQ(displayName(RecordingMode::original), "Original");
    EXPECT_EQ(displayName(RecordingMode::both), "Both");
}

TEST(RecordingMode, IsCodedAsItsRawValue) {
    for (const RecordingMode mode : allRecordingModes()) {
        const coding::JSON json = mode;
        EXPECT_EQ(json.get<std::string>(), rawValue(mode));
        EXPECT_EQ(json.get<RecordingMode>(), mode);
    }
    EXPECT_EQ(recordingModeFrom("processed"), RecordingMode::processed);
    EXPECT_EQ(recordingModeFrom("original"), RecordingMode::original);
    EXPECT_EQ(recordingModeFrom("both"), RecordingMode::both);
}

TEST(RecordingMode, IsNothingElse) {
    EXPECT_EQ(recordingModeFrom("wet"), std::nullopt);
    EXPECT_THROW(coding::JSON("Both").get<RecordingMode>(), coding::CodingError);
    EXPECT_THROW(coding::JSON(nullptr).get<RecordingMode>(), coding::CodingError);
}

} // namespace
} // namespace orvanta::test
