#include "tests/app/views/PanelTest.h"

#include "app/drawing/LevelMeter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Panel = PanelTest;

TEST_F(Panel, ShowsInPlaceOfAnEmptyListThatThereIsNothing) {
    showPanel();
    EXPECT_TRUE(says("No audio apps detected"));
    EXPECT_TRUE(says("Play audio in any app to see it here"));
    EXPECT_FALSE(appList()->isVisible());
    EXPECT_TRUE(says("0 apps"));
    list(10, "Vinyl");
    refresh();
    settleView();
    EXPECT_FALSE(says("No audio apps detected"));
    EXPECT_TRUE(appList()->isVisible());
    EXPECT_TRUE(says("Vinyl"));
    EXPECT_TRUE(says("1 app"));
    quit(10);
    EXPECT_TRUE(says("No audio apps detected"));
}

TEST_F(Panel, CountsInItsHeader) {
    listAndTap(10, "Vinyl");
    list(11, "Telly", std::nullopt, false);
    refresh();
    showPanel();
    EXPECT_TRUE(says("Orvanta"));
    EXPECT_TRUE(says("2 apps"));
    EXPECT_TRUE(says("1 tapped"));
    EXPECT_TRUE(says("1 playing"));
    model->toggleTap(discovery->apps[0]);
    discovery->apps[0].isPlaying = false;
    refresh();
    settleView();
    EXPECT_FALSE(says("1 tapped"));
    EXPECT_FALSE(says("0 tapped"));
    EXPECT_FALSE(says("0 playing"));
}

TEST_F(Panel, HasAHeaderForEverySectionThatHasRows) {
    list(10, "Vinyl");
    refresh();
    showPanel();
    EXPECT_TRUE(says("PLAYING"));
    EXPECT_FALSE(says("IDLE"));
    list(11, "Telly", std::nullopt, false);
    refresh();
    settleView();
    EXPECT_TRUE(says("PLAYING"));
    EXPECT_TRUE(says("IDLE"));
    EXPECT_FALSE(says("RECENTLY ACTIVE"));
    discovery->apps[0].isPlaying = false;
    refresh();
    settleView();
    EXPECT_FALSE(says("PLAYING"));
    EXPECT_TRUE(says("2")) << "both are idle now";
}

TEST_F(Panel, MovesARowToIdleAfterAMinuteOfSilence) {
    listAndTap(10, "Vinyl");
    showPanel();
    tapping->levels[10] = {.rms = 0.2F, .peak = 0.4F};
    runLoop.advance(Seconds{0.2});
    model->toggleTap(discovery->apps[0]);
    discovery->apps[0].isPlaying = false;
    refresh();
    runLoop.advance(model->lastActiveTime().at(10) + Seconds{59.0} - runLoop.now());
    settleView();
    EXPECT_TRUE(says("RECENTLY ACTIVE"));
    runLoop.advance(Seconds{1.01});
    settleView();
    EXPECT_FALSE(says("RECENTLY ACTIVE"));
    EXPECT_TRUE(says("IDLE"));
}

TEST_F(Panel, UnfoldsARowWhenItIsTapped) {
    list(10, "Vinyl");
    refresh();
    showPanel();
    EXPECT_EQ(control("Vinyl volume"), nullptr);
    EXPECT_EQ(control("Record Vinyl audio"), nullptr) << "only while it is tapped";
    EXPECT_EQ(descriptionOf(the("Tap Vinyl audio")),
              "Double tap to control this app's volume and effects");
    click("Tap Vinyl audio");
    EXPECT_TRUE(model->isTapped(10));
    for (const char* const name :
         {"Record Vinyl audio", "Mute Vinyl", "Vinyl volume", "Equalizer for Vinyl",
          "Stereo balance for Vinyl", "Noise gate for Vinyl", "Compressor preset for Vinyl"})
        EXPECT_NE(control(name), nullptr) << name;
    click("Remove tap from Vinyl");
    EXPECT_FALSE(model->isTapped(10));
    EXPECT_EQ(control("Vinyl volume"), nullptr);
    EXPECT_EQ(control("Record Vinyl audio"), nullptr);
}

