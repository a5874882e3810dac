// How the mixer model starts, what it has at first, and how it ends.

#include "core/platform/AudioProperties.h"
#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr AudioObjectPropertyAddress kMainVolume{kAudioDevicePropertyVolumeScalar,
                                                 kAudioObjectPropertyScopeOutput};

class AMixerModel : public testing::Test, public ModelRig {
protected:
    void press(std::uint32_t hotKey) {
        ASSERT_EQ(hotKeyCenter.press(hotKey), noErr);
        runLoop.runUntilIdle();
    }

    [[nodiscard]] float deviceVolume(AudioObjectID device) {
        return readFloat32(server, device, kMainVolume).value_or(-1.0F);
    }

    [[nodiscard]] AudioObjectID speakers() { return findDeviceID(server, "speakers"); }
};

constexpr std::uint32_t kVolumeUp = 1;
constexpr std::uint32_t kVolumeDown = 2;
constexpr std::uint32_t kMuteAll = 3;
constexpr std::uint32_t kConsole = 4;

TEST_F(AMixerModel, HasItsDefaults) {
    startPassive();
    EXPECT_THAT(model->audioApps.get(), IsEmpty());
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
    EXPECT_FLOAT_EQ(model->masterVolume.get(), 1.0F);
    EXPECT_FALSE(model->autoTapEnabled.get());
    EXPECT_FALSE(model->isMasterMuted.get());
    EXPECT_FALSE(model->launchAtLogin.get());
    EXPECT_FALSE(model->selectedConsolePID.get());
    EXPECT_EQ(model->recordingFormat.get(), RecordingFormat::wav);
    EXPECT_EQ(model->recordingMode.get(), RecordingMode::processed);
    EXPECT_FALSE(model->activeProfileID.get());
    EXPECT_FALSE(model->lastRecordingURL.get());
    EXPECT_FALSE(model->lastRecordingAppName.get());
    EXPECT_FALSE(model->showRecordingComplete.get());
    EXPECT_EQ(model->maxRecordingDuration.get(), 7200.0);
    EXPECT_EQ(model->preMuteVolume(), 1.0F);
    EXPECT_FALSE(model->popoverVisible());
    EXPECT_FALSE(model->consoleVisible());
    EXPECT_EQ(MixerViewModel::recentActivityWindow, Seconds(60.0));
}

TEST_F(AMixerModel, AnswersForAProcessThatItDoesNotKnow) {
    startPassive();
    EXPECT_FALSE(model->isTapped(7));
    EXPECT_FALSE(model->isMuted(7));
    EXPECT_FALSE(model->isRecording(7));
    EXPECT_EQ(model->volume(7), 1.0F);
    EXPECT_EQ(model->balance(7), 0.0F);
    EXPECT_EQ(model->audioLevel(7), 0.0F);
    EXPECT_EQ(model->outputDeviceUID(7), std::nullopt);
    EXPECT_TRUE(model->eqPreset(7).isFlat());
    EXPECT_EQ(model->getCompressor(7), CompressorPreset::off);
    EXPECT_THAT(model->getCompressorGainReduction(7), ElementsAre(0.0F, 0.0F, 0.0F));
    EXPECT_TRUE(model->isNoiseGateOpen(7));
}

TEST_F(AMixerModel, AsksTheTapForItsGateAndItsGainReduction) {
    startPassive();
    tap(7, "Music");
    tapping->gatesOpen[7] = false;
    tapping->gainReductions[7] = {1.0F, 2.0F, 3.0F};
    EXPECT_FALSE(model->isNoiseGateOpen(7));
    EXPECT_THAT(model->getCompressorGainReduction(7), ElementsAre(1.0F, 2.0F, 3.0F));
}

TEST_F(AMixerModel, LoadsTheAutoTapFlagAndWritesItBackEvenWhenPassive) {
    settings->autoTap = true;
    startPassive();
    EXPECT_TRUE(model->autoTapEnabled.get());
    EXPECT_THAT(settings->calls, ElementsAre("saveAutoTapEnabled true"));
}

TEST_F(AMixerModel, LeavesTheStoreWithoutAFlagThatItDoesNotHave) {
    startPassive();
    EXPECT_FALSE(model->autoTapEnabled.get());
    EXPECT_THAT(settings->calls, IsEmpty());
}

