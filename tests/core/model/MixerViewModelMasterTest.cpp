// The system's volume and muting everything.

#include "core/platform/AudioProperties.h"
#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TheMasterVolume : public testing::Test, public ModelRig {
protected:
    TheMasterVolume() { startPassive(); }

    [[nodiscard]] float volumeOf(const std::string& uid, AudioObjectPropertyElement element = 0) {
        return readFloat32(
                   server, findDeviceID(server, uid),
                   {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput, element})
            .value_or(-1.0F);
    }
};

TEST_F(TheMasterVolume, ReachesTheDefaultOutputAndEveryDeviceThatIsRoutedTo) {
    server.addDevice({.uid = "headphones"});
    server.addDevice({.uid = "radio"});
    tap(7, "Music");
    tap(8, "Video");
    model->routeApp(7, "headphones");
    model->routeApp(8, "headphones");
    server.journal().clear();
    model->setMasterVolume(0.3F);
    EXPECT_EQ(model->masterVolume.get(), 0.3F);
    EXPECT_EQ(volumeOf("speakers"), 0.3F);
    EXPECT_EQ(volumeOf("headphones"), 0.3F);
    EXPECT_EQ(volumeOf("radio"), 1.0F);
    EXPECT_EQ(server.journal().count(embedded::Operation::setPropertyData), 2U) << "each once";
}

TEST_F(TheMasterVolume, PassesOverADeviceThatIsGone) {
    tap(7, "Music");
    model->routeApp(7, "nowhere");
    model->setMasterVolume(0.3F);
    EXPECT_EQ(volumeOf("speakers"), 0.3F);
}

TEST_F(TheMasterVolume, SetsLeftAndRightWhereThereIsNoMainControl) {
    server.setDefaultOutput(
        server.addDevice({.uid = "stereo", .volumes = {{.element = 1}, {.element = 2}}}));
    model->setMasterVolume(0.3F);
    EXPECT_EQ(volumeOf("stereo", 1), 0.3F);
    EXPECT_EQ(volumeOf("stereo", 2), 0.3F);
}

TEST_F(TheMasterVolume, SetsLeftAndRightWhereTheMainControlCannotBeSet) {
    server.setDefaultOutput(server.addDevice(
        {.uid = "stereo",
         .volumes = {{.element = 0, .settable = false}, {.element = 1}, {.element = 2}}}));
    model->setMasterVolume(0.3F);
    EXPECT_EQ(volumeOf("stereo", 0), 1.0F);
    EXPECT_EQ(volumeOf("stereo", 1), 0.3F);
    EXPECT_EQ(volumeOf("stereo", 2), 0.3F);
}

TEST_F(TheMasterVolume, LeavesTheChannelsAloneWhereThereIsAMainControl) {
    server.setDefaultOutput(server.addDevice(
        {.uid = "stereo", .volumes = {{.element = 0}, {.element = 1}, {.element = 2}}}));
    server.failNext(embedded::Operation::setPropertyData);
    model->setMasterVolume(0.3F);
    EXPECT_EQ(volumeOf("stereo", 1), 1.0F) << "also when the write is refused";
    model->setMasterVolume(0.3F);
    EXPECT_EQ(volumeOf("stereo", 0), 0.3F);
}

TEST_F(TheMasterVolume, PassesOverADeviceThatHasNothingToSet) {
    server.setDefaultOutput(
        server.addDevice({.uid = "plain", .volumes = {{.element = 0, .settable = false}}}));
    model->setMasterVolume(0.3F);
    EXPECT_EQ(volumeOf("plain"), 1.0F);
    EXPECT_EQ(model->masterVolume.get(), 0.3F);
}

TEST_F(TheMasterVolume, CanBeShownWithoutBeingHeard) {
    model->setMasterVolumeUI(0.5F);
    EXPECT_EQ(model->masterVolume.get(), 0.5F);
    EXPECT_EQ(volumeOf("speakers"), 1.0F);
    model->applyMasterVolumeToDevices(0.25F);
    EXPECT_EQ(model->masterVolume.get(), 0.5F);
    EXPECT_EQ(volumeOf("speakers"), 0.25F);
}