TEST_F(Panel, SaysHowLoudARowIs) {
    showTapped(10, "Vinyl");
    EXPECT_EQ(descriptionOf(the("Vinyl volume")), "100 percent");
    model->setVolume(10, 1.01F);
    settleView();
    EXPECT_EQ(descriptionOf(the("Vinyl volume")), "101 percent, boosted");
    EXPECT_TRUE(says("101%"));
    model->setVolume(10, 2.0F);
    settleView();
    EXPECT_TRUE(says("200%"));
}

TEST_F(Panel, SetsARowsVolumeByMouseAndKey) {
    showTapped(10, "Vinyl");
    QQuickItem& slider = the("Vinyl volume");
    press(placeOn(slider, 0.25));
    EXPECT_EQ(model->volume(10), 0.5F);
    move(placeOn(slider, 0.75));
    EXPECT_EQ(model->volume(10), 1.5F);
    move(placeOn(slider, 1.0) + QPoint(20, 0));
    EXPECT_EQ(model->volume(10), 2.0F);
    release(placeOn(slider, 1.0));
    key(Qt::Key_Left);
    EXPECT_FLOAT_EQ(model->volume(10), 1.99F);
    key(Qt::Key_PageDown);
    EXPECT_FLOAT_EQ(model->volume(10), 1.89F);
    key(Qt::Key_Home);
    EXPECT_EQ(model->volume(10), 0.0F);
    EXPECT_TRUE(says("0%"));
}

TEST_F(Panel, KeepsARowsHandsVolumeWhileTheModelHasAnother) {
    showTapped(10, "Vinyl");
    QQuickItem& slider = the("Vinyl volume");
    press(placeOn(slider, 0.25));
    model->setVolume(10, 1.8F);
    settleView();
    EXPECT_EQ(slider.property("value"), 0.5);
    release(placeOn(slider, 0.25));
    EXPECT_EQ(model->volume(10), 0.5F);
}

TEST_F(Panel, MutesARow) {
    showTapped(10, "Vinyl");
    click("Mute Vinyl");
    EXPECT_TRUE(model->isMuted(10));
    EXPECT_NE(control("Unmute Vinyl"), nullptr);
    EXPECT_TRUE(showsSymbol("speaker.slash.fill"));
    click("Unmute Vinyl");
    EXPECT_FALSE(model->isMuted(10));
    EXPECT_FALSE(showsSymbol("speaker.slash.fill"));
}

TEST_F(Panel, RecordsARow) {
    showTapped(10, "Vinyl");
    EXPECT_FALSE(says("REC"));
    EXPECT_EQ(descriptionOf(the("Record Vinyl audio")), "Not recording");
    click("Record Vinyl audio");
    EXPECT_TRUE(says("REC"));
    EXPECT_TRUE(says("0:00"));
    tapping->recordingDurations[10] = 727.5;
    runLoop.advance(Seconds{0.2});
    settleView();
    EXPECT_TRUE(says("12:07"));
    EXPECT_EQ(descriptionOf(the("Stop recording Vinyl")), "Recording, 12:07");
    click("Stop recording Vinyl");
    EXPECT_FALSE(says("REC"));
    EXPECT_FALSE(says("12:07"));
}

TEST_F(Panel, HasNoOutputMenuWhereThereIsOneDevice) {
    showTapped(10, "Vinyl");
    EXPECT_EQ(control("Output device for Vinyl"), nullptr);
    addDevice("monitors", "Studio Monitors");
    settleView();
    EXPECT_EQ(descriptionOf(the("Output device for Vinyl")), "System Default");
    removeLastDevice();
    EXPECT_EQ(control("Output device for Vinyl"), nullptr);
}

TEST_F(Panel, SendsARowToTheDeviceThatIsChosen) {
    addDevice("monitors", "Studio Monitors");
    showTapped(10, "Vinyl");
    click("Output device for Vinyl");
    EXPECT_TRUE(isChecked(the("System Default")));
    EXPECT_FALSE(isChecked(the("Studio Monitors")));
    click("Studio Monitors");
    EXPECT_EQ(model->outputDeviceUID(10), "monitors");
    EXPECT_EQ(descriptionOf(the("Output device for Vinyl")), "Studio Monitors");
    click("Output device for Vinyl");
    EXPECT_TRUE(isChecked(the("Studio Monitors")));
    click("System Default");
    EXPECT_EQ(model->outputDeviceUID(10), std::nullopt);
}

