#include "app/bridge/MixerBridge.h"

#include "core/platform/AudioProperties.h"
#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMetaProperty>
#include <QSignalSpy>
#include <utility>

namespace orvanta::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class MixerBridgeTest : public testing::Test, public ModelRig {
protected:
    MixerBridgeTest() {
        startRunning();
        // The first pass is over, and a slider may write at once.
        runLoop.advance(Seconds{1.0});
        mixer = std::make_unique<MixerBridge>(model, platformWith(server));
        changes = std::make_unique<QSignalSpy>(mixer.get(), &MixerBridge::changed);
        masterChanges = std::make_unique<QSignalSpy>(mixer.get(), &MixerBridge::masterChanged);
    }

    void settle() { runLoop.runUntilIdle(); }

    /// Those of the applications' rows, from top to bottom.
    [[nodiscard]] std::vector<std::string> sections() const {
        std::vector<std::string> all;
        const AppListModel& rows = *mixer->apps();
        for (int row = 0; row < rows.rowCount(); ++row)
            all.push_back(
                rows.data(rows.index(row), AppListModel::sectionRole).toString().toStdString());
        return all;
    }

    [[nodiscard]] AppItem& itemAt(int row) {
        AppListModel& rows = *mixer->apps();
        return *rows.data(rows.index(row), AppListModel::itemRole).value<AppItem*>();
    }

    [[nodiscard]] float deviceVolume() {
        return readFloat32(server, findDeviceID(server, "speakers"),
                           {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, 0})
            .value_or(-1.0F);
    }

    [[nodiscard]] std::size_t deviceWrites() {
        return server.journal().count(embedded::Operation::setPropertyData);
    }

    std::unique_ptr<MixerBridge> mixer;
    std::unique_ptr<QSignalSpy> changes;
    std::unique_ptr<QSignalSpy> masterChanges;
};

TEST_F(MixerBridgeTest, CountsWhatIsThereIsTappedAndPlays) {
    EXPECT_TRUE(mixer->isEmpty());
    EXPECT_FALSE(mixer->hasTaps());
    EXPECT_EQ(mixer->appCount(), "0 apps");
    EXPECT_EQ(mixer->tappedCount(), "");
    EXPECT_EQ(mixer->playingCount(), "");
    list(10, "Vinyl", std::nullopt, false);
    refresh();
    settle();
    EXPECT_FALSE(mixer->isEmpty());
    EXPECT_EQ(mixer->appCount(), "1 app");
    EXPECT_EQ(mixer->playingCount(), "");
    list(11, "Telly");
    list(12, "Podium");
    refresh();
    model->toggleTap(discovery->apps[1]);
    settle();
    EXPECT_TRUE(mixer->hasTaps());
    EXPECT_EQ(mixer->appCount(), "3 apps");
    EXPECT_EQ(mixer->tappedCount(), "1 tapped");
    EXPECT_EQ(mixer->playingCount(), "2 playing");
}

TEST_F(MixerBridgeTest, UpdatesOnceForAllChangesOfATurn) {
    for (std::int32_t pid = 10; pid < 20; ++pid) {
        list(pid, "Program " + std::to_string(pid));
        refresh();
        model->toggleTap(discovery->apps.back());
        model->setVolume(pid, 0.5F);
    }
    model->autoTapEnabled.set(true);
    model->launchAtLogin.set(true);
    EXPECT_EQ(changes->count(), 0);
    EXPECT_EQ(mixer->apps()->rowCount(), 0);
    settle();
    EXPECT_EQ(changes->count(), 1);
    EXPECT_EQ(mixer->apps()->rowCount(), 10);
    EXPECT_TRUE(mixer->isAutoTapOn());
    EXPECT_TRUE(mixer->launchesAtLogin());
}