TEST_F(AMixerModel, SavesTheAutoTapFlagAtEachAssignmentAndOnlyThen) {
    startPassive();
    model->autoTapEnabled.set(true);
    model->autoTapEnabled.set(true);
    EXPECT_THAT(settings->takeCalls(),
                ElementsAre("saveAutoTapEnabled true", "saveAutoTapEnabled true"));
    model->launchAtLogin.set(true);
    model->masterVolume.set(0.3F);
    model->recordingFormat.set(RecordingFormat::m4a);
    model->recordingMode.set(RecordingMode::both);
    model->maxRecordingDuration.set(1.0);
    model->recordingSaveDirectory.set("/elsewhere");
    EXPECT_THAT(settings->calls, IsEmpty());
    EXPECT_THAT(tapping->calls, IsEmpty());
}

TEST_F(AMixerModel, LoadsTheProfilesEvenWhenPassive) {
    ProfileStore store(userDefaults);
    const AudioProfile profile{
        .id = UUID::random(),
        .name = "Evening",
        .icon = "moon",
        .createdAt = Date(1.0),
        .appSettings = {},
        .globalSettings = {0.5F, false, RecordingFormat::wav, RecordingMode::processed}};
    store.save(profile);
    startPassive();
    EXPECT_THAT(model->audioProfiles.get(), ElementsAre(profile));
}

TEST_F(AMixerModel, TouchesNoAudioSystemWhenItIsPassive) {
    server.journal().clear();
    startPassive();
    runLoop.advance(Seconds(60));
    EXPECT_THAT(server.journal().lines(), IsEmpty());
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_EQ(discovery->passes, 0);
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
    EXPECT_THAT(hotKeyCenter.calls, IsEmpty());
    EXPECT_EQ(runLoop.timeToNextTask(), std::nullopt) << "no timer";
}

TEST_F(AMixerModel, TakesTheVolumeOfTheDefaultOutputForItsOwn) {
    const float quiet = 0.4F;
    ASSERT_EQ(server.setPropertyData(speakers(), kMainVolume, sizeof quiet, &quiet), noErr);
    startRunning();
    EXPECT_EQ(model->masterVolume.get(), 0.4F);
}

TEST_F(AMixerModel, TakesTheLeftChannelOfADeviceWithoutAMainVolume) {
    const auto stereo = server.addDevice(
        {.uid = "stereo",
         .volumes = {{.element = 1, .scalar = 0.3F}, {.element = 2, .scalar = 0.9F}}});
    server.setDefaultOutput(stereo);
    startRunning();
    EXPECT_EQ(model->masterVolume.get(), 0.3F);
}

TEST_F(AMixerModel, TakesFullVolumeWhereADeviceHasNoControl) {
    server.setDefaultOutput(server.addDevice({.uid = "plain", .volumes = {}}));
    startRunning();
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
}

TEST_F(AMixerModel, TakesFullVolumeWhereThereIsNoDeviceOrItsVolumeCannotBeRead) {
    server.failNext(embedded::Operation::getPropertyData);
    startRunning();
    EXPECT_EQ(model->masterVolume.get(), 1.0F) << "no default output";

    const float quiet = 0.4F;
    ASSERT_EQ(server.setPropertyData(speakers(), kMainVolume, sizeof quiet, &quiet), noErr);
    server.failNext(embedded::Operation::getPropertyData, kAudioHardwareUnspecifiedError, 1);
    startRunning();
    EXPECT_EQ(model->masterVolume.get(), 1.0F) << "the read fails";
}

TEST_F(AMixerModel, RefreshesAtOnceAndThenByItsTimer) {
    startRunning();
    EXPECT_EQ(discovery->passes, 0) << "on its queue";
    runLoop.runUntilIdle();
    EXPECT_EQ(discovery->passes, 1);
    runLoop.advance(Seconds(2.0));
    EXPECT_EQ(discovery->passes, 2);
}

TEST_F(AMixerModel, BindsItsFourHotKeysInOrder) {
    startRunning();
    EXPECT_THAT(hotKeyCenter.calls,
                ElementsAre("install handler", "register 126 with 768 as 1",
                            "register 125 with 768 as 2", "register 46 with 768 as 3",
                            "register 8 with 768 as 4"));
}

