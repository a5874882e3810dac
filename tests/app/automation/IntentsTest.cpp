#include "app/automation/ListAudioAppsIntent.h"
#include "app/automation/OrvantaIntentBridge.h"
#include "app/automation/SetVolumeIntent.h"
#include "app/automation/ToggleMuteIntent.h"
#include "core/model/DeviceVolume.h"
#include "core/platform/AudioProperties.h"
#include "tests/support/model/ModelRig.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvanta::test {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

/// A program that has just started: its panel has not appeared.
class Intents : public testing::Test {
protected:
    Intents() {
        OrvantaIntentBridge::shared.reset();
        rig_.startPassive();
    }

    ~Intents() override { OrvantaIntentBridge::shared.reset(); }

    void showPanel() const { OrvantaIntentBridge::panelAppeared(rig_.model); }

    [[nodiscard]] float masterVolume() const { return rig_.model->masterVolume.get(); }

    /// What the device itself is set to.
    [[nodiscard]] float deviceVolume() {
        return readDeviceVolume(rig_.server, findDeviceID(rig_.server, "speakers"));
    }

    ModelRig rig_;
};

std::string setVolume(std::int64_t percent) {
    return SetVolumeIntent{.volume = percent}.perform();
}

TEST_F(Intents, SetTheVolumeThatIsAskedFor) {
    showPanel();
    EXPECT_EQ(setVolume(50), "Volume set to 50%");
    EXPECT_EQ(masterVolume(), 0.5F);
    EXPECT_EQ(setVolume(0), "Volume set to 0%");
    EXPECT_EQ(masterVolume(), 0.0F);
    EXPECT_EQ(setVolume(33), "Volume set to 33%");
    EXPECT_EQ(masterVolume(), 33.0F / 100.0F);
}

TEST_F(Intents, SetTheVolumeOfTheDevice) {
    showPanel();
    ASSERT_NE(deviceVolume(), 0.25F);
    EXPECT_EQ(setVolume(25), "Volume set to 25%");
    EXPECT_EQ(deviceVolume(), 0.25F);
}

TEST_F(Intents, GoBeyondTheEndOfThePanelsSlider) {
    showPanel();
    EXPECT_EQ(setVolume(101), "Volume set to 101%");
    EXPECT_EQ(masterVolume(), 1.01F);
    EXPECT_EQ(setVolume(200), "Volume set to 200%");
    EXPECT_EQ(masterVolume(), 2.0F);
}

TEST_F(Intents, KeepTheVolumeWithinItsLimitsAndSayWhatWasAsked) {
    showPanel();
    EXPECT_EQ(setVolume(201), "Volume set to 201%");
    EXPECT_EQ(masterVolume(), 2.0F);
    EXPECT_EQ(setVolume(-5), "Volume set to -5%");
    EXPECT_EQ(masterVolume(), 0.0F);
    EXPECT_EQ(setVolume(300), "Volume set to 300%");
    EXPECT_EQ(masterVolume(), 2.0F);
    EXPECT_EQ(setVolume(-1), "Volume set to -1%");
    EXPECT_EQ(masterVolume(), 0.0F);
}

TEST_F(Intents, TakeEveryNumberThereIs) {
    showPanel();
    EXPECT_EQ(setVolume(kHighest), "Volume set to 9223372036854775807%");
    EXPECT_EQ(masterVolume(), 2.0F);
    EXPECT_EQ(setVolume(kLowest), "Volume set to -9223372036854775808%");
    EXPECT_EQ(masterVolume(), 0.0F);
}

TEST_F(Intents, SetTheFullVolumeWhereNoneIsGiven) {
    showPanel();
    EXPECT_EQ(setVolume(20), "Volume set to 20%");
    EXPECT_EQ(SetVolumeIntent().perform(), "Volume set to 100%");
    EXPECT_EQ(masterVolume(), 1.0F);
}

TEST_F(Intents, TellOfTheVolumesParameter) {
    const IntentParameter& volume = SetVolumeIntent::volumeParameter;
    EXPECT_EQ(volume.name, "volume");
    EXPECT_EQ(volume.title, "Volume");
    EXPECT_EQ(volume.description, "Volume level as percentage (0-200)");
    EXPECT_EQ(volume.defaultValue, 100);
    EXPECT_EQ(volume.controlStyle, IntentControlStyle::stepper);
}