TEST_F(MixerBridgeTest, TellsNothingWhenNothingOfItLooksDifferent) {
    tap(10, "Vinyl");
    settle();
    changes->clear();
    QSignalSpy itemChanges(&itemAt(0), &AppItem::changed);
    QSignalSpy volumeChanges(&itemAt(0), &AppItem::volumeChanged);
    model->setVolume(10, 1.0F);
    model->autoTapEnabled.set(false);
    settle();
    EXPECT_EQ(changes->count(), 0);
    EXPECT_EQ(itemChanges.count(), 0);
    EXPECT_EQ(volumeChanges.count(), 0);
    model->setVolume(10, 0.5F);
    settle();
    EXPECT_EQ(changes->count(), 0) << "only the row does";
    EXPECT_EQ(itemChanges.count(), 0) << "and of that only its volume";
    EXPECT_EQ(volumeChanges.count(), 1);
}

TEST_F(MixerBridgeTest, TellsOfAVolumeThatChangesWithSomethingElse) {
    tap(10, "Vinyl");
    settle();
    QSignalSpy itemChanges(&itemAt(0), &AppItem::changed);
    QSignalSpy volumeChanges(&itemAt(0), &AppItem::volumeChanged);
    model->setBalance(10, 0.5F);
    model->setVolume(10, 0.5F);
    settle();
    EXPECT_EQ(itemChanges.count(), 1);
    EXPECT_EQ(volumeChanges.count(), 1);
    EXPECT_EQ(itemAt(0).volume(), 0.5);
}

TEST_F(MixerBridgeTest, BringsTheTimeOfARecordingToItsRowAlone) {
    tap(10, "Vinyl");
    model->toggleRecording(10);
    settle();
    QSignalSpy itemChanges(&itemAt(0), &AppItem::changed);
    model->recordingDurations.set({{10, 65.5}});
    EXPECT_EQ(itemAt(0).elapsedTime(), "0:00") << "in its own turn";
    settle();
    EXPECT_EQ(itemAt(0).elapsedTime(), "1:05");
    EXPECT_EQ(itemChanges.count(), 0);
}

TEST_F(MixerBridgeTest, BringsEveryKindOfChangeToTheRow) {
    tap(10, "Vinyl");
    settle();
    QSignalSpy itemChanges(&itemAt(0), &AppItem::changed);
    int told = 0;
    const auto expectTold = [&](const char* what) {
        settle();
        EXPECT_EQ(itemChanges.count(), ++told) << what;
    };
    model->toggleMute(10);
    expectTold("mute");
    model->routeApp(10, "speakers");
    expectTold("output");
    model->setEQ(10, 0, 1.0F);
    expectTold("equalizer");
    model->setBalance(10, 0.5F);
    expectTold("balance");
    model->setCompressor(10, CompressorPreset::music);
    expectTold("compressor");
    model->setNoiseGate(10, true, -60.0F);
    expectTold("gate");
    model->setNoiseGate(10, true, -50.0F);
    expectTold("threshold");
    model->toggleRecording(10);
    expectTold("recording");
    model->toggleTap(discovery->apps[0]);
    expectTold("tap");
}

TEST_F(MixerBridgeTest, SaysWhetherAllThatPlaysIsTapped) {
    EXPECT_FALSE(mixer->isAutoTapOn());
    EXPECT_EQ(mixer->autoTapSymbol(), "bolt.circle");
    EXPECT_EQ(mixer->autoTapHelp(), "Automatically tap all playing apps");
    EXPECT_EQ(mixer->autoTapHint(), "Double tap to enable automatic audio tapping");
    mixer->toggleAutoTap();
    settle();
    EXPECT_TRUE(mixer->isAutoTapOn());
    EXPECT_EQ(mixer->autoTapSymbol(), "bolt.circle.fill");
    EXPECT_EQ(mixer->autoTapHint(), "Double tap to disable automatic audio tapping");
}

TEST_F(MixerBridgeTest, LooksForApplicationsAtOnceWhenAllAreToBeTapped) {
    list(10, "Vinyl");
    const int passes = discovery->passes;
    mixer->toggleAutoTap();
    settle();
    EXPECT_EQ(discovery->passes, passes + 1);
    EXPECT_TRUE(model->isTapped(10));
    mixer->toggleAutoTap();
    settle();
    EXPECT_EQ(discovery->passes, passes + 1) << "not when it is switched off";
    EXPECT_FALSE(mixer->isAutoTapOn());
    EXPECT_TRUE(model->isTapped(10));
}

