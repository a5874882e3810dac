// The mix under a name: saved, changed, and poured back.

#include "tests/support/model/ModelRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class AMixProfile : public testing::Test, public ModelRig {
protected:
    AMixProfile() { startPassive(); }

    AudioProfile save(const std::string& name) {
        model->saveCurrentAsProfile(name, "moon");
        return model->audioProfiles.get().back();
    }

    /// With a record for one application.
    [[nodiscard]] static AudioProfile profileWith(const std::string& key,
                                                  const AppSettings& record) {
        return {.id = UUID::random(),
                .name = "Evening",
                .icon = "moon",
                .createdAt = Date(1.0),
                .appSettings = {{key, record}},
                .globalSettings = {1.0F, false, RecordingFormat::wav, RecordingMode::processed}};
    }
};

TEST_F(AMixProfile, HasItsIcons) {
    const auto icons = MixerViewModel::profileIcons();
    std::vector<std::pair<std::string, std::string>> found;
    for (const ProfileIcon& icon : icons)
        found.emplace_back(icon.symbol, icon.label);
    using Icon = std::pair<std::string, std::string>;
    EXPECT_THAT(found,
                ElementsAre(Icon("slider.horizontal.3", "Mixer"), Icon("gamecontroller", "Gaming"),
                            Icon("headphones", "Headphones"), Icon("laptopcomputer", "Laptop"),
                            Icon("music.note", "Music"), Icon("mic", "Microphone"),
                            Icon("person.2", "Meeting"), Icon("moon", "Night"),
                            Icon("sun.max", "Day"), Icon("speaker.wave.3", "Speakers"),
                            Icon("film", "Media"), Icon("gear", "Custom")));
}

TEST_F(AMixProfile, HoldsTheTappedApplicationsAndTheGlobalValues) {
    wallClock.time = WallTime(std::chrono::seconds(978307200 + 1000));
    tap(7, "Music", "com.music");
    tap(8, "Game");
    list(9, "Radio");
    model->setVolume(7, 0.5F);
    model->toggleMute(7);
    model->routeApp(7, "speakers");
    model->setEQ(7, 0, 6.0F);
    model->setBalance(7, -1.0F);
    model->setCompressor(7, CompressorPreset::podcast);
    model->setLimiterEnabled(7, true);
    model->setNormalizationEnabled(7, true);
    model->setStereoWidth(7, 0.0F);
    model->setCrossfeed(7, 1.0F);
    model->resetEQ(8);
    model->setCompressor(8, CompressorPreset::off);
    model->setMasterVolume(0.75F);
    model->recordingFormat.set(RecordingFormat::m4a);
    model->recordingMode.set(RecordingMode::both);
    const AudioProfile profile = save("Evening");

    AppSettings music = defaultRecord();
    music.volume = 0.5F;
    music.isMuted = true;
    music.outputDeviceUID = "speakers";
    music.eqPreset.emplace().gains[0] = 6.0F;
    music.balance = -1.0F;
    music.compressorPreset = CompressorPreset::podcast;
    music.limiterEnabled = true;
    music.normalizationEnabled = true;
    music.stereoWidth = 0.0F;
    music.crossfeedAmount = 1.0F;
    EXPECT_EQ(profile.name, "Evening");
    EXPECT_EQ(profile.icon, "moon");
    EXPECT_EQ(profile.createdAt, Date(1000.0));
    EXPECT_THAT(profile.appSettings, UnorderedElementsAre(testing::Pair("com.music", music),
                                                          testing::Pair("Game", defaultRecord())));
    EXPECT_EQ(profile.globalSettings,
              (GlobalSettings{0.75F, false, RecordingFormat::m4a, RecordingMode::both}));
    EXPECT_EQ(model->activeProfileID.get(), profile.id);
    EXPECT_EQ(model->profileStore().loadAll(), model->audioProfiles.get());
}

