#include "app/console/ConsoleText.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta::test {
namespace {

TEST(ConsoleText, CountsChannelsAndRecordings) {
    EXPECT_EQ(consoleText::channelCount(0), "0 Channels");
    EXPECT_EQ(consoleText::channelCount(1), "1 Channel");
    EXPECT_EQ(consoleText::channelCount(30), "30 Channels");
    EXPECT_EQ(consoleText::recordingBadge(1), "Recording 1 channel");
    EXPECT_EQ(consoleText::recordingBadge(2), "Recording 2 channels");
    EXPECT_EQ(consoleText::recordingCount(2), "2 REC");
}

TEST(ConsoleText, RoundsTheMasterVolume) {
    EXPECT_EQ(consoleText::masterReadOut(0.0F), "0%");
    EXPECT_EQ(consoleText::masterReadOut(0.726F), "73%");
    EXPECT_EQ(consoleText::masterReadOut(1.0F), "100%");
}

TEST(ConsoleText, TellsLevelsInWholeDecibels) {
    EXPECT_EQ(consoleText::levelReadOut(1.0F, false), "0 dB");
    EXPECT_EQ(consoleText::levelReadOut(0.5F, false), "-6 dB");
    EXPECT_EQ(consoleText::levelReadOut(1.2F, false), "2 dB");
    EXPECT_EQ(consoleText::levelReadOut(0.97F, false), "-0 dB");
}

TEST(ConsoleText, TellsNoLevelBelowAThousandth) {
    EXPECT_EQ(consoleText::levelReadOut(0.00099F, false), "-∞ dB");
    EXPECT_EQ(consoleText::levelReadOut(0.001F, false), "-60 dB");
    EXPECT_EQ(consoleText::levelReadOut(std::numeric_limits<float>::quiet_NaN(), false), "-∞ dB");
}

TEST(ConsoleText, SaysMuteWhateverTheLevelIs) {
    EXPECT_EQ(consoleText::levelReadOut(0.5F, true), "MUTE");
    EXPECT_EQ(consoleText::levelReadOut(0.0F, true), "MUTE");
}

TEST(ConsoleText, WarnsOfLevelsAboveNineTenths) {
    EXPECT_FALSE(consoleText::isLevelHot(0.9F));
    EXPECT_TRUE(consoleText::isLevelHot(0.901F));
}

TEST(ConsoleText, NumbersAHardPanFifty) {
    EXPECT_EQ(consoleText::panReadOut(1.0F), "R50");
    EXPECT_EQ(consoleText::panReadOut(-1.0F), "L50");
    EXPECT_EQ(consoleText::panReadOut(-0.3F), "L15");
    EXPECT_EQ(consoleText::panReadOut(0.19F), "R9");
    EXPECT_EQ(consoleText::panReadOut(7.0F), "R50");
    EXPECT_EQ(consoleText::panLine(-0.3F), "Pan: L15");
}

TEST(ConsoleText, CallsAPanCloseToTheMiddleCenter) {
    EXPECT_EQ(consoleText::panReadOut(0.0F), "Center");
    EXPECT_EQ(consoleText::panReadOut(-0.049F), "Center");
    EXPECT_EQ(consoleText::panReadOut(0.05F), "R2");
    EXPECT_EQ(consoleText::panReadOut(std::numeric_limits<float>::quiet_NaN()), "Center");
}

TEST(ConsoleText, TellsVolumesInTenthsOfADecibel) {
    EXPECT_EQ(consoleText::volumeReadOut(1.0F), "+0.0 dB");
    EXPECT_EQ(consoleText::volumeReadOut(2.0F), "+6.0 dB");
    EXPECT_EQ(consoleText::volumeReadOut(0.7F), "-3.1 dB");
    EXPECT_EQ(consoleText::volumeReadOut(0.0F), "-∞ dB");
    EXPECT_EQ(consoleText::volumeLine(1.0F, false), "Volume: +0.0 dB");
    EXPECT_EQ(consoleText::volumeLine(1.0F, true), "Volume: -∞ dB");
}

TEST(ConsoleText, SaysWhatButtonsWouldDo) {
    EXPECT_EQ(consoleText::muteHelp(false), "Mute this channel");
    EXPECT_EQ(consoleText::muteHelp(true), "Unmute this channel");
    EXPECT_EQ(consoleText::soloHelp(false), "Solo — listen to only this channel");
    EXPECT_EQ(consoleText::soloHelp(true), "Un-solo this channel");
    EXPECT_EQ(consoleText::soloLabel("Vinyl", false), "Solo Vinyl");
    EXPECT_EQ(consoleText::soloLabel("Vinyl", true), "Un-solo Vinyl");
    EXPECT_EQ(consoleText::recordHelp(false), "Record this channel's audio");
    EXPECT_EQ(consoleText::recordHelp(true), "Stop recording this channel");
}

TEST(ConsoleText, TellsTheGatesState) {
    EXPECT_EQ(consoleText::gateState(true), "Active");
    EXPECT_EQ(consoleText::gateState(false), "Bypassed");
    EXPECT_EQ(consoleText::gateIndicator(true), "OPEN");
    EXPECT_EQ(consoleText::gateIndicator(false), "CLOSED");
    EXPECT_EQ(consoleText::thresholdReadOut(-48.6F), "-49 dB");
}

TEST(ConsoleText, NamesTheEqualizersSetting) {
    EXPECT_EQ(consoleText::equalizerLine(EQPreset()), "");
    EXPECT_EQ(consoleText::equalizerPresetName(EQPreset()), "Flat");
    EXPECT_EQ(consoleText::equalizerLine(EQPreset::rock), "Rock");
    EXPECT_EQ(consoleText::equalizerPresetName(EQPreset::rock), "Rock");
    EXPECT_EQ(consoleText::equalizerLine(EQPreset(1.0F, 2.0F, 3.0F)), "Custom EQ");
    EXPECT_EQ(consoleText::equalizerPresetName(EQPreset(1.0F, 2.0F, 3.0F)), "Custom");
    EXPECT_EQ(consoleText::gainReadOut(4.0F), "+4 dB");
    EXPECT_EQ(consoleText::gainReadOut(-0.2F), "-0 dB");
}

TEST(ConsoleText, TellsWhatTheEffectsAreSetTo) {
    EXPECT_EQ(consoleText::normalizationReadOut(2.44F), "+2.4 dB");
    EXPECT_EQ(consoleText::normalizationReadOut(-3.0F), "-3.0 dB");
    EXPECT_EQ(consoleText::widthReadOut(0.049F), "Mono");
    EXPECT_EQ(consoleText::widthReadOut(0.05F), "5%");
    EXPECT_EQ(consoleText::widthReadOut(2.0F), "200%");
    EXPECT_EQ(consoleText::crossfeedReadOut(0.3F), "30%");
}

TEST(ConsoleText, SaysWhatAProfilesButtonsWouldDo) {
    EXPECT_EQ(consoleText::profileHelp("Night", false), "Click to apply \"Night\"");
    EXPECT_EQ(consoleText::profileHelp("Night", true), "Click to deactivate");
    EXPECT_EQ(consoleText::updateText("Night"), "Update \"Night\"");
    EXPECT_EQ(consoleText::updateHelp("Night"), "Overwrite \"Night\" with current mixer settings");
}

} // namespace
} // namespace orvanta::test