TEST_F(MixerBridgeTest, ShowsTheMasterVolume) {
    struct Case {
        float volume;
        QString symbol;
        QString readOut;
        QString value;
    };

    for (const auto& [volume, symbol, readOut, value] :
         {Case{0.0F, "speaker.slash.fill", "0%", "0 percent"},
          Case{0.01F, "speaker.wave.1.fill", "1%", "1 percent"},
          Case{0.32F, "speaker.wave.1.fill", "32%", "32 percent"},
          Case{0.33F, "speaker.wave.2.fill", "33%", "33 percent"},
          Case{0.66F, "speaker.wave.3.fill", "66%", "66 percent"},
          Case{1.0F, "speaker.wave.3.fill", "100%", "100 percent"}}) {
        model->setMasterVolume(volume);
        settle();
        EXPECT_EQ(mixer->masterVolume(), static_cast<double>(volume));
        EXPECT_EQ(mixer->masterSymbol(), symbol);
        EXPECT_EQ(mixer->masterReadOut(), readOut);
        EXPECT_EQ(mixer->masterValue(), value);
    }
}

TEST_F(MixerBridgeTest, LeavesThePublishedVolumeUntilTheHandLetsGo) {
    mixer->beginMasterDrag();
    mixer->moveMaster(0.5);
    mixer->moveMaster(0.25);
    settle();
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
    EXPECT_EQ(mixer->masterReadOut(), "25%");
    EXPECT_EQ(mixer->masterSymbol(), "speaker.wave.3.fill");
    mixer->endMasterDrag();
    EXPECT_EQ(model->masterVolume.get(), 0.25F);
    EXPECT_EQ(deviceVolume(), 0.25F);
    settle();
    EXPECT_EQ(mixer->masterSymbol(), "speaker.wave.1.fill");
}

TEST_F(MixerBridgeTest, ShowsTheHandsMasterVolumeWhateverTheModelSaysMeanwhile) {
    mixer->beginMasterDrag();
    mixer->moveMaster(0.5);
    model->setMasterVolume(0.9F);
    settle();
    EXPECT_EQ(mixer->masterVolume(), 0.5);
    mixer->endMasterDrag();
    settle();
    EXPECT_EQ(model->masterVolume.get(), 0.5F);
}

TEST_F(MixerBridgeTest, WritesToTheDevicesOnItsOwnQueue) {
    server.journal().clear();
    mixer->beginMasterDrag();
    mixer->moveMaster(0.5);
    EXPECT_EQ(deviceWrites(), 0U) << "a device may take its time";
    settle();
    EXPECT_EQ(deviceWrites(), 1U);
    EXPECT_EQ(deviceVolume(), 0.5F);
}

TEST_F(MixerBridgeTest, WritesToTheDevicesAtMostOnceInThirtyThreeMilliseconds) {
    server.journal().clear();
    mixer->beginMasterDrag();
    // A second of moves, one in each of its milliseconds.
    for (int move = 0; move < 1000; ++move) {
        runLoop.advance(Seconds{0.001});
        mixer->moveMaster(0.5 + 0.0005 * (move % 2));
    }
    runLoop.advance(Seconds{0.001});
    EXPECT_LE(deviceWrites(), 31U);
    EXPECT_GE(deviceWrites(), 29U);
    mixer->moveMaster(0.75);
    mixer->endMasterDrag();
    settle();
    EXPECT_EQ(deviceVolume(), 0.75F) << "the last one arrives";
}

TEST_F(MixerBridgeTest, SendsAMasterDragToTheDevicesThatAreRoutedTo) {
    server.addDevice({.uid = "headphones"});
    tap(10, "Vinyl");
    model->routeApp(10, "headphones");
    mixer->beginMasterDrag();
    mixer->moveMaster(0.25);
    settle();
    EXPECT_EQ(readFloat32(server, findDeviceID(server, "headphones"),
                          {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, 0}),
              0.25F);
}

TEST_F(MixerBridgeTest, EndsWhileAWriteToTheDevicesWaits) {
    mixer->beginMasterDrag();
    mixer->moveMaster(0.5);
    changes.reset();
    masterChanges.reset();
    mixer.reset();
    settle();
    EXPECT_EQ(deviceVolume(), 1.0F);
}