TEST_F(AMixProfile, IsMadeOfNothingWhereNothingIsTapped) {
    const AudioProfile profile = save("Silence");
    EXPECT_THAT(profile.appSettings, IsEmpty());
    model->masterVolume.set(0.2F);
    model->recordingFormat.set(RecordingFormat::m4a);
    model->activeProfileID.set(std::nullopt);
    model->soloedPIDs.set({99});
    forget();
    model->applyProfile(profile);
    EXPECT_EQ(model->masterVolume.get(), 1.0F);
    EXPECT_EQ(model->recordingFormat.get(), RecordingFormat::wav);
    EXPECT_THAT(model->soloedPIDs.get(), IsEmpty());
    EXPECT_EQ(model->activeProfileID.get(), profile.id);
    EXPECT_THAT(tapping->calls, IsEmpty());
}

TEST_F(AMixProfile, HoldsOneRecordForTwoProcessesWithOneKey) {
    tap(7, "Browser", "com.browser");
    tap(8, "Browser", "com.browser");
    model->setVolume(7, 0.5F);
    model->setVolume(8, 0.25F);
    EXPECT_THAT(save("Both").appSettings, ElementsAre(Key("com.browser")));
}

TEST_F(AMixProfile, MayHaveTheNameOfAnother) {
    const UUID first = save("Evening").id;
    const UUID second = save("Evening").id;
    EXPECT_NE(first, second);
    EXPECT_THAT(model->audioProfiles.get(), SizeIs(2));
}

TEST_F(AMixProfile, TakesTheMixAsItIsNow) {
    tap(7, "Music");
    const AudioProfile before = save("Evening");
    model->activeProfileID.set(std::nullopt);
    model->setVolume(7, 0.5F);
    model->setMasterVolume(0.5F);
    model->updateProfile(before.id);
    const AudioProfile after = model->audioProfiles.get().front();
    EXPECT_EQ(after.id, before.id);
    EXPECT_EQ(after.name, "Evening");
    EXPECT_EQ(after.createdAt, before.createdAt);
    EXPECT_EQ(after.appSettings.at("Music").volume, 0.5F);
    EXPECT_EQ(after.globalSettings.masterVolume, 0.5F);
    EXPECT_EQ(model->activeProfileID.get(), std::nullopt);
}

TEST_F(AMixProfile, ChangesItsName) {
    const AudioProfile before = save("Evening");
    model->renameProfile(before.id, "Night");
    EXPECT_THAT(model->audioProfiles.get(), SizeIs(1));
    EXPECT_EQ(model->audioProfiles.get().front().name, "Night");
    EXPECT_EQ(model->profileStore().load(before.id)->name, "Night");
}

TEST_F(AMixProfile, IsNotLookedForAgainWhenItHasGone) {
    const AudioProfile gone = save("Evening");
    model->deleteProfile(gone.id);
    int reloaded = 0;
    const auto observation = model->audioProfiles.observe([&](const auto&) { ++reloaded; });
    model->updateProfile(gone.id);
    model->renameProfile(gone.id, "Night");
    EXPECT_EQ(reloaded, 0);
    EXPECT_THAT(model->audioProfiles.get(), IsEmpty());
}

TEST_F(AMixProfile, IsActiveNoMoreWhenItIsDeleted) {
    const AudioProfile other = save("Other");
    const AudioProfile active = save("Active");
    model->deleteProfile(other.id);
    EXPECT_EQ(model->activeProfileID.get(), active.id);
    model->deleteProfile(active.id);
    EXPECT_EQ(model->activeProfileID.get(), std::nullopt);
    EXPECT_THAT(model->audioProfiles.get(), IsEmpty());
}

TEST_F(AMixProfile, IsNamedByTheListItself) {
    save("Evening");
    model->renameProfile(model->audioProfiles.get().front().id, "Night");
    model->updateProfile(model->audioProfiles.get().front().id);
    EXPECT_EQ(model->audioProfiles.get().front().name, "Night");
    const auto observation = model->audioProfiles.observe([](const auto&) {});
    model->deleteProfile(model->audioProfiles.get().front().id);
    EXPECT_EQ(model->activeProfileID.get(), std::nullopt);
}