TEST_F(AMixerModel, IgnoresAHotKeyThatCannotBeHad) {
    hotKeyCenter.statusOfNextRegistration = eventHotKeyExistsErr;
    startRunning();
    model->setMasterVolume(0.5F);
    press(kVolumeDown);
    EXPECT_FLOAT_EQ(model->masterVolume.get(), 0.45F);
}

TEST_F(AMixerModel, StepsTheMasterVolumeByHotKeyUpToFullAndDownToNothing) {
    startRunning();
    model->setMasterVolume(0.98F);
    press(kVolumeUp);
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
    EXPECT_EQ(deviceVolume(speakers()), 1.0F);
    model->setMasterVolume(0.02F);
    press(kVolumeDown);
    EXPECT_EQ(model->masterVolume.get(), 0.0F);
    EXPECT_EQ(deviceVolume(speakers()), 0.0F);
    press(kVolumeUp);
    EXPECT_EQ(model->masterVolume.get(), 0.05F);
}

TEST_F(AMixerModel, MutesAllByHotKey) {
    startRunning();
    tap(7, "Music");
    press(kMuteAll);
    EXPECT_TRUE(model->isMasterMuted.get());
    EXPECT_TRUE(model->isMuted(7));
}

TEST_F(AMixerModel, AnnouncesTheConsoleByHotKey) {
    startRunning();
    int announced = 0;
    const auto observation = notificationCenter.observe("com.meridane.orvanta.toggleCommandCenter",
                                                        [&] { ++announced; });
    press(kConsole);
    EXPECT_EQ(announced, 1);
}

TEST_F(AMixerModel, KeepsRecordingsInTheMusicFolder) {
    userFolders = {.music = "/home/ada/Musik", .documents = "/home/ada/Texte", .temporary = "/tmp"};
    startPassive();
    EXPECT_EQ(model->recordingSaveDirectory.get(), "/home/ada/Musik/Orvanta Recordings");
    userFolders.music.reset();
    startPassive();
    EXPECT_EQ(model->recordingSaveDirectory.get(), "/home/ada/Texte/Orvanta Recordings");
    userFolders.documents.reset();
    startPassive();
    EXPECT_EQ(model->recordingSaveDirectory.get(), "/tmp/Orvanta Recordings");
}

TEST_F(AMixerModel, FindsADeviceByItsUID) {
    startPassive();
    EXPECT_EQ(model->getDeviceIDByUID("speakers"), speakers());
    EXPECT_EQ(model->getDeviceIDByUID("nowhere"), std::nullopt);
    server.failNext(embedded::Operation::getPropertyDataSize);
    EXPECT_EQ(model->getDeviceIDByUID("speakers"), std::nullopt);
}

TEST_F(AMixerModel, AnnouncesEveryChangeBeforeItIsVisible) {
    startPassive();
    tap(7, "Music");
    std::vector<float> seen;
    const auto observation =
        model->objectWillChange.observe([&] { seen.push_back(model->volume(7)); });
    model->setVolume(7, 0.5F);
    model->setVolume(7, 0.5F);
    EXPECT_THAT(seen, ElementsAre(1.0F, 0.5F)) << "also when nothing changes";
}

TEST_F(AMixerModel, MakesWhatItIsNotGiven) {
    server.addProgram({.pid = 100, .name = "Player", .source = embedded::constant(0.5F)});
    processTable.names[100] = "player";
    workspace.applications[100] = {.processIdentifier = 100, .localizedName = "Player"};
    model = MixerViewModel::create(platformWith(server));
    runLoop.runUntilIdle();
    ASSERT_THAT(model->audioApps.get(), testing::SizeIs(1));
    EXPECT_THAT(model->outputDeviceManager().availableDevices(), testing::SizeIs(1));
    model->toggleTap(model->audioApps.get().front());
    EXPECT_TRUE(model->isTapped(100));
    EXPECT_TRUE(model->tapManager().hasTap(100));
    EXPECT_TRUE(userDefaults.has("com.meridane.orvanta.appSettings"));
    model.reset();
    EXPECT_TRUE(server.holdings().taps.empty()) << "its own tap manager goes with it";
}