TEST_F(Panel, BearsThatADeviceGoesWhileItsMenuIsOpen) {
    addDevice("monitors", "Studio Monitors");
    addDevice("headphones", "Headphones");
    showTapped(10, "Vinyl");
    click("Output device for Vinyl");
    EXPECT_NE(control("Headphones"), nullptr);
    removeLastDevice();
    EXPECT_EQ(control("Headphones"), nullptr);
    EXPECT_NE(control("Studio Monitors"), nullptr);
    removeLastDevice();
    EXPECT_EQ(control("System Default"), nullptr) << "there is nothing left to choose from";
    key(Qt::Key_Return);
    EXPECT_THAT(tapping->calls, IsEmpty());
}

TEST_F(Panel, BearsThatAProgramQuitsWhileItsMenuIsOpen) {
    addDevice("monitors", "Studio Monitors");
    showTapped(10, "Vinyl");
    click("Output device for Vinyl");
    quit(10);
    EXPECT_EQ(control("Studio Monitors"), nullptr);
    EXPECT_TRUE(says("No audio apps detected"));
    key(Qt::Key_Escape);
}

TEST_F(Panel, UnfoldsTheEqualizerInTwoModes) {
    showTapped(10, "Vinyl");
    EXPECT_EQ(control("Bass"), nullptr);
    EXPECT_EQ(control("Switch to 10-band EQ"), nullptr);
    EXPECT_EQ(descriptionOf(the("Equalizer for Vinyl")), "Flat. Double tap to expand");
    click("Equalizer for Vinyl");
    EXPECT_EQ(descriptionOf(the("Equalizer for Vinyl")), "Flat. Double tap to collapse");
    for (const char* const name : {"Bass", "Mid", "Treble"})
        EXPECT_EQ(descriptionOf(the(name)), "+0 decibels") << name;
    EXPECT_TRUE(says("Simple"));
    click("Switch to 10-band EQ");
    EXPECT_TRUE(says("10-Band"));
    EXPECT_EQ(control("Bass"), nullptr);
    for (const char* const band : {"31", "62", "125", "250", "500", "1K", "2K", "4K", "8K", "16K"})
        EXPECT_NE(control(QString(band) + " Hz EQ for Vinyl"), nullptr) << band;
    click("Switch to simple EQ");
    EXPECT_NE(control("Bass"), nullptr);
    click("Equalizer for Vinyl");
    EXPECT_EQ(control("Bass"), nullptr);
}

TEST_F(Panel, SetsTheBandsOfTheEqualizer) {
    showTapped(10, "Vinyl");
    click("Equalizer for Vinyl");
    the("Bass").forceActiveFocus();
    key(Qt::Key_Right);
    EXPECT_THAT(tapping->takeCalls(), ElementsAre("setEQ 10 3 0.5"));
    the("Mid").forceActiveFocus();
    key(Qt::Key_End);
    the("Treble").forceActiveFocus();
    key(Qt::Key_Home);
    EXPECT_THAT(tapping->takeCalls(), ElementsAre("setEQ 10 5 12", "setEQ 10 7 -12"));
    EXPECT_EQ(descriptionOf(the("Treble")), "-12 decibels");
    click("Switch to 10-band EQ");
    the("16K Hz EQ for Vinyl").forceActiveFocus();
    key(Qt::Key_Up);
    EXPECT_THAT(tapping->takeCalls(), ElementsAre("setEQ 10 9 0.5"));
}

TEST_F(Panel, PutsTheEqualizerBackOnlyWhereItIsNotFlat) {
    showTapped(10, "Vinyl");
    click("Equalizer for Vinyl");
    EXPECT_EQ(control("Reset EQ"), nullptr);
    model->setEQ(10, 3, 4.0F);
    settleView();
    EXPECT_EQ(descriptionOf(the("Equalizer for Vinyl")), "Active. Double tap to collapse");
    click("Reset EQ");
    EXPECT_TRUE(model->eqPreset(10).isFlat());
    EXPECT_EQ(control("Reset EQ"), nullptr);
}