TEST_F(MixerBridgeTest, MutesAndUnmutesAll) {
    tap(10, "Vinyl");
    settle();
    EXPECT_EQ(mixer->muteAllSymbol(), "speaker.wave.2.fill");
    EXPECT_EQ(mixer->muteAllText(), "Mute All");
    EXPECT_EQ(mixer->muteAllLabel(), "Mute all");
    mixer->toggleMuteAll();
    settle();
    EXPECT_TRUE(mixer->isMasterMuted());
    EXPECT_TRUE(itemAt(0).isMuted());
    EXPECT_EQ(mixer->muteAllSymbol(), "speaker.slash.fill");
    EXPECT_EQ(mixer->muteAllText(), "Unmute All");
    EXPECT_EQ(mixer->muteAllLabel(), "Unmute all");
    mixer->toggleMuteAll();
    settle();
    EXPECT_FALSE(mixer->isMasterMuted());
    EXPECT_FALSE(itemAt(0).isMuted());
}

TEST_F(MixerBridgeTest, FlipsLaunchAtLoginAndTellsWhoActsOnIt) {
    QSignalSpy asked(mixer.get(), &MixerBridge::launchAtLoginAsked);
    EXPECT_EQ(mixer->launchAtLoginSymbol(), "circle");
    mixer->toggleLaunchAtLogin();
    settle();
    EXPECT_TRUE(model->launchAtLogin.get());
    EXPECT_TRUE(mixer->launchesAtLogin());
    EXPECT_EQ(mixer->launchAtLoginSymbol(), "checkmark.circle.fill");
    mixer->toggleLaunchAtLogin();
    settle();
    EXPECT_FALSE(mixer->launchesAtLogin());
    ASSERT_EQ(asked.count(), 2);
    EXPECT_EQ(asked.at(0), QVariantList{true});
    EXPECT_EQ(asked.at(1), QVariantList{false});
}

TEST_F(MixerBridgeTest, FollowsTheOutputDevices) {
    QSignalSpy told(mixer.get(), &MixerBridge::outputsChanged);
    const QVariantMap speakers{{"uid", "speakers"}, {"name", "Speakers"}};
    EXPECT_EQ(mixer->outputs(), QVariantList{speakers});
    devices->announce();
    settle();
    EXPECT_EQ(told.count(), 0) << "nothing is different";
    devices->devices.push_back({.id = 2, .uid = "monitors", .name = "Monitors"});
    devices->announce();
    devices->announce();
    EXPECT_EQ(told.count(), 0);
    settle();
    EXPECT_EQ(told.count(), 1);
    EXPECT_EQ(mixer->outputs(),
              (QVariantList{speakers, QVariantMap{{"uid", "monitors"}, {"name", "Monitors"}}}));
    devices->devices.back().name = "Studio Monitors";
    devices->announce();
    settle();
    EXPECT_EQ(told.count(), 2);
    EXPECT_EQ(mixer->outputs().last().toMap().value("name"), "Studio Monitors");
    devices->devices.pop_back();
    devices->announce();
    settle();
    EXPECT_EQ(mixer->outputs(), QVariantList{speakers});
}

TEST_F(MixerBridgeTest, BeatsOnlyWhileThePanelIsOpenAndSomethingIsTapped) {
    tap(10, "Vinyl");
    settle();
    QSignalSpy beats(mixer->clock(), &LevelClock::ticked);
    runLoop.advance(Seconds{1.0});
    EXPECT_EQ(beats.count(), 0);
    mixer->setPanelVisible(true);
    EXPECT_TRUE(model->popoverVisible());
    runLoop.advance(Seconds{1.001});
    EXPECT_EQ(beats.count(), 60);
    mixer->setPanelVisible(true);
    runLoop.advance(Seconds{1.0});
    EXPECT_EQ(beats.count(), 120) << "once is enough";
    mixer->setPanelVisible(false);
    EXPECT_FALSE(model->popoverVisible());
    runLoop.advance(Seconds{1.0});
    EXPECT_EQ(beats.count(), 120);
    mixer->setPanelVisible(true);
    model->toggleTap(model->audioApps.get().front());
    settle();
    runLoop.advance(Seconds{1.0});
    EXPECT_EQ(beats.count(), 120) << "there is no meter";
}