TEST_F(AMixProfile, IsReadAgainFromTheStore) {
    model->profileStore().save(profileWith("Music", defaultRecord()));
    EXPECT_THAT(model->audioProfiles.get(), IsEmpty());
    model->loadProfiles();
    EXPECT_THAT(model->audioProfiles.get(), SizeIs(1));
}

// Poured back.

TEST_F(AMixProfile, SetsEveryValueNeutralOnesToo) {
    tap(7, "Music");
    model->setEQ(7, 0, 6.0F);
    model->setCompressor(7, CompressorPreset::music);
    model->setLimiterEnabled(7, true);
    model->routeApp(7, "speakers");
    model->toggleMute(7);
    model->setNoiseGate(7, true, -40.0F);
    forget();
    const AudioProfile profile = profileWith("Music", defaultRecord());
    model->applyProfile(profile);
    EXPECT_THAT(tapping->calls,
                ElementsAre("setVolume 7 1", "setMuted 7 false", "routeToDevice 7 -", "setEQ 7 0 0",
                            "setEQ 7 1 0", "setEQ 7 2 0", "setEQ 7 3 0", "setEQ 7 4 0",
                            "setEQ 7 5 0", "setEQ 7 6 0", "setEQ 7 7 0", "setEQ 7 8 0",
                            "setEQ 7 9 0", "setBalance 7 0", "setCompressor 7 off",
                            "setLimiterEnabled 7 false", "setNormalizationEnabled 7 false",
                            "setStereoWidth 7 1", "setCrossfeed 7 0"));
    EXPECT_THAT(model->eqSettings.get(), IsEmpty());
    EXPECT_THAT(model->compressorSettings.get(), IsEmpty());
    EXPECT_THAT(model->appOutputDevices.get(), IsEmpty());
    EXPECT_EQ(model->balances.get().at(7), 0.0F);
    EXPECT_FALSE(model->limiterEnabled.get().at(7));
    EXPECT_EQ(model->stereoWidths.get().at(7), 1.0F);
    EXPECT_TRUE(model->noiseGateEnabled.get().at(7)) << "the gate belongs to no profile";
    EXPECT_THAT(settings->calls, IsEmpty()) << "nothing is saved";
    EXPECT_TRUE(log.has(LogLevel::info, "Profile applied: Music vol=1.000000"));
    EXPECT_EQ(log.messages().front().category, "Profiles");
    EXPECT_EQ(model->activeProfileID.get(), profile.id);
}

TEST_F(AMixProfile, SetsWhatItHolds) {
    tap(7, "Music");
    AppSettings record = defaultRecord();
    record.volume = 0.5F;
    record.isMuted = true;
    record.isTapped = false;
    record.outputDeviceUID = "far away";
    record.eqPreset = EQPreset::rock;
    record.balance = 0.001F;
    record.compressorPreset = CompressorPreset::music;
    model->applyProfile(profileWith("Music", record));
    EXPECT_TRUE(model->isMuted(7));
    EXPECT_EQ(model->outputDeviceUID(7), "far away") << "the device list is not asked";
    EXPECT_EQ(tapping->taps.at(7).eq, EQPreset::rock);
    EXPECT_EQ(model->eqPreset(7), EQPreset::rock);
    EXPECT_EQ(tapping->taps.at(7).balance, 0.001F);
    EXPECT_EQ(model->getCompressor(7), CompressorPreset::music);
    EXPECT_TRUE(model->isTapped(7));
}

TEST_F(AMixProfile, LeavesTheRouteWhereTheNewOneIsRefused) {
    tap(7, "Music");
    model->routeApp(7, "speakers");
    tapping->refusedDevices = {"headphones", ""};
    AppSettings record = defaultRecord();
    record.outputDeviceUID = "headphones";
    record.crossfeedAmount = 0.5F;
    model->applyProfile(profileWith("Music", record));
    EXPECT_EQ(model->outputDeviceUID(7), "speakers");
    EXPECT_EQ(model->crossfeedAmounts.get().at(7), 0.5F) << "the rest goes on";
    record.outputDeviceUID.reset();
    model->applyProfile(profileWith("Music", record));
    EXPECT_EQ(model->outputDeviceUID(7), std::nullopt) << "whatever came of it";
}