TEST_F(Panel, OffersTheEqualizersPresetsUnderTheirHeadings) {
    showTapped(10, "Vinyl");
    click("Equalizer for Vinyl");
    click("Presets");
    for (const char* const heading : {"Genre", "Context", "Voice & Utility"})
        EXPECT_TRUE(says(heading)) << heading;
    click("Jazz");
    EXPECT_EQ(model->eqPreset(10), EQPreset::jazz);
    EXPECT_EQ(control("Jazz"), nullptr) << "the menu is closed";
    click("Presets");
    EXPECT_TRUE(isChecked(the("Jazz")));
    EXPECT_FALSE(isChecked(the("Rock")));
}

TEST_F(Panel, SetsTheBalanceWhenTheHandLetsGo) {
    showTapped(10, "Vinyl");
    QQuickItem& slider = the("Stereo balance for Vinyl");
    EXPECT_EQ(descriptionOf(slider), "Center");
    press(placeOn(slider, 0.75));
    EXPECT_EQ(descriptionOf(slider), "50 percent right");
    EXPECT_TRUE(says("50% Right"));
    EXPECT_THAT(tapping->calls, IsEmpty());
    release(placeOn(slider, 0.75));
    EXPECT_THAT(tapping->calls, ElementsAre("setBalance 10 0.5"));
}

TEST_F(Panel, ShowsTheGatesThresholdOnlyWhileItIsOn) {
    showTapped(10, "Vinyl");
    EXPECT_EQ(control("Noise gate threshold"), nullptr);
    EXPECT_FALSE(isChecked(the("Noise gate for Vinyl")));
    click("Noise gate for Vinyl");
    EXPECT_TRUE(isChecked(the("Noise gate for Vinyl")));
    EXPECT_EQ(descriptionOf(the("Noise gate threshold")), "-60 decibels");
    EXPECT_TRUE(says("-60 dB"));
    the("Noise gate threshold").forceActiveFocus();
    key(Qt::Key_Right);
    EXPECT_THAT(tapping->calls,
                ElementsAre("setNoiseGate 10 true -60", "setNoiseGate 10 true -59"));
    click("Noise gate for Vinyl");
    EXPECT_EQ(control("Noise gate threshold"), nullptr);
}

TEST_F(Panel, SaysWhetherTheGateIsOpen) {
    showTapped(10, "Vinyl");
    const auto hasDot = [this](const char* name) {
        return std::ranges::any_of(visibleItems(),
                                   [&](QQuickItem* item) { return nameOf(*item) == name; });
    };
    model->setNoiseGate(10, true, -60.0F);
    tapping->gatesOpen[10] = false;
    runLoop.advance(Seconds{0.05});
    settleView();
    EXPECT_TRUE(hasDot("Gate closed (silencing)"));
    tapping->gatesOpen[10] = true;
    runLoop.advance(Seconds{0.05});
    settleView();
    EXPECT_TRUE(hasDot("Gate open (audio passing)"));
    EXPECT_FALSE(hasDot("Gate closed (silencing)"));
}

TEST_F(Panel, DimsACompressorThatIsOff) {
    showTapped(10, "Vinyl");
    const auto opacity = [this] {
        for (QQuickItem* const item : visibleItems())
            if (item->property("text").toString() == "Compressor")
                return item->opacity() * item->parentItem()->opacity();
        return -1.0;
    };
    EXPECT_DOUBLE_EQ(opacity(), 0.5);
    click("Compressor preset for Vinyl");
    EXPECT_TRUE(isChecked(the("Off")));
    click("Music");
    EXPECT_EQ(model->getCompressor(10), CompressorPreset::music);
    EXPECT_EQ(descriptionOf(the("Compressor preset for Vinyl")), "Music");
    EXPECT_DOUBLE_EQ(opacity(), 1.0);
}

TEST_F(Panel, RevealsNineQuantitiesOfTheCompressor) {
    showTapped(10, "Vinyl");
    const auto quantities = [this] {
        return std::ranges::count_if(visibleItems(), [](QQuickItem* item) {
            return roleOf(*item) == QAccessible::Slider && nameOf(*item).endsWith(" compressor");
        });
    };
    EXPECT_EQ(quantities(), 0);
    click("Advanced");
    EXPECT_EQ(quantities(), 9);
    EXPECT_EQ(descriptionOf(the("Ratio compressor")), "1 to 1");
    the("Ratio compressor").forceActiveFocus();
    key(Qt::Key_PageUp);
    EXPECT_EQ(model->getCompressor(10).bands.front().ratio, 6.0F);
    EXPECT_EQ(descriptionOf(the("Compressor preset for Vinyl")), "Custom");
    click("Advanced");
    EXPECT_EQ(quantities(), 0);
}

