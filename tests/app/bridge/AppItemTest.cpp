#include "app/bridge/AppItem.h"

#include "app/bridge/Text.h"
#include "tests/support/model/ModelRig.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMetaProperty>
#include <QSignalSpy>
#include <utility>

namespace orvanta::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// An icon whose picture has a name, and a file for one size only.
class NamedIcon final : public Icon {
public:
    explicit NamedIcon(std::string key) : key_(std::move(key)) {}

    [[nodiscard]] std::string cacheKey() const override { return key_; }

    [[nodiscard]] std::optional<std::filesystem::path> imageFile(int pixels) const override {
        return pixels == 26 ? std::optional<std::filesystem::path>("/icons/vinyl.png")
                            : std::nullopt;
    }

private:
    const std::string key_;
};

class AppItemTest : public testing::Test, public ModelRig {
protected:
    AppItemTest() {
        startRunning();
        list(10, "Vinyl");
        refresh();
        item = std::make_unique<AppItem>(model, model->audioApps.get().front(), runLoop.now());
        changes = std::make_unique<QSignalSpy>(item.get(), &AppItem::changed);
        expansions = std::make_unique<QSignalSpy>(item.get(), &AppItem::expansionChanged);
        forget();
    }

    void update() { item->update(model->audioApps.get().front(), runLoop.now()); }

    void startTap() {
        model->toggleTap(model->audioApps.get().front());
        update();
        forget();
        changes->clear();
    }

    std::unique_ptr<AppItem> item;
    std::unique_ptr<QSignalSpy> changes;
    std::unique_ptr<QSignalSpy> expansions;
};

TEST_F(AppItemTest, SaysWhatItIsAndHowItIsTapped) {
    EXPECT_EQ(item->pid(), 10);
    EXPECT_EQ(item->name(), "Vinyl");
    EXPECT_TRUE(item->isPlaying());
    EXPECT_FALSE(item->isRecentlyActive());
    EXPECT_FALSE(item->isTapped());
    EXPECT_EQ(item->tapHelp(), "Tap this app's audio");
    EXPECT_EQ(item->tapLabel(), "Tap Vinyl audio");
    EXPECT_EQ(item->tapHint(), "Double tap to control this app's volume and effects");
    item->toggleTap();
    update();
    EXPECT_TRUE(item->isTapped());
    EXPECT_EQ(item->tapHelp(), "Remove audio tap");
    EXPECT_EQ(item->tapLabel(), "Remove tap from Vinyl");
    EXPECT_EQ(item->tapHint(), "Double tap to stop controlling this app's audio");
    item->toggleTap();
    update();
    EXPECT_FALSE(item->isTapped());
}

TEST_F(AppItemTest, HasTheFileOfItsIconWhereThereIsOne) {
    EXPECT_EQ(item->iconKey(), "");
    EXPECT_TRUE(item->iconFile(26).isEmpty());
    AudioApp pictured = model->audioApps.get().front();
    pictured.icon = std::make_shared<NamedIcon>("vinyl");
    item->update(pictured, runLoop.now());
    EXPECT_EQ(changes->count(), 1);
    EXPECT_EQ(item->iconKey(), "vinyl");
    EXPECT_EQ(item->iconFile(26), QUrl("file:///icons/vinyl.png"));
    EXPECT_TRUE(item->iconFile(27).isEmpty());
}

TEST_F(AppItemTest, TellsOfAChangeOnlyWhenItsRowWouldLookDifferent) {
    update();
    EXPECT_EQ(changes->count(), 0);
    startTap();
    update();
    EXPECT_EQ(changes->count(), 0);
    model->setVolume(10, 1.0F);
    model->setBalance(10, 0.0F);
    update();
    EXPECT_EQ(changes->count(), 0) << "the same as before";
    model->setBalance(10, 0.5F);
    model->setEQ(10, 3, 4.0F);
    update();
    EXPECT_EQ(changes->count(), 1) << "one for all";
    model->setVolume(99, 0.2F);
    update();
    EXPECT_EQ(changes->count(), 1) << "another application's";
}