TEST_F(MixerBridgeTest, FoldsItsRowsWhenThePanelCloses) {
    tap(10, "Vinyl");
    settle();
    mixer->setPanelVisible(true);
    itemAt(0).toggleEQ();
    itemAt(0).toggleCompressorAdvanced();
    runLoop.advance(Seconds{10.0});
    EXPECT_TRUE(itemAt(0).isEQExpanded());
    mixer->setPanelVisible(false);
    EXPECT_TRUE(itemAt(0).isEQExpanded()) << "it is only covered";
    mixer->panelClosed();
    EXPECT_FALSE(itemAt(0).isEQExpanded());
    EXPECT_FALSE(itemAt(0).isCompressorAdvanced());
}

TEST_F(MixerBridgeTest, MovesGatesByTheClock) {
    tap(10, "Vinyl");
    model->setNoiseGate(10, true, -60.0F);
    mixer->setPanelVisible(true);
    settle();
    tapping->gatesOpen[10] = false;
    runLoop.advance(Seconds{0.02});
    EXPECT_FALSE(itemAt(0).isGateOpen());
}

class MixerBridgeOverTime : public MixerBridgeTest {
protected:
    /// One that has just been heard, and then nothing more happens.
    void hearOnceAndBeSilent() {
        tap(10, "Vinyl");
        tapping->levels[10] = {.rms = 0.2F, .peak = 0.4F};
        runLoop.advance(Seconds{0.13});
        model->toggleTap(discovery->apps[0]);
        discovery->apps[0].isPlaying = false;
        refresh();
        settle();
        heard_ = model->lastActiveTime().at(10);
        changesOfTheList_ = model->audioApps.observe([this](const auto&) { ++modelChanges_; });
    }

    void advanceTo(double secondsAfterSound) {
        runLoop.advance(heard_ + Seconds{secondsAfterSound} - runLoop.now());
    }

    Seconds heard_{0.0};
    int modelChanges_ = 0;
    Observation changesOfTheList_;
};

TEST_F(MixerBridgeOverTime, CallsAnApplicationIdleAMinuteAfterItsLastSound) {
    mixer->setPanelVisible(true);
    hearOnceAndBeSilent();
    EXPECT_THAT(sections(), ElementsAre("Recently Active"));
    advanceTo(59.0);
    EXPECT_THAT(sections(), ElementsAre("Recently Active"));
    advanceTo(59.99);
    EXPECT_THAT(sections(), ElementsAre("Recently Active"));
    advanceTo(60.002);
    EXPECT_THAT(sections(), ElementsAre("Idle"));
    EXPECT_EQ(modelChanges_, 0);
}

TEST_F(MixerBridgeOverTime, LooksAtTheSectionsAnewWhenThePanelOpens) {
    hearOnceAndBeSilent();
    advanceTo(100.0);
    mixer->setPanelVisible(true);
    settle();
    EXPECT_THAT(sections(), ElementsAre("Idle"));
}

TEST_F(MixerBridgeOverTime, DoesNotWakeForTheSectionsOfAClosedPanel) {
    mixer->setPanelVisible(true);
    hearOnceAndBeSilent();
    mixer->setPanelVisible(false);
    settle();
    QSignalSpy counts(mixer->apps(), &AppListModel::sectionCountsChanged);
    advanceTo(70.0);
    EXPECT_EQ(counts.count(), 0);
}

TEST_F(MixerBridgeTest, HasEveryPropertyThatTellsOfItsChanges) {
    const QMetaObject& type = MixerBridge::staticMetaObject;
    for (int index = type.propertyOffset(); index < type.propertyCount(); ++index) {
        const QMetaProperty property = type.property(index);
        EXPECT_TRUE(property.read(mixer.get()).isValid()) << property.name();
        EXPECT_TRUE(property.hasNotifySignal() || property.isConstant()) << property.name();
    }
}

} // namespace
} // namespace orvanta::test