TEST_F(Panel, MovesTheMasterVolumeOnceTheHandLetsGo) {
    showPanel();
    QQuickItem& slider = the("Master volume");
    EXPECT_EQ(descriptionOf(slider), "100 percent");
    press(placeOn(slider, 0.5));
    move(placeOn(slider, 0.25));
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
    EXPECT_EQ(descriptionOf(slider), "25 percent");
    EXPECT_TRUE(says("25%"));
    release(placeOn(slider, 0.25));
    EXPECT_EQ(model->masterVolume.get(), 0.25F);
    EXPECT_TRUE(showsSymbol("speaker.wave.1.fill"));
}

TEST_F(Panel, NeverRaisesTheMasterVolumeBeyondOne) {
    showPanel();
    QQuickItem& slider = the("Master volume");
    press(placeOn(slider, 0.5));
    move(placeOn(slider, 1.0) + QPoint(50, 0));
    release(placeOn(slider, 1.0) + QPoint(50, 0));
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
    key(Qt::Key_Right);
    key(Qt::Key_PageUp);
    key(Qt::Key_End);
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
    slider.setProperty("value", 1.7);
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
}

TEST_F(Panel, SwitchesAutoTap) {
    showPanel();
    EXPECT_FALSE(isChecked(the("Auto-tap")));
    EXPECT_EQ(descriptionOf(the("Auto-tap")), "Double tap to enable automatic audio tapping");
    list(10, "Vinyl");
    click("Auto-tap");
    EXPECT_TRUE(isChecked(the("Auto-tap")));
    EXPECT_EQ(descriptionOf(the("Auto-tap")), "Double tap to disable automatic audio tapping");
    EXPECT_TRUE(model->isTapped(10));
}

TEST_F(Panel, GoesRoundTheThemes) {
    showPanel();
    EXPECT_EQ(the("Switch theme").property("help"), "Theme: Classic — click to switch");
    click("Switch theme");
    EXPECT_EQ(themes.choice.get(), ThemeChoice::meridane);
    EXPECT_EQ(the("Switch theme").property("help"), "Theme: Meridane — click to switch");
    click("Switch theme");
    EXPECT_EQ(themes.choice.get(), ThemeChoice::classic);
}

TEST_F(Panel, MutesAllFromItsFooter) {
    showPanel();
    EXPECT_TRUE(says("Mute All"));
    EXPECT_EQ(the("Mute all").property("help"), "⌘⇧M — Mute/unmute all audio");
    EXPECT_EQ(descriptionOf(the("Mute all")), "Keyboard shortcut: Command Shift M");
    click("Mute all");
    EXPECT_TRUE(model->isMasterMuted.get());
    EXPECT_TRUE(says("Unmute All"));
    click("Unmute all");
    EXPECT_FALSE(model->isMasterMuted.get());
}

TEST_F(Panel, SwitchesLaunchAtLogin) {
    showPanel();
    EXPECT_TRUE(says("Launch at Login"));
    EXPECT_TRUE(showsSymbol("circle"));
    click("Launch at login");
    EXPECT_TRUE(model->launchAtLogin.get());
    EXPECT_TRUE(isChecked(the("Launch at login")));
    EXPECT_TRUE(showsSymbol("checkmark.circle.fill"));
}

TEST_F(Panel, SaysItsVersionAndOpensOtherWindows) {
    showPanel();
    EXPECT_TRUE(says("v1.0.0"));
    EXPECT_TRUE(says("Console"));
    EXPECT_EQ(the("Open Sound Command Center").property("help"), "⌘⇧C — Open Sound Command Center");
    click("Open Sound Command Center");
    EXPECT_THAT(windows.calls, ElementsAre("close key window", "open command-center", "activate"));
    windows.calls.clear();
    click("About Orvanta");
    EXPECT_THAT(windows.calls, ElementsAre("close key window", "open about", "activate"));
    click("Quit Orvanta");
    EXPECT_EQ(quits, 1);
}

