// The whole mix under a name: taken, kept, and poured back over what is tapped then.

#include "core/model/MixerViewModel.h"
#include "core/model/PublishedEntries.h"

#include <algorithm>
#include <array>
#include <utility>

namespace orvanta {

std::span<const ProfileIcon> MixerViewModel::profileIcons() noexcept {
    static constexpr std::array<ProfileIcon, 12> icons{{{"slider.horizontal.3", "Mixer"},
                                                        {"gamecontroller", "Gaming"},
                                                        {"headphones", "Headphones"},
                                                        {"laptopcomputer", "Laptop"},
                                                        {"music.note", "Music"},
                                                        {"mic", "Microphone"},
                                                        {"person.2", "Meeting"},
                                                        {"moon", "Night"},
                                                        {"sun.max", "Day"},
                                                        {"speaker.wave.3", "Speakers"},
                                                        {"film", "Media"},
                                                        {"gear", "Custom"}}};
    return icons;
}

void MixerViewModel::loadProfiles() {
    audioProfiles.set(profileStore_->loadAll());
}

AppSettingsByKey MixerViewModel::settingsOfTappedApps() const {
    AppSettingsByKey settings;
    for (const std::int32_t pid : tappedPIDs.get())
        if (const auto key = tappedBundleIDs_.find(pid); key != tappedBundleIDs_.end())
            settings.insert_or_assign(key->second, currentSettings(pid));
    return settings;
}

GlobalSettings MixerViewModel::globalSettings() const {
    return {.masterVolume = masterVolume.get(),
            .isMasterMuted = isMasterMuted.get(),
            .recordingFormat = recordingFormat.get(),
            .recordingMode = recordingMode.get()};
}

std::optional<AudioProfile> MixerViewModel::storedProfile(const UUID& id) {
    const auto profiles = profileStore_->loadAll();
    const auto found = std::ranges::find(profiles, id, &AudioProfile::id);
    return found == profiles.end() ? std::nullopt : std::optional(*found);
}

void MixerViewModel::saveCurrentAsProfile(const std::string& name, const std::string& icon) {
    const AudioProfile profile{.id = UUID::random(),
                               .name = name,
                               .icon = icon,
                               .createdAt = Date(platform_.wallClock.now()),
                               .appSettings = settingsOfTappedApps(),
                               .globalSettings = globalSettings()};
    profileStore_->save(profile);
    loadProfiles();
    activeProfileID.set(profile.id);
}

void MixerViewModel::updateProfile(UUID id) {
    auto profile = storedProfile(id);
    if (!profile)
        return;
    profile->appSettings = settingsOfTappedApps();
    profile->globalSettings = globalSettings();
    profileStore_->save(*profile);
    loadProfiles();
}

void MixerViewModel::renameProfile(UUID id, const std::string& name) {
    auto profile = storedProfile(id);
    if (!profile)
        return;
    profile->name = name;
    profileStore_->save(*profile);
    loadProfiles();
}

void MixerViewModel::deleteProfile(UUID id) {
    profileStore_->deleteProfile(id);
    loadProfiles();
    if (activeProfileID.get() == id)
        activeProfileID.set(std::nullopt);
}

void MixerViewModel::applyProfile(AudioProfile profile) {
    masterVolume.set(profile.globalSettings.masterVolume);
    isMasterMuted.set(profile.globalSettings.isMasterMuted);
    recordingFormat.set(profile.globalSettings.recordingFormat);
    recordingMode.set(profile.globalSettings.recordingMode);

    std::map<std::string, std::int32_t> pidOfKey;
    for (const auto& [pid, key] : tappedBundleIDs_)
        pidOfKey.emplace(key, pid);
    for (const auto& [key, record] : profile.appSettings) {
        const auto found = pidOfKey.find(key);
        // An observer may have ended the tap meanwhile.
        if (found == pidOfKey.end() || !tappedBundleIDs_.contains(found->second)) {
            profilesLogger_.debug("Profile skip: %s not currently tapped", key.c_str());
            continue;
        }
        applySettings(found->second, record);
        profilesLogger_.info("Profile applied: %s vol=%f", key.c_str(),
                             static_cast<double>(record.volume));
    }
    // The mutes of the profile stand, so there is nothing to restore.
    if (!soloedPIDs.get().empty())
        soloedPIDs.set({});
    activeProfileID.set(profile.id);
}

/// Everything, neutral values too: a profile also resets what the mix before it had switched on.
void MixerViewModel::applySettings(std::int32_t pid, const AppSettings& record) {
    setEntry(volumes, pid, record.volume);
    tapManager_->setVolume(pid, record.volume);
    setMuted(pid, record.isMuted);
    routeAsInProfile(pid, record.outputDeviceUID);
    if (record.eqPreset && !record.eqPreset->isFlat()) {
        setEntry(eqSettings, pid, *record.eqPreset);
        pushEQ(pid, *record.eqPreset);
    } else {
        removeEntry(eqSettings, pid);
        pushEQ(pid, EQPreset());
    }
    setEntry(balances, pid, record.balance);
    tapManager_->setBalance(pid, record.balance);
    if (record.compressorPreset && !record.compressorPreset->isOff()) {
        setEntry(compressorSettings, pid, *record.compressorPreset);
        tapManager_->setCompressor(pid, *record.compressorPreset);
    } else {
        removeEntry(compressorSettings, pid);
        tapManager_->setCompressor(pid, CompressorPreset::off);
    }
    setEntry(limiterEnabled, pid, record.limiterEnabled);
    tapManager_->setLimiterEnabled(pid, record.limiterEnabled);
    setEntry(normalizationEnabled, pid, record.normalizationEnabled);
    tapManager_->setNormalizationEnabled(pid, record.normalizationEnabled);
    setEntry(stereoWidths, pid, record.stereoWidth);
    tapManager_->setStereoWidth(pid, record.stereoWidth);
    setEntry(crossfeedAmounts, pid, record.crossfeedAmount);
    tapManager_->setCrossfeed(pid, record.crossfeedAmount);
}

void MixerViewModel::routeAsInProfile(std::int32_t pid,
                                      const std::optional<std::string>& deviceUID) {
    if (deviceUID) {
        if (tapManager_->routeToDevice(pid, deviceUID))
            setEntry(appOutputDevices, pid, *deviceUID);
    } else if (appOutputDevices.get().contains(pid)) {
        tapManager_->routeToDevice(pid, std::nullopt);
        removeEntry(appOutputDevices, pid);
    }
}

} // namespace orvanta