TEST_F(AppItemTest, SaysHowLoudItIs) {
    struct Case {
        float volume;
        QString readOut;
        QString value;
        QString color;
    };

    startTap();
    for (const auto& [volume, readOut, value, color] :
         {Case{0.0F, "0%", "0 percent", "green"}, Case{0.5F, "50%", "50 percent", "green"},
          Case{0.51F, "51%", "51 percent", "accent"}, Case{0.8F, "80%", "80 percent", "accent"},
          Case{0.85F, "85%", "85 percent", "warmOrange"},
          Case{1.0F, "100%", "100 percent", "warmOrange"},
          Case{1.01F, "101%", "101 percent, boosted", "boostAmber"},
          Case{1.5F, "150%", "150 percent, boosted", "boostAmber"},
          Case{1.51F, "151%", "151 percent, boosted", "red"},
          Case{2.0F, "200%", "200 percent, boosted", "red"}}) {
        model->setVolume(10, volume);
        update();
        EXPECT_EQ(item->volume(), static_cast<double>(volume));
        EXPECT_EQ(item->volumeReadOut(), readOut);
        EXPECT_EQ(item->volumeValue(), value);
        EXPECT_EQ(item->volumeColor(), color);
    }
    EXPECT_EQ(item->volumeLabel(), "Vinyl volume");
}

TEST_F(AppItemTest, PassesEveryMoveOfAHandOnAtOnce) {
    startTap();
    item->beginVolumeDrag();
    EXPECT_THAT(tapping->calls, IsEmpty());
    item->moveVolume(0.5);
    EXPECT_THAT(tapping->takeCalls(), ElementsAre("setVolume 10 0.5"));
    EXPECT_EQ(model->volume(10), 0.5F);
    item->moveVolume(0.25);
    EXPECT_THAT(tapping->takeCalls(), ElementsAre("setVolume 10 0.25"));
    item->endVolumeDrag();
    EXPECT_THAT(tapping->takeCalls(), ElementsAre("setVolume 10 0.25"));
    EXPECT_EQ(item->volume(), 0.25);
}

TEST_F(AppItemTest, ShowsTheHandsVolumeWhileItIsHeldWhateverTheModelSays) {
    startTap();
    item->beginVolumeDrag();
    item->moveVolume(0.5);
    EXPECT_EQ(item->volumeReadOut(), "50%");
    model->setVolume(10, 1.75F);
    update();
    EXPECT_EQ(item->volume(), 0.5);
    EXPECT_EQ(item->volumeReadOut(), "50%");
    item->endVolumeDrag();
    update();
    EXPECT_EQ(model->volume(10), 0.5F);
    model->setVolume(10, 1.75F);
    update();
    EXPECT_EQ(item->volume(), 1.75);
}

TEST_F(AppItemTest, SetsNoVolumeOnceItsTapIsGone) {
    startTap();
    item->beginVolumeDrag();
    item->moveVolume(0.5);
    model->toggleTap(model->audioApps.get().front());
    update();
    forget();
    item->moveVolume(0.75);
    item->endVolumeDrag();
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_TRUE(model->volumes.get().empty());
}

TEST_F(AppItemTest, ShowsANewTapsVolumeAfterADragThatOutlivedTheOldOne) {
    startTap();
    item->beginVolumeDrag();
    item->moveVolume(0.5);
    model->toggleTap(model->audioApps.get().front());
    update();
    item->endVolumeDrag();
    settings->records.clear();
    startTap();
    EXPECT_EQ(item->volume(), 1.0);
}

TEST_F(AppItemTest, MutesAndUnmutes) {
    startTap();
    EXPECT_EQ(item->muteSymbol(), "speaker.wave.2.fill");
    EXPECT_EQ(item->muteHelp(), "Mute");
    EXPECT_EQ(item->muteLabel(), "Mute Vinyl");
    item->toggleMute();
    update();
    EXPECT_TRUE(item->isMuted());
    EXPECT_EQ(item->muteSymbol(), "speaker.slash.fill");
    EXPECT_EQ(item->muteHelp(), "Unmute");
    EXPECT_EQ(item->muteLabel(), "Unmute Vinyl");
    item->toggleMute();
    update();
    EXPECT_FALSE(item->isMuted());
}

