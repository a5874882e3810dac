#include "core/platform/StreamConfiguration.h"

#include <gtest/gtest.h>

#include <array>

namespace orvanta::test {
namespace {

TEST(StreamConfiguration, CountsTheChannelsOfAllStreams) {
    EXPECT_EQ(channelCount(streamConfiguration({})), 0U);
    EXPECT_EQ(channelCount(streamConfiguration(std::array{2U})), 2U);
    EXPECT_EQ(channelCount(streamConfiguration(std::array{2U, 2U, 1U})), 5U);
    EXPECT_EQ(channelCount(streamConfiguration(std::array{0xFFFFFFFFU, 1U})), 0x100000000U);
}

TEST(StreamConfiguration, HasTheLayoutOfCoreAudiosBufferList) {
    const auto data = streamConfiguration(std::array{3U, 4U});
    ASSERT_EQ(data.size(), 8U + 2U * 16U);
    EXPECT_EQ(data[0], std::byte{2});
    EXPECT_EQ(data[8], std::byte{3});
    EXPECT_EQ(data[24], std::byte{4});
}

TEST(StreamConfiguration, OfTooLittleDataCountsWhatIsThere) {
    auto data = streamConfiguration(std::array{2U, 6U});
    data.resize(data.size() - 1);
    EXPECT_EQ(channelCount(data), 2U);
    data.resize(10);
    EXPECT_EQ(channelCount(data), 0U);
    data.resize(3);
    EXPECT_EQ(channelCount(data), 0U);
    EXPECT_EQ(channelCount({}), 0U);
}

} // namespace
} // namespace orvanta::test
