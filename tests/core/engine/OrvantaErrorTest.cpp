#include "core/engine/OrvantaError.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace orvanta::test {
namespace {

TEST(OrvantaError, SaysWhatWentWrong) {
    const std::vector<std::pair<OrvantaError, std::string>> cases{
        {OrvantaError::tapNotFound(42), "No active tap for PID 42"},
        {OrvantaError::tapCreationFailed(42, -50),
         "Failed to set up audio capture for PID 42 (OSStatus -50)"},
        {OrvantaError::deviceCreationFailed(560947818),
         "Failed to create audio device (OSStatus 560947818)"},
        {OrvantaError::pipelineFailed(-1), "Audio pipeline setup failed (OSStatus -1)"},
        {OrvantaError::deviceNotFound("usb:1"), "Output device not found: usb:1"},
        {OrvantaError::recordingFileCreationFailed("/music/a b.wav"),
         "Could not create recording file at /music/a b.wav"},
        {OrvantaError::audioSystemError("AudioDeviceStart", -66),
         "AudioDeviceStart failed (OSStatus -66)"},
        {OrvantaError::noDefaultDevice(), "Could not determine default output device"}};
    for (const auto& [error, text] : cases) {
        EXPECT_EQ(error.errorDescription(), text);
        EXPECT_STREQ(error.what(), text.c_str());
    }
    for (std::size_t index = 0; index < cases.size(); ++index)
        EXPECT_EQ(cases[index].first.payload().index(), index) << "the order of the cases";
}

TEST(OrvantaError, EqualsAnotherOfTheSameCaseAndPayloadOnly) {
    EXPECT_EQ(OrvantaError::tapNotFound(1), OrvantaError::tapNotFound(1));
    EXPECT_NE(OrvantaError::tapNotFound(1), OrvantaError::tapNotFound(2));
    EXPECT_NE(OrvantaError::deviceCreationFailed(1), OrvantaError::pipelineFailed(1));
    EXPECT_NE(OrvantaError::tapCreationFailed(1, 2), OrvantaError::tapCreationFailed(1, 3));
    EXPECT_EQ(OrvantaError::noDefaultDevice(), OrvantaError::noDefaultDevice());
}

} // namespace
} // namespace orvanta::test
