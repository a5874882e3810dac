#include "platform/embedded/cycle/ChannelMix.h"

#include <gmock/gmock.h>

#include <vector>

namespace orvanta::embedded {
namespace {

using testing::ElementsAre;
using testing::FloatEq;

std::vector<float> mixed(const std::vector<float>& program, std::size_t programChannels,
                         std::size_t deviceChannels) {
    std::vector<float> device(program.size() / programChannels * deviceChannels, 1.0F);
    addToDevice(program, programChannels, device, deviceChannels);
    return device;
}

TEST(ChannelMix, OneChannelGoesToTheFirstTwo) {
    EXPECT_THAT(mixed({0.5F, 0.25F}, 1, 2), ElementsAre(1.5F, 1.5F, 1.25F, 1.25F));
    EXPECT_THAT(mixed({0.5F}, 1, 4), ElementsAre(1.5F, 1.5F, 1, 1));
    EXPECT_THAT(mixed({0.5F}, 1, 1), ElementsAre(1.5F));
}

TEST(ChannelMix, TwoChannelsStayThemselves) {
    EXPECT_THAT(mixed({0.5F, 0.25F}, 2, 2), ElementsAre(1.5F, 1.25F));
    EXPECT_THAT(mixed({0.5F, 0.25F}, 2, 3), ElementsAre(1.5F, 1.25F, 1));
    EXPECT_THAT(mixed({0.5F, 0.25F}, 2, 1), ElementsAre(1.375F));
}

TEST(ChannelMix, FurtherChannelsFoldIntoBothSides) {
    EXPECT_THAT(mixed({0, 0.5F, 1}, 3, 2), ElementsAre(FloatEq(1.7071068F), FloatEq(2.2071068F)));
}

TEST(ChannelMix, ManyChannelsGoToManyOneByOne) {
    EXPECT_THAT(mixed({1, 2, 3, 4}, 4, 3), ElementsAre(2, 3, 4));
    EXPECT_THAT(mixed({1, 2, 3}, 3, 4), ElementsAre(2, 3, 4, 1));
}

TEST(ChannelMix, NoChannelsAreNoSound) {
    std::vector<float> device{1, 2};
    addToDevice({}, 0, device, 2);
    addToDevice(std::vector<float>{1, 1}, 2, {}, 0);
    EXPECT_THAT(device, ElementsAre(1, 2));
}

} // namespace
} // namespace orvanta::embedded
