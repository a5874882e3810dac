#include "app/popover/PanelText.h"
#include "app/popover/RowText.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta {
namespace {

TEST(PanelText, CountsApplications) {
    EXPECT_EQ(panelText::appCount(0), "0 apps");
    EXPECT_EQ(panelText::appCount(1), "1 app");
    EXPECT_EQ(panelText::appCount(50), "50 apps");
    EXPECT_EQ(panelText::tappedCount(1), "1 tapped");
    EXPECT_EQ(panelText::playingCount(12), "12 playing");
}

TEST(PanelText, SaysWhatAClickOnAutoWillDo) {
    EXPECT_EQ(panelText::autoTapSymbol(true), "bolt.circle.fill");
    EXPECT_EQ(panelText::autoTapSymbol(false), "bolt.circle");
    EXPECT_EQ(panelText::autoTapHint(true), "Double tap to disable automatic audio tapping");
    EXPECT_EQ(panelText::autoTapHint(false), "Double tap to enable automatic audio tapping");
    EXPECT_EQ(panelText::themeHelp("Classic"), "Theme: Classic — click to switch");
}

TEST(PanelText, ShowsTheMasterVolumeBySymbol) {
    EXPECT_EQ(panelText::masterSymbol(0.0F), "speaker.slash.fill");
    EXPECT_EQ(panelText::masterSymbol(0.001F), "speaker.wave.1.fill");
    EXPECT_EQ(panelText::masterSymbol(0.32F), "speaker.wave.1.fill");
    EXPECT_EQ(panelText::masterSymbol(0.33F), "speaker.wave.2.fill");
    EXPECT_EQ(panelText::masterSymbol(0.65F), "speaker.wave.2.fill");
    EXPECT_EQ(panelText::masterSymbol(0.66F), "speaker.wave.3.fill");
    EXPECT_EQ(panelText::masterSymbol(1.0F), "speaker.wave.3.fill");
}

TEST(PanelText, CutsPercentsOffBelow) {
    EXPECT_EQ(panelText::percentReadOut(0.0F), "0%");
    EXPECT_EQ(panelText::percentReadOut(0.729F), "72%");
    EXPECT_EQ(panelText::percentReadOut(2.0F), "200%");
    EXPECT_EQ(panelText::masterVolumeValue(0.5F), "50 percent");
    EXPECT_EQ(panelText::percent(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(panelText::percent(std::numeric_limits<float>::infinity()), 0);
}

TEST(PanelText, IsOnePercentShortWhereSingleFloatsAre) {
    EXPECT_EQ(panelText::percent(0.58F), 58);
    EXPECT_EQ(panelText::percent(0.59F), 58) << "58.999996 cut off";
    for (int step = 0; step <= 200; ++step) {
        const int shown = panelText::percent(static_cast<float>(step * 0.01));
        EXPECT_TRUE(shown == step || shown == step - 1) << step << " shown as " << shown;
    }
}

TEST(PanelText, NamesTheFootersButtonsByWhatTheyDo) {
    EXPECT_EQ(panelText::muteAllSymbol(false), "speaker.wave.2.fill");
    EXPECT_EQ(panelText::muteAllSymbol(true), "speaker.slash.fill");
    EXPECT_EQ(panelText::muteAllText(false), "Mute All");
    EXPECT_EQ(panelText::muteAllText(true), "Unmute All");
    EXPECT_EQ(panelText::muteAllLabel(false), "Mute all");
    EXPECT_EQ(panelText::muteAllLabel(true), "Unmute all");
    EXPECT_EQ(panelText::launchAtLoginSymbol(false), "circle");
    EXPECT_EQ(panelText::launchAtLoginSymbol(true), "checkmark.circle.fill");
    EXPECT_EQ(panelText::version("1.0.0"), "v1.0.0");
}

TEST(RowText, NamesTapAndRecordByWhatTheyDo) {
    EXPECT_EQ(rowText::tapHelp(false), "Tap this app's audio");
    EXPECT_EQ(rowText::tapHelp(true), "Remove audio tap");
    EXPECT_EQ(rowText::tapLabel("Vinyl", false), "Tap Vinyl audio");
    EXPECT_EQ(rowText::tapLabel("Vinyl", true), "Remove tap from Vinyl");
    EXPECT_EQ(rowText::tapHint(false), "Double tap to control this app's volume and effects");
    EXPECT_EQ(rowText::tapHint(true), "Double tap to stop controlling this app's audio");
    EXPECT_EQ(rowText::recordHelp(false), "Record audio");
    EXPECT_EQ(rowText::recordHelp(true), "Stop recording");
    EXPECT_EQ(rowText::recordLabel("Vinyl", false), "Record Vinyl audio");
    EXPECT_EQ(rowText::recordLabel("Vinyl", true), "Stop recording Vinyl");
    EXPECT_EQ(rowText::recordValue(false, 61.0), "Not recording");
    EXPECT_EQ(rowText::recordValue(true, 61.0), "Recording, 1:01");
}

TEST(RowText, CountsTheMinutesOfARecording) {
    EXPECT_EQ(rowText::elapsedTime(0.0), "0:00");
    EXPECT_EQ(rowText::elapsedTime(9.99), "0:09");
    EXPECT_EQ(rowText::elapsedTime(727.0), "12:07");
    EXPECT_EQ(rowText::elapsedTime(7200.0), "120:00");
    EXPECT_EQ(rowText::elapsedTime(-1.0), "0:00");
    EXPECT_EQ(rowText::elapsedTime(std::numeric_limits<double>::quiet_NaN()), "0:00");
}

TEST(RowText, TellsABoostedVolume) {
    EXPECT_EQ(rowText::volumeLabel("Vinyl"), "Vinyl volume");
    EXPECT_EQ(rowText::volumeValue(0.85F), "85 percent");
    EXPECT_EQ(rowText::volumeValue(1.0F), "100 percent");
    EXPECT_EQ(rowText::volumeValue(1.01F), "101 percent, boosted");
    EXPECT_EQ(rowText::volumeValue(2.0F), "200 percent, boosted");
}

TEST(RowText, NamesTheMuteButtonByWhatItDoes) {
    EXPECT_EQ(rowText::muteSymbol(true), "speaker.slash.fill");
    EXPECT_EQ(rowText::muteSymbol(false), "speaker.wave.2.fill");
    EXPECT_EQ(rowText::muteHelp(true), "Unmute");
    EXPECT_EQ(rowText::muteHelp(false), "Mute");
    EXPECT_EQ(rowText::muteLabel("Vinyl", true), "Unmute Vinyl");
    EXPECT_EQ(rowText::muteLabel("Vinyl", false), "Mute Vinyl");
    EXPECT_EQ(rowText::outputLabel("Vinyl"), "Output device for Vinyl");
}

TEST(RowText, TellsOfTheEqualizer) {
    EXPECT_EQ(rowText::equalizerLabel("Vinyl"), "Equalizer for Vinyl");
    EXPECT_EQ(rowText::equalizerValue(EQPreset{}), "Flat");
    EXPECT_EQ(rowText::equalizerValue(EQPreset::rock), "Active");
    EXPECT_EQ(rowText::expansionHint(true), "Double tap to collapse");
    EXPECT_EQ(rowText::expansionHint(false), "Double tap to expand");
    EXPECT_EQ(rowText::modeText(false), "Simple");
    EXPECT_EQ(rowText::modeLabel(false), "Switch to 10-band EQ");
    EXPECT_EQ(rowText::modeText(true), "10-Band");
    EXPECT_EQ(rowText::modeLabel(true), "Switch to simple EQ");
    EXPECT_EQ(rowText::simpleBandText(EQSimpleBand::bass), "Bass");
    EXPECT_EQ(rowText::simpleBandText(EQSimpleBand::mid), "Mid");
    EXPECT_EQ(rowText::simpleBandText(EQSimpleBand::treble), "Treble");
    EXPECT_EQ(rowText::bandLabel(0, "Vinyl"), "31 Hz EQ for Vinyl");
    EXPECT_EQ(rowText::bandLabel(9, "Vinyl"), "16K Hz EQ for Vinyl");
}

TEST(RowText, WritesGainsWithTheirSign) {
    EXPECT_EQ(rowText::gainReadOut(4.0F), "+4");
    EXPECT_EQ(rowText::gainReadOut(-2.0F), "-2");
    EXPECT_EQ(rowText::gainReadOut(0.0F), "+0");
    EXPECT_EQ(rowText::gainReadOut(2.5F), "+2") << "halves go to the even number";
    EXPECT_EQ(rowText::gainReadOut(3.5F), "+4");
    EXPECT_EQ(rowText::gainReadOut(-0.4F), "-0");
    EXPECT_EQ(rowText::gainValue(-12.0F), "-12 decibels");
    EXPECT_FALSE(rowText::isGainLit(0.5F));
    EXPECT_FALSE(rowText::isGainLit(-0.5F));
    EXPECT_TRUE(rowText::isGainLit(1.0F));
    EXPECT_TRUE(rowText::isGainLit(-1.0F));
}

TEST(RowText, TellsABalanceBeyondTheMiddle) {
    EXPECT_EQ(rowText::balanceLabel("Vinyl"), "Stereo balance for Vinyl");
    for (const float near : {0.0F, 0.05F, -0.05F}) {
        EXPECT_EQ(rowText::balanceValue(near), "Center");
        EXPECT_EQ(rowText::balanceReadOut(near), "");
    }
    EXPECT_EQ(rowText::balanceValue(-0.2F), "20 percent left");
    EXPECT_EQ(rowText::balanceReadOut(-0.2F), "20% Left");
    EXPECT_EQ(rowText::balanceValue(0.35F), "35 percent right");
    EXPECT_EQ(rowText::balanceReadOut(1.0F), "100% Right");
}

TEST(RowText, LightsTheSideABalanceLeansTo) {
    EXPECT_FALSE(rowText::isLeftLit(-0.1F));
    EXPECT_TRUE(rowText::isLeftLit(-0.15F));
    EXPECT_FALSE(rowText::isRightLit(0.05F));
    EXPECT_TRUE(rowText::isRightLit(0.1F)) << "the right side lights sooner";
    EXPECT_FALSE(rowText::isRightLit(-0.5F));
    EXPECT_FALSE(rowText::isLeftLit(0.5F));
}

TEST(RowText, TellsOfGateAndCompressor) {
    EXPECT_EQ(rowText::gateLabel("Vinyl"), "Noise gate for Vinyl");
    EXPECT_EQ(rowText::gateHelp(true), "Gate open (audio passing)");
    EXPECT_EQ(rowText::gateHelp(false), "Gate closed (silencing)");
    EXPECT_EQ(rowText::thresholdReadOut(-48.0F), "-48 dB");
    EXPECT_EQ(rowText::thresholdValue(-48.0F), "-48 decibels");
    EXPECT_EQ(rowText::compressorLabel("Vinyl"), "Compressor preset for Vinyl");
}

} // namespace
} // namespace orvanta