TEST_F(AppItemTest, HasNoLevelWhileItIsMuted) {
    startTap();
    tapping->levels[10] = {.rms = 0.2F, .peak = 0.4F};
    runLoop.advance(Seconds{0.2});
    EXPECT_EQ(item->level(), static_cast<double>(0.4F));
    item->toggleMute();
    update();
    EXPECT_EQ(item->level(), 0.0);
}

TEST_F(AppItemTest, PlaysWhereItIsSentTo) {
    startTap();
    EXPECT_EQ(item->outputUID(), "");
    EXPECT_EQ(item->outputLabel(), "Output device for Vinyl");
    item->route("speakers");
    update();
    EXPECT_EQ(item->outputUID(), "speakers");
    EXPECT_EQ(model->outputDeviceUID(10), "speakers");
    item->route("");
    update();
    EXPECT_EQ(item->outputUID(), "");
    EXPECT_EQ(model->outputDeviceUID(10), std::nullopt);
}

TEST_F(AppItemTest, UnfoldsItsEqualizerInTwoModes) {
    startTap();
    EXPECT_FALSE(item->isEQExpanded());
    EXPECT_EQ(item->equalizerHint(), "Double tap to expand");
    EXPECT_EQ(item->modeText(), "Simple");
    EXPECT_EQ(item->modeLabel(), "Switch to 10-band EQ");
    item->toggleEQ();
    item->toggleEQMode();
    EXPECT_EQ(expansions->count(), 2);
    EXPECT_TRUE(item->isEQExpanded());
    EXPECT_TRUE(item->isAdvancedEQ());
    EXPECT_EQ(item->equalizerHint(), "Double tap to collapse");
    EXPECT_EQ(item->modeText(), "10-Band");
    EXPECT_EQ(item->modeLabel(), "Switch to simple EQ");
    EXPECT_EQ(changes->count(), 0);
}

TEST_F(AppItemTest, FoldsWhenATapBeginsOrEndsAndWhenItIsTold) {
    const auto unfold = [this] {
        item->toggleEQ();
        item->toggleEQMode();
        item->toggleCompressorAdvanced();
        expansions->clear();
    };
    const auto expectFolded = [this](const char* after) {
        EXPECT_FALSE(item->isEQExpanded()) << after;
        EXPECT_FALSE(item->isAdvancedEQ()) << after;
        EXPECT_FALSE(item->isCompressorAdvanced()) << after;
        EXPECT_EQ(expansions->count(), 1) << after;
    };
    unfold();
    startTap();
    expectFolded("a tap's begin");
    unfold();
    model->setVolume(10, 0.5F);
    update();
    EXPECT_TRUE(item->isEQExpanded()) << "other changes leave it";
    item->toggleTap();
    update();
    expectFolded("a tap's end");
    unfold();
    item->fold();
    expectFolded("the panel's end");
    item->fold();
    EXPECT_EQ(expansions->count(), 1) << "folded already";
}

TEST_F(AppItemTest, AppliesAnEqualizerPresetBandByBand) {
    startTap();
    EXPECT_TRUE(item->isEQFlat());
    EXPECT_EQ(item->equalizerValue(), "Flat");
    EXPECT_EQ(item->equalizerPreset(), -1);
    const auto presets = EQPreset::allNamedPresets();
    for (std::size_t index = 0; index < presets.size(); ++index) {
        item->applyEQPreset(static_cast<int>(index));
        std::vector<std::string> calls;
        for (int band = 0; band < kEQBandCount; ++band)
            calls.push_back(
                fmt::format("setEQ 10 {} {}", band,
                            presets[index].preset.gains.at(static_cast<std::size_t>(band))));
        EXPECT_EQ(tapping->takeCalls(), calls);
        update();
        EXPECT_EQ(item->equalizerPreset(), static_cast<int>(index));
        EXPECT_EQ(model->eqPreset(10), presets[index].preset);
        EXPECT_EQ(item->equalizerValue(), "Active");
    }
    item->applyEQPreset(-1);
    item->applyEQPreset(static_cast<int>(presets.size()));
    EXPECT_THAT(tapping->calls, IsEmpty()) << "there are no such presets";
}