TEST_F(Panel, ShowsThatUpdatesCannotBeLookedFor) {
    showPanel();
    expectUpdatesAreLookedForWhereTheyCanBe();
}

TEST_F(Panel, FoldsItsRowsWhenItCloses) {
    showTapped(10, "Vinyl");
    click("Equalizer for Vinyl");
    click("Switch to 10-band EQ");
    mixer->setPanelVisible(false);
    settleView();
    EXPECT_NE(control("31 Hz EQ for Vinyl"), nullptr) << "it is only covered";
    mixer->panelClosed();
    settleView();
    EXPECT_EQ(control("31 Hz EQ for Vinyl"), nullptr);
    click("Equalizer for Vinyl");
    EXPECT_NE(control("Bass"), nullptr) << "the mode is the first one again";
}

TEST_F(Panel, FoldsARowWhoseTapEndsAndBeginsAgain) {
    showTapped(10, "Vinyl");
    click("Equalizer for Vinyl");
    click("Remove tap from Vinyl");
    click("Tap Vinyl audio");
    EXPECT_EQ(control("Bass"), nullptr);
}

TEST_F(Panel, WritesNothingForAProgramThatQuitsUnderTheHand) {
    listAndTap(10, "Vinyl");
    listAndTap(11, "Telly");
    showPanel();
    const QPoint place = placeOn(the("Vinyl volume"), 0.25);
    press(place);
    forget();
    quit(10);
    const std::vector<std::string> told = tapping->takeCalls();
    EXPECT_THAT(told, ElementsAre("removeTap 10"));
    move(place + QPoint(30, 0));
    release(place + QPoint(30, 0));
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_EQ(model->volume(11), 1.0F);
    EXPECT_FALSE(model->volumes.get().contains(10));
}

TEST_F(Panel, WritesNothingWhenATapEndsUnderTheHand) {
    showTapped(10, "Vinyl");
    const QPoint place = placeOn(the("Stereo balance for Vinyl"), 0.75);
    press(place);
    model->toggleTap(discovery->apps[0]);
    settleView();
    forget();
    move(place + QPoint(30, 0));
    release(place + QPoint(30, 0));
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_TRUE(model->balances.get().empty());
}

TEST_F(Panel, LeavesADragToTheRowThatItBeganOn) {
    for (std::int32_t pid = 10; pid < 13; ++pid)
        listAndTap(pid, "Program " + std::to_string(pid));
    showPanel();
    const QPoint place = placeOn(the("Program 10 volume"), 0.25);
    press(place);
    discovery->apps[0].isPlaying = false;
    std::rotate(discovery->apps.begin(), discovery->apps.begin() + 1, discovery->apps.end());
    refresh();
    settleView();
    move(place + QPoint(25, 0));
    EXPECT_EQ(model->volume(11), 1.0F);
    EXPECT_EQ(model->volume(12), 1.0F);
    release(place + QPoint(25, 0));
    EXPECT_EQ(model->volume(11), 1.0F);
    EXPECT_EQ(model->volume(12), 1.0F);
}

TEST_F(Panel, HasAMeterThatFollowsTheLevelWhileThePanelIsOpen) {
    showTapped(10, "Vinyl");
    const auto meter = [this] {
        for (QQuickItem* const item : visibleItems())
            if (const auto* const found = qobject_cast<LevelMeter*>(item))
                return found;
        throw std::runtime_error("there is no meter");
    };
    EXPECT_EQ(meter()->level(), 0.0);
    tapping->levels[10] = {.rms = 0.3F, .peak = 0.5F};
    letMetersRise();
    EXPECT_NEAR(meter()->level(), 0.5, 0.01);
    model->toggleMute(10);
    settleView();
    runLoop.advance(Seconds{0.2});
    EXPECT_GT(meter()->level(), 0.1) << "it falls slowly";
    runLoop.advance(Seconds{2.0});
    EXPECT_EQ(meter()->level(), 0.0);
    model->toggleMute(10);
    mixer->setPanelVisible(false);
    letMetersRise();
    EXPECT_EQ(meter()->level(), 0.0);
}

} // namespace
} // namespace orvanta::test
