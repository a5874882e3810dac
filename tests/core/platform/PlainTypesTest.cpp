#include "core/platform/AudioBufferList.h"
#include "core/platform/AudioObject.h"
#include "core/platform/Cell.h"
#include "core/platform/TapDescription.h"

#include <gtest/gtest.h>

#include <array>
#include <regex>

namespace orvanta {
namespace {

TEST(FourCharCode, ReadsItsLettersFromTheMostSignificantByteDown) {
    EXPECT_EQ(fourCharCode("volm"), 0x766F6C6DU);
    EXPECT_EQ(kAudioDeviceTransportTypeBluetooth, 0x626C7565U);
    EXPECT_EQ(kAudioDeviceTransportTypeBluetoothLE, 0x626C6561U);
    EXPECT_EQ(kAudioHardwareIllegalOperationError, 0x6E6F7065);
}

TEST(FourCharCode, ShowsItsLettersAgainAndDotsForWhatDoesNotPrint) {
    EXPECT_EQ(fourCharText(fourCharCode("uid ")), "uid ");
    EXPECT_EQ(fourCharText(0x00417F42U), ".A.B");
}

TEST(Cell, HoldsTheWordLastStored) {
    Cell<float> cell(0.5F);
    EXPECT_EQ(cell.load(), 0.5F);
    cell.store(0.25F);
    EXPECT_EQ(cell.load(), 0.25F);
    EXPECT_FALSE(Cell<bool>().load());
    EXPECT_EQ(sizeof(Cell<std::uint64_t>), sizeof(std::uint64_t)) << "a word and nothing beside it";
}

TEST(AudioBuffer, CountsWholeSamplesOfAllItsChannels) {
    std::array<float, 4> samples{};
    EXPECT_EQ((AudioBuffer{2, 16, samples.data()}.sampleCount()), 4U);
    EXPECT_EQ((AudioBuffer{2, 15, samples.data()}.sampleCount()), 3U);
    EXPECT_EQ((AudioBuffer{1, 0, nullptr}.sampleCount()), 0U);
}

TEST(TapDescription, StartsUnmutedAndPublicWithAFreshUUID) {
    const auto first = CATapDescription::stereoMixdownOfProcesses({7, 8});
    const auto second = CATapDescription::stereoMixdownOfProcesses({7});
    EXPECT_EQ(first.processes(), (std::vector<AudioObjectID>{7, 8}));
    EXPECT_EQ(first.muteBehavior(), CATapMuteBehavior::unmuted);
    EXPECT_FALSE(first.isPrivate());
    EXPECT_NE(first.UUID(), second.UUID());
    const std::regex version4(
        "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    EXPECT_TRUE(std::regex_match(first.UUID(), version4)) << first.UUID();
}

} // namespace
} // namespace orvanta