TEST_F(AppItemTest, SetsSingleBandsAndPutsThemBack) {
    startTap();
    EXPECT_EQ(item->equalizerLabel(), "Equalizer for Vinyl");
    item->setGain(3, 4.5);
    item->setGain(9, -12);
    update();
    EXPECT_THAT(item->gains(), ElementsAre(0, 0, 0, 4.5, 0, 0, 0, 0, 0, -12));
    EXPECT_FALSE(item->isEQFlat());
    EXPECT_EQ(item->equalizerPreset(), -1);
    item->resetEQ();
    update();
    EXPECT_TRUE(item->isEQFlat());
    EXPECT_THAT(item->gains(), Each(0.0));
}

TEST_F(AppItemTest, NamesItsTenFaders) {
    EXPECT_EQ(item->bandLabels().size(), 10);
    EXPECT_EQ(item->bandLabels().front(), "31 Hz EQ for Vinyl");
    EXPECT_EQ(item->bandLabels().back(), "16K Hz EQ for Vinyl");
}

TEST_F(AppItemTest, SetsItsBalance) {
    startTap();
    EXPECT_EQ(item->balance(), 0.0);
    EXPECT_EQ(item->balanceLabel(), "Stereo balance for Vinyl");
    item->setBalance(-0.25);
    update();
    EXPECT_EQ(item->balance(), -0.25);
    EXPECT_THAT(tapping->calls, ElementsAre("setBalance 10 -0.25"));
}

TEST_F(AppItemTest, SendsBothValuesOfItsGate) {
    startTap();
    EXPECT_FALSE(item->isGateEnabled());
    EXPECT_EQ(item->gateThreshold(), -60.0);
    EXPECT_EQ(item->gateLabel(), "Noise gate for Vinyl");
    item->setGateEnabled(true);
    update();
    EXPECT_TRUE(item->isGateEnabled());
    item->setGateThreshold(-40);
    update();
    EXPECT_EQ(item->gateThreshold(), -40.0);
    item->setGateEnabled(false);
    EXPECT_THAT(tapping->calls, ElementsAre("setNoiseGate 10 true -60", "setNoiseGate 10 true -40",
                                            "setNoiseGate 10 false -40"));
}

TEST_F(AppItemTest, LooksAtItsGateWhenTheClockBeats) {
    startTap();
    QSignalSpy moves(item.get(), &AppItem::gateMoved);
    item->setGateEnabled(true);
    update();
    tapping->gatesOpen[10] = false;
    EXPECT_TRUE(item->isGateOpen());
    item->tick();
    EXPECT_FALSE(item->isGateOpen());
    EXPECT_EQ(item->gateHelp(), "Gate closed (silencing)");
    item->tick();
    EXPECT_EQ(moves.count(), 1);
    tapping->gatesOpen[10] = true;
    item->tick();
    EXPECT_EQ(item->gateHelp(), "Gate open (audio passing)");
    EXPECT_EQ(moves.count(), 2);
}

TEST_F(AppItemTest, TakesAGateThatIsOffForOpen) {
    startTap();
    tapping->gatesOpen[10] = false;
    item->tick();
    EXPECT_TRUE(item->isGateOpen());
}

TEST_F(AppItemTest, ShowsReductionsOnlyWhileTheyAreUnfolded) {
    startTap();
    QSignalSpy moves(item.get(), &AppItem::reductionsMoved);
    model->compressorGainReduction.set({{10, {6.0F, 24.0F, 48.0F}}});
    item->tick();
    EXPECT_THAT(item->reductions(), Each(0.0));
    item->toggleCompressorAdvanced();
    item->tick();
    EXPECT_THAT(item->reductions(), ElementsAre(0.25, 1.0, 1.0));
    EXPECT_EQ(moves.count(), 1);
    model->compressorGainReduction.set({{10, {6.001F, 24.0F, 48.0F}}});
    item->tick();
    EXPECT_EQ(moves.count(), 1) << "no bar is a pixel longer";
}

