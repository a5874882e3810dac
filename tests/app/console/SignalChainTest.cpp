#include "app/console/SignalChain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;

SignalStage stage(const ChannelState& channel, std::string_view title) {
    for (const SignalStage& each : signalChain(channel, "System Default"))
        if (each.title == title)
            return each;
    ADD_FAILURE() << "no stage " << title;
    return {};
}

TEST(SignalChain, OfANewChannelOnlyPassesOn) {
    EXPECT_THAT(
        signalChain({}, "System Default"),
        ElementsAre(SignalStage{"Input", true, "48 kHz Stereo"},
                    SignalStage{"Noise Gate", false, "Bypassed"},
                    SignalStage{"EQ", false, "Flat (off)"}, SignalStage{"Compressor", false, "Off"},
                    SignalStage{"Pan", false, "Center"}, SignalStage{"Volume", true, "+0.0 dB"},
                    SignalStage{"Output", true, "System Default"}));
}

TEST(SignalChain, TellsTheGatesThresholdWhileItIsOn) {
    ChannelState channel;
    channel.row.isGateEnabled = true;
    EXPECT_EQ(stage(channel, "Noise Gate"), (SignalStage{"Noise Gate", true, "Threshold: -60 dB"}));
    channel.row.gateThreshold = -48.7F;
    EXPECT_EQ(stage(channel, "Noise Gate").value, "Threshold: -48 dB");
}

TEST(SignalChain, NamesSettingsAndCallsOthersCustom) {
    ChannelState channel;
    channel.row.eq = EQPreset::rock;
    channel.row.compressor = CompressorPreset::music;
    EXPECT_EQ(stage(channel, "EQ"), (SignalStage{"EQ", true, "Rock"}));
    EXPECT_EQ(stage(channel, "Compressor"), (SignalStage{"Compressor", true, "Music"}));
    channel.row.eq.gains[2] += 1.0F;
    channel.row.compressor.bands[0].ratio += 1.0F;
    EXPECT_EQ(stage(channel, "EQ").value, "Custom");
    EXPECT_EQ(stage(channel, "Compressor").value, "Custom");
}

TEST(SignalChain, LightsThePanBeyondATwentieth) {
    ChannelState channel;
    channel.row.balance = 0.05F;
    EXPECT_EQ(stage(channel, "Pan"), (SignalStage{"Pan", false, "R2"}));
    channel.row.balance = -0.06F;
    EXPECT_EQ(stage(channel, "Pan"), (SignalStage{"Pan", true, "L3"}));
    channel.row.balance = 1.0F;
    EXPECT_EQ(stage(channel, "Pan").value, "R50");
}

TEST(SignalChain, TellsNoVolumeBelowTwoHundredths) {
    ChannelState channel;
    channel.row.volume = 0.004F;
    EXPECT_EQ(stage(channel, "Volume").value, "-∞ dB");
    channel.row.volume = 0.005F;
    EXPECT_EQ(stage(channel, "Volume").value, "-46.0 dB");
    channel.row.volume = 1.0F;
    EXPECT_EQ(stage(channel, "Volume").value, "+0.0 dB");
}

TEST(SignalChain, EndsAtTheDevice) {
    EXPECT_EQ(signalChain({}, "Headphones").back(), (SignalStage{"Output", true, "Headphones"}));
}

TEST(SignalFlow, OfANewChannelNamesWhatIsAlwaysThere) {
    EXPECT_THAT(signalFlow({}), ElementsAre(SignalFlowStep{"In", "text1", 1.0},
                                            SignalFlowStep{"Gate", "text2", 0.2},
                                            SignalFlowStep{"EQ", "text2", 0.2},
                                            SignalFlowStep{"Comp", "text2", 0.2},
                                            SignalFlowStep{"Out", "text1", 1.0}));
}

TEST(SignalFlow, OfABusyChannelReadsInItsOrder) {
    ChannelState channel;
    channel.isLimiting = true;
    channel.isNormalizing = true;
    channel.stereoWidth = 1.2F;
    channel.crossfeed = 0.3F;
    channel.row.isGateEnabled = true;
    channel.row.eq = EQPreset::rock;
    channel.row.compressor = CompressorPreset::music;
    EXPECT_THAT(
        signalFlow(channel),
        ElementsAre(SignalFlowStep{"In", "text1", 1.0}, SignalFlowStep{"Norm", "green", 1.0},
                    SignalFlowStep{"Gate", "green", 0.7}, SignalFlowStep{"EQ", "accent", 0.7},
                    SignalFlowStep{"Comp", "warmOrange", 0.7}, SignalFlowStep{"Lim", "red", 1.0},
                    SignalFlowStep{"Wide", "cyan", 1.0}, SignalFlowStep{"XFed", "pink", 1.0},
                    SignalFlowStep{"Out", "text1", 1.0}));
}

TEST(SignalFlow, LeavesOutAWidthAndACrossfeedThatNobodyHears) {
    EXPECT_EQ(signalFlow({.row = {}, .stereoWidth = 1.009F, .crossfeed = 0.01F}).size(), 5U);
    EXPECT_EQ(signalFlow({.row = {}, .stereoWidth = 0.98F}).size(), 6U);
    EXPECT_EQ(signalFlow({.row = {}, .crossfeed = 0.011F}).size(), 6U);
}

} // namespace
} // namespace orvanta::test