TEST_F(Intents, MuteEverythingAndEndThat) {
    showPanel();
    rig_.tap(101, "Music");
    EXPECT_EQ(ToggleMuteIntent::perform(), "All audio muted");
    EXPECT_TRUE(rig_.model->isMasterMuted.get());
    EXPECT_TRUE(rig_.model->isMuted(101));
    EXPECT_EQ(ToggleMuteIntent::perform(), "Audio unmuted");
    EXPECT_FALSE(rig_.model->isMasterMuted.get());
    EXPECT_FALSE(rig_.model->isMuted(101));
}

TEST_F(Intents, EndTheMuteByAVolume) {
    showPanel();
    EXPECT_EQ(ToggleMuteIntent::perform(), "All audio muted");
    EXPECT_EQ(setVolume(40), "Volume set to 40%");
    EXPECT_EQ(ToggleMuteIntent::perform(), "All audio muted") << "for it was not muted any more";
}

TEST_F(Intents, NameTheTappedApplicationsInTheOrderOfTheirProcesses) {
    showPanel();
    rig_.tap(202, "Browser");
    EXPECT_EQ(ListAudioAppsIntent::perform(), "Playing: Browser");
    rig_.tap(101, "Music");
    EXPECT_EQ(ListAudioAppsIntent::perform(), "Playing: Music, Browser");
    rig_.tap(303, "A, B");
    EXPECT_EQ(ListAudioAppsIntent::perform(), "Playing: Music, Browser, A, B");
}

TEST_F(Intents, NameNoApplicationThatIsOnlyListed) {
    showPanel();
    rig_.list(101, "Music");
    rig_.refresh();
    EXPECT_EQ(ListAudioAppsIntent::perform(), "No audio apps are currently playing.");
}

TEST_F(Intents, NameEveryTappedApplicationWhetherItSoundsOrNot) {
    showPanel();
    rig_.list(101, "Music", std::nullopt, false);
    rig_.refresh();
    rig_.model->toggleTap(rig_.model->audioApps.get().front());
    EXPECT_EQ(ListAudioAppsIntent::perform(), "Playing: Music");
    rig_.model->toggleTap(rig_.model->audioApps.get().front());
    EXPECT_EQ(ListAudioAppsIntent::perform(), "No audio apps are currently playing.");
}

TEST_F(Intents, ChangeNothingAndAnswerBeforeThePanelHasAppeared) {
    rig_.tap(101, "Music");
    const float before = masterVolume();
    const float deviceBefore = deviceVolume();
    EXPECT_EQ(setVolume(30), "Volume set to 30%");
    EXPECT_EQ(ToggleMuteIntent::perform(), "Audio unmuted");
    EXPECT_EQ(ListAudioAppsIntent::perform(), "No audio apps are currently playing.");
    EXPECT_EQ(masterVolume(), before);
    EXPECT_EQ(deviceVolume(), deviceBefore);
    EXPECT_FALSE(rig_.model->isMasterMuted.get());
    EXPECT_FALSE(rig_.model->isMuted(101));
}

TEST_F(Intents, ChangeNothingAndAnswerOnceTheModelHasGone) {
    showPanel();
    rig_.tap(101, "Music");
    EXPECT_EQ(ToggleMuteIntent::perform(), "All audio muted");
    rig_.model.reset();
    const float deviceBefore = deviceVolume();
    EXPECT_EQ(setVolume(30), "Volume set to 30%");
    EXPECT_EQ(ToggleMuteIntent::perform(), "Audio unmuted");
    EXPECT_EQ(ListAudioAppsIntent::perform(), "No audio apps are currently playing.");
    EXPECT_EQ(deviceVolume(), deviceBefore);
}

TEST_F(Intents, DoNotKeepTheModel) {
    const std::weak_ptr<MixerViewModel> model = rig_.model;
    showPanel();
    EXPECT_EQ(ListAudioAppsIntent::perform(), "No audio apps are currently playing.");
    rig_.model.reset();
    EXPECT_TRUE(model.expired());
}

TEST_F(Intents, GoOnWithTheBridgeOfThePanelsFirstAppearance) {
    showPanel();
    const auto first = rig_.model;
    rig_.startPassive();
    showPanel();
    EXPECT_EQ(OrvantaIntentBridge::sharedModel(), first);
    EXPECT_NE(OrvantaIntentBridge::sharedModel(), rig_.model);
}

} // namespace
} // namespace orvanta::test