TEST_F(AppItemTest, HasACompressorByNameOrByQuantity) {
    startTap();
    EXPECT_TRUE(item->isCompressorOff());
    EXPECT_EQ(item->compressorPreset(), "Off");
    EXPECT_EQ(item->compressorLabel(), "Compressor preset for Vinyl");
    const auto presets = CompressorPreset::allPresets();
    for (std::size_t index = 0; index < presets.size(); ++index) {
        item->applyCompressorPreset(static_cast<int>(index));
        update();
        EXPECT_EQ(item->compressorPreset(), qText(presets[index].name));
    }
    EXPECT_FALSE(item->isCompressorOff());
    tapping->calls.clear();
    item->applyCompressorPreset(-1);
    item->applyCompressorPreset(static_cast<int>(presets.size()));
    EXPECT_THAT(tapping->calls, IsEmpty()) << "there are no such presets";
    item->setCompressorValue(1, 0, -33);
    item->setCompressorValue(2, 1, 4.5);
    item->setCompressorValue(0, 2, 7.5);
    update();
    EXPECT_EQ(item->compressorPreset(), "Custom");
    EXPECT_EQ(item->compressorValues().size(), 9);
    EXPECT_EQ(item->compressorValues().at(3), -33.0);
    EXPECT_EQ(item->compressorValues().at(7), 4.5);
    EXPECT_EQ(item->compressorValues().at(2), 7.5);
}

TEST_F(AppItemTest, LeavesACompressorAloneThatHasNoSuchBandOrQuantity) {
    startTap();
    for (const auto& [band, field] : {std::pair{-1, 0}, {3, 0}, {0, -1}, {0, 3}})
        item->setCompressorValue(band, field, 1.0);
    EXPECT_THAT(tapping->calls, IsEmpty());
}

TEST_F(AppItemTest, CountsTheSecondsOfItsRecording) {
    startTap();
    QSignalSpy elapsed(item.get(), &AppItem::elapsedChanged);
    EXPECT_EQ(item->recordHelp(), "Record audio");
    EXPECT_EQ(item->recordLabel(), "Record Vinyl audio");
    EXPECT_EQ(item->recordValue(), "Not recording");
    item->toggleRecording();
    update();
    EXPECT_TRUE(item->isRecording());
    EXPECT_EQ(item->recordHelp(), "Stop recording");
    EXPECT_EQ(item->recordLabel(), "Stop recording Vinyl");
    EXPECT_EQ(item->recordValue(), "Recording, 0:00");
    EXPECT_EQ(elapsed.count(), 1);
    changes->clear();
    for (const auto& [seconds, text] :
         {std::pair{59.9, "0:59"}, {60.0, "1:00"}, {60.9, "1:00"}, {727.5, "12:07"}}) {
        tapping->recordingDurations[10] = seconds;
        runLoop.advance(Seconds{0.2});
        update();
        EXPECT_EQ(item->elapsedTime(), text);
        EXPECT_EQ(item->recordValue(), "Recording, " + QString(text));
    }
    EXPECT_EQ(elapsed.count(), 4) << "one for each new second";
    EXPECT_EQ(changes->count(), 0);
    item->toggleRecording();
    update();
    EXPECT_EQ(item->recordValue(), "Not recording");
    EXPECT_EQ(item->elapsedTime(), "0:00");
}

TEST_F(AppItemTest, KnowsFromTheFirstHowLongARecordingLasts) {
    startTap();
    model->toggleRecording(10);
    tapping->recordingDurations[10] = 61.0;
    runLoop.advance(Seconds{0.2});
    const AppItem later(model, model->audioApps.get().front(), runLoop.now());
    EXPECT_EQ(later.recordValue(), "Recording, 1:01");
}

TEST_F(AppItemTest, HasEveryPropertyThatTellsOfItsChanges) {
    const QMetaObject& type = AppItem::staticMetaObject;
    for (int index = type.propertyOffset(); index < type.propertyCount(); ++index) {
        const QMetaProperty property = type.property(index);
        EXPECT_TRUE(property.read(item.get()).isValid()) << property.name();
        EXPECT_TRUE(property.hasNotifySignal()) << property.name();
    }
}

} // namespace
} // namespace orvanta::test
