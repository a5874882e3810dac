#include "platform/pipewire/PropertyAnswer.h"

#include <gtest/gtest.h>

#include <array>

namespace orvanta::pipewire {
namespace {

TEST(PropertyAnswer, IsCopiedWholeOrNotAtAll) {
    const PropertyValue value = 48000.0;
    double out = 0;
    std::uint32_t size = sizeof out;
    EXPECT_EQ(sizeOf(value), sizeof out);
    EXPECT_EQ(copyValue(value, size, &out), noErr);
    EXPECT_EQ(out, 48000.0);

    size = sizeof(float);
    EXPECT_EQ(copyValue(value, size, &out), kAudioHardwareBadPropertySizeError);
    EXPECT_EQ(size, sizeof(float));
}

TEST(PropertyAnswer, OfAListIsCutToWholeItems) {
    const PropertyValue value = std::vector<AudioObjectID>{5, 6, 7};
    EXPECT_EQ(sizeOf(value), 12U);
    std::array<AudioObjectID, 3> out{};
    std::uint32_t size = 11;
    EXPECT_EQ(copyValue(value, size, out.data()), noErr);
    EXPECT_EQ(size, 8U);
    EXPECT_EQ(out, (std::array<AudioObjectID, 3>{5, 6, 0}));

    size = 100;
    EXPECT_EQ(copyValue(value, size, out.data()), noErr);
    EXPECT_EQ(size, 12U);
}

TEST(PropertyAnswer, OfAnEmptyListNeedsNoMemory) {
    std::uint32_t size = 8;
    EXPECT_EQ(copyValue(std::vector<AudioObjectID>{}, size, nullptr), noErr);
    EXPECT_EQ(size, 0U);
}

TEST(PropertyAnswer, NeedsMemoryForAnythingElse) {
    std::uint32_t size = 8;
    EXPECT_EQ(copyValue(std::uint32_t{1}, size, nullptr), kAudioHardwareBadPropertySizeError);
}

TEST(PropertyAnswer, OfAStringIsReadInItsOwnWay) {
    char out = 0;
    std::uint32_t size = 1;
    EXPECT_NE(copyValue(std::string("text"), size, &out), noErr);
}

} // namespace
} // namespace orvanta::pipewire