TEST_F(AMixerModel, StopsItsTimersWhenItEnds) {
    startRunning();
    list(7, "Music");
    runLoop.runUntilIdle();
    model->toggleTap(discovery->apps.back());
    const std::weak_ptr<MixerViewModel> watched = model;
    const int passes = discovery->passes;
    model.reset();
    EXPECT_TRUE(watched.expired());
    runLoop.advance(Seconds(60.0));
    EXPECT_EQ(discovery->passes, passes);
    EXPECT_EQ(runLoop.timeToNextTask(), std::nullopt);
    EXPECT_TRUE(tapping->hasTap(7)) << "taps are the tap manager's to end";
    EXPECT_THAT(settings->calls, Contains("save Music")) << "nothing more is saved at the end";
}

/// A main queue whose timers' tasks can be run late, when the timers are invalid already.
class LateRunLoop final : public RunLoop {
public:
    explicit LateRunLoop(RunLoop& loop) : loop_(loop) {}

    void post(Task task) override { loop_.post(std::move(task)); }

    void postAfter(Seconds delay, Task task) override { loop_.postAfter(delay, std::move(task)); }

    [[nodiscard]] std::unique_ptr<RepeatingTimer> repeat(Seconds interval, Task task) override {
        ticks.push_back(task);
        return loop_.repeat(interval, std::move(task));
    }

    [[nodiscard]] Seconds now() const override { return loop_.now(); }

    std::vector<Task> ticks;

private:
    RunLoop& loop_;
};

TEST_F(AMixerModel, IsNotFoundByATimerThatComesTooLate) {
    LateRunLoop late(runLoop);
    model = MixerViewModel::create({.audioHardware = server,
                                    .processTable = processTable,
                                    .workspace = workspace,
                                    .systemLog = log,
                                    .mainRunLoop = late,
                                    .serialQueues = serialQueues,
                                    .wallClock = wallClock,
                                    .audioFileWriter = audioFiles,
                                    .userDefaults = userDefaults,
                                    .hotKeyCenter = hotKeyCenter,
                                    .notificationCenter = notificationCenter,
                                    .fileViewer = fileViewer,
                                    .userFolders = userFolders},
                                   {tapping, discovery, devices, settings});
    model->toggleTap(app(7, "Music"));
    ASSERT_THAT(late.ticks, testing::SizeIs(2)) << "refresh and levels";
    model.reset();
    runLoop.runUntilIdle();
    const int passes = discovery->passes;
    for (const Task& tick : late.ticks)
        tick();
    runLoop.runUntilIdle();
    EXPECT_EQ(discovery->passes, passes);
}

TEST_F(AMixerModel, MayEndWhileADiscoveryIsUnderWay) {
    startRunning();
    std::size_t waiting = 0;
    discovery->meanwhile = [&] {
        model.reset();
        ++waiting;
    };
    list(7, "Music");
    settings->autoTap = true;
    runLoop.runUntilIdle();
    EXPECT_EQ(waiting, 1U);
    EXPECT_THAT(tapping->calls, IsEmpty()) << "its result finds no model";
}

TEST_F(AMixerModel, MayEndBeforeItsDiscoveryBegins) {
    startRunning();
    model.reset();
    runLoop.runUntilIdle();
    EXPECT_EQ(discovery->passes, 0);
}

TEST_F(AMixerModel, MayBeLetGoByAnObserverInTheMiddleOfItsOwnWork) {
    startRunning();
    model->autoTapEnabled.set(true);
    list(7, "Music");
    list(8, "Video");
    const auto observation = model->tappedPIDs.observe([&](const PIDSet&) { model.reset(); });
    const std::weak_ptr<MixerViewModel> watched = model;
    runLoop.runUntilIdle();
    EXPECT_TRUE(watched.expired());
    EXPECT_THAT(tapping->calls, Contains("createTap 8 1008")) << "it ends what it has begun";
}

TEST_F(AMixerModel, LeavesHotKeysThatDoNothingWhenItEnds) {
    startRunning();
    const auto volume = deviceVolume(speakers());
    model.reset();
    press(kVolumeDown);
    press(kMuteAll);
    EXPECT_EQ(deviceVolume(speakers()), volume);
}

} // namespace
} // namespace orvanta::test