TEST_F(AMixProfile, AsksForNoRouteWhereThereIsNoneOnEitherSide) {
    tap(7, "Music");
    model->applyProfile(profileWith("Music", defaultRecord()));
    EXPECT_THAT(tapping->calls, Not(Contains(testing::StartsWith("routeToDevice"))));
}

TEST_F(AMixProfile, PassesOverWhatIsNotTapped) {
    list(7, "Music", "com.music");
    refresh();
    forget();
    model->applyProfile(profileWith("com.music", defaultRecord()));
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_THAT(log.texts(), ElementsAre("Profile skip: com.music not currently tapped"));
    EXPECT_EQ(log.messages().front().level, LogLevel::debug);
    EXPECT_THAT(model->tappedPIDs.get(), IsEmpty());
}

TEST_F(AMixProfile, PassesOverWhatAnObserverGivesBackMeanwhile) {
    tap(7, "Music");
    tap(8, "Video");
    AudioProfile profile = profileWith("Music", defaultRecord());
    profile.appSettings.emplace("Video", defaultRecord());
    const auto observation = model->balances.observe([&](const auto& coming) {
        if (coming.contains(7) && model->isTapped(8))
            model->toggleTap(discovery->apps.back());
    });
    forget();
    model->applyProfile(profile);
    EXPECT_FALSE(model->volumes.get().contains(8));
    EXPECT_TRUE(log.has(LogLevel::debug, "Profile skip: Video not currently tapped"));
}

TEST_F(AMixProfile, LeavesAloneWhatItDoesNotMention) {
    tap(7, "Music");
    tap(8, "Game");
    model->setVolume(8, 0.5F);
    model->applyProfile(profileWith("Music", defaultRecord()));
    EXPECT_EQ(model->volume(8), 0.5F);
}

TEST_F(AMixProfile, SetsOneOfTwoProcessesWithOneKey) {
    tap(7, "Browser", "com.browser");
    tap(8, "Browser", "com.browser");
    AppSettings record = defaultRecord();
    record.volume = 0.5F;
    model->applyProfile(profileWith("com.browser", record));
    EXPECT_EQ(model->volume(7) + model->volume(8), 1.5F);
}

TEST_F(AMixProfile, ShowsItsMasterVolumeAndMuteWithoutSettingThem) {
    tap(7, "Music");
    AudioProfile profile = profileWith("Other", defaultRecord());
    profile.globalSettings = {0.25F, true, RecordingFormat::m4a, RecordingMode::original};
    server.journal().clear();
    forget();
    model->applyProfile(profile);
    EXPECT_EQ(model->masterVolume.get(), 0.25F);
    EXPECT_TRUE(model->isMasterMuted.get());
    EXPECT_EQ(model->recordingMode.get(), RecordingMode::original);
    EXPECT_THAT(server.journal().lines(), IsEmpty());
    EXPECT_THAT(tapping->calls, IsEmpty());
    EXPECT_FALSE(model->isMuted(7));
}

TEST_F(AMixProfile, EndsASoloAndKeepsTheMutesOfWhatItDoesNotMention) {
    tap(7, "Music");
    tap(8, "Game");
    tap(9, "Video");
    model->toggleSolo(9);
    model->applyProfile(profileWith("Music", defaultRecord()));
    EXPECT_THAT(model->soloedPIDs.get(), IsEmpty());
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(8));
    model->toggleSolo(7);
    model->toggleSolo(7);
    EXPECT_THAT(model->mutedPIDs.get(), ElementsAre(8)) << "of the new first solo";
}

} // namespace
} // namespace orvanta::test