TEST_F(TheMasterVolume, CanReachTheDevicesWithoutTheModel) {
    server.addDevice({.uid = "headphones"});
    tap(7, "Music");
    model->routeApp(7, "headphones");
    const Task write = model->masterVolumeToDevicesTask(0.25F);
    model->routeApp(7, std::nullopt);
    model.reset();
    write();
    EXPECT_EQ(volumeOf("speakers"), 0.25F);
    EXPECT_EQ(volumeOf("headphones"), 0.25F) << "as it was when the task was made";
}

class MuteAll : public TheMasterVolume {
protected:
    MuteAll() {
        tap(7, "Music");
        tap(8, "Video");
    }
};

TEST_F(MuteAll, MutesTheTapsAndTheSystem) {
    model->setMasterVolume(0.6F);
    model->toggleMuteAll();
    EXPECT_TRUE(model->isMasterMuted.get());
    EXPECT_EQ(model->preMuteVolume(), 0.6F);
    EXPECT_EQ(model->masterVolume.get(), 0.0F);
    EXPECT_EQ(volumeOf("speakers"), 0.0F);
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(7, 8));
    EXPECT_THAT(tapping->calls, ElementsAre("setMuted 7 true", "setMuted 8 true"));
    EXPECT_THAT(settings->calls, IsEmpty());
    tapping->calls.clear();
    model->toggleMuteAll();
    EXPECT_FALSE(model->isMasterMuted.get());
    EXPECT_EQ(volumeOf("speakers"), 0.6F);
    EXPECT_THAT(model->mutedPIDs.get(), IsEmpty());
    EXPECT_THAT(tapping->calls, ElementsAre("setMuted 7 false", "setMuted 8 false"));
    EXPECT_THAT(settings->calls, IsEmpty());
}

TEST_F(MuteAll, UnmutesAlsoWhatTheUserHadMutedByHand) {
    model->toggleMute(7);
    model->toggleMuteAll();
    model->toggleMuteAll();
    EXPECT_THAT(model->mutedPIDs.get(), IsEmpty());
    EXPECT_FALSE(tapping->isMuted(7));
}

TEST_F(MuteAll, ReturnsToFullVolumeFromAsGoodAsNone) {
    model->setMasterVolume(0.005F);
    model->toggleMuteAll();
    EXPECT_EQ(model->preMuteVolume(), 1.0F);
    model->toggleMuteAll();
    EXPECT_EQ(volumeOf("speakers"), 1.0F);
}

TEST_F(MuteAll, TakesAsGoodAsNoneForNoneUpToAHundredth) {
    model->setMasterVolume(0.01F);
    model->toggleMuteAll();
    EXPECT_EQ(model->preMuteVolume(), 1.0F);
    model->setMasterVolume(0.0101F);
    model->toggleMuteAll();
    EXPECT_EQ(model->preMuteVolume(), 0.0101F);
}

TEST_F(MuteAll, EndsWhenTheVolumeIsRaisedThoughTheTapsStayMuted) {
    model->toggleMuteAll();
    model->setMasterVolume(0.01F);
    EXPECT_TRUE(model->isMasterMuted.get()) << "as good as none";
    model->setMasterVolume(0.5F);
    EXPECT_FALSE(model->isMasterMuted.get());
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(7, 8));
    model->toggleMuteAll();
    model->setMasterVolumeUI(0.5F);
    EXPECT_FALSE(model->isMasterMuted.get());
}

TEST_F(MuteAll, IsStoredOnlyWithAnotherCommand) {
    model->toggleMuteAll();
    model->setVolume(7, 0.5F);
    EXPECT_TRUE(stored("Music").isMuted);
    EXPECT_FALSE(stored("Video").isMuted);
}

} // namespace
} // namespace orvanta::test
