// What the model is made of and how it starts and ends.

#include "core/model/MixerViewModel.h"

#include "core/discovery/AudioProcessDiscovery.h"
#include "core/discovery/OutputDeviceManager.h"
#include "core/engine/AudioTapManager.h"
#include "core/model/DeviceVolume.h"
#include "core/model/GuardedDiscovery.h"
#include "core/persistence/SettingsStore.h"
#include "core/platform/AudioProperties.h"

#include <algorithm>
#include <utility>

namespace orvanta {
namespace {

constexpr float kVolumeStep = 0.05F;

std::filesystem::path defaultRecordingFolder(const UserFolders& folders) {
    return folders.music.value_or(folders.documents.value_or(folders.temporary)) /
           "Orvanta Recordings";
}

} // namespace

std::shared_ptr<MixerViewModel> MixerViewModel::create(const Platform& platform,
                                                       Collaborators collaborators,
                                                       bool skipTimerAndHotkeys) {
    std::shared_ptr<MixerViewModel> model(new MixerViewModel(platform, std::move(collaborators)));
    if (!skipTimerAndHotkeys)
        model->start();
    return model;
}

MixerViewModel::MixerViewModel(const Platform& platform, Collaborators collaborators)
    : recordingSaveDirectory(objectWillChange, defaultRecordingFolder(platform.userFolders)),
      platform_(platform),
      logger_(platform.systemLog, "viewModel"),
      profilesLogger_(platform.systemLog, "Profiles"),
      tapManager_(std::move(collaborators.tapManager)),
      discovery_(std::move(collaborators.discovery)),
      outputDeviceManager_(std::move(collaborators.outputDeviceManager)),
      settingsStore_(std::move(collaborators.settingsStore)),
      profileStore_(std::make_unique<ProfileStore>(platform.userDefaults)),
      statsQueue_(
          platform.serialQueues.make("com.meridane.orvanta.statistics", QualityOfService::utility)),
      discoveryQueue_(platform.serialQueues.make("com.meridane.orvanta.discovery",
                                                 QualityOfService::userInitiated)) {
    if (!tapManager_)
        tapManager_ = std::make_shared<AudioTapManager>(platform);
    if (!discovery_)
        discovery_ = std::make_shared<AudioProcessDiscovery>(platform);
    discovery_ = std::make_shared<GuardedDiscovery>(std::move(discovery_));
    if (!outputDeviceManager_)
        outputDeviceManager_ = std::make_shared<OutputDeviceManager>(platform);
    if (!settingsStore_)
        settingsStore_ = std::make_shared<SettingsStore>(platform.userDefaults);
    if (const auto isEnabled = settingsStore_->loadAutoTapEnabled())
        autoTapEnabled.set(*isEnabled);
    loadProfiles();
}

void MixerViewModel::start() {
    const auto device = defaultOutputDevice(platform_.audioHardware);
    masterVolume.set(device ? readDeviceVolume(platform_.audioHardware, *device) : 1.0F);
    refreshApps();
    scheduleRefresh(playingRefreshInterval);
    registerHotkeys();
}

void MixerViewModel::registerHotkeys() {
    using KeyCode = HotkeyManager::KeyCode;
    const auto manager =
        HotkeyManager::create(platform_.hotKeyCenter, platform_.mainRunLoop, platform_.systemLog);
    const auto bind = [&manager](KeyCode key, Task action) {
        manager->registerHotkey(HotkeyManager::rawValue(key), HotkeyManager::cmdShift,
                                std::move(action));
    };
    bind(KeyCode::upArrow, weakly([](MixerViewModel& self) {
             self.setMasterVolume(std::min(self.masterVolume.get() + kVolumeStep, 1.0F));
         }));
    bind(KeyCode::downArrow, weakly([](MixerViewModel& self) {
             self.setMasterVolume(std::max(self.masterVolume.get() - kVolumeStep, 0.0F));
         }));
    bind(KeyCode::m, weakly([](MixerViewModel& self) { self.toggleMuteAll(); }));
    // Views that open and close the console need no model for it.
    bind(KeyCode::c, [&notifications = platform_.notificationCenter] {
        notifications.post(toggleCommandCenter);
    });
    hotkeyManager_ = manager;
}

MixerViewModel::~MixerViewModel() {
    if (refreshTimer_)
        refreshTimer_->invalidate();
    if (levelTimer_)
        levelTimer_->invalidate();
}

void MixerViewModel::setPopoverVisible(bool isVisible) {
    popoverVisible_ = isVisible;
    updateLevelTimer();
}

void MixerViewModel::setConsoleVisible(bool isVisible) {
    consoleVisible_ = isVisible;
    updateLevelTimer();
}

float MixerViewModel::volume(std::int32_t pid) const {
    return valueOr(volumes.get(), pid, 1.0F);
}

float MixerViewModel::balance(std::int32_t pid) const {
    return valueOr(balances.get(), pid, 0.0F);
}

float MixerViewModel::audioLevel(std::int32_t pid) const {
    return valueOr(audioLevels.get(), pid, 0.0F);
}

std::optional<std::string> MixerViewModel::outputDeviceUID(std::int32_t pid) const {
    return entryOf(appOutputDevices.get(), pid);
}

EQPreset MixerViewModel::eqPreset(std::int32_t pid) const {
    return valueOr(eqSettings.get(), pid, EQPreset());
}

CompressorPreset MixerViewModel::getCompressor(std::int32_t pid) const {
    return valueOr(compressorSettings.get(), pid, CompressorPreset::off);
}

std::vector<float> MixerViewModel::getCompressorGainReduction(std::int32_t pid) const {
    return tapManager_->getCompressorGainReduction(pid).value_or(std::vector<float>(3, 0.0F));
}

bool MixerViewModel::isNoiseGateOpen(std::int32_t pid) const {
    return tapManager_->isNoiseGateOpen(pid).value_or(true);
}

std::optional<AudioObjectID> MixerViewModel::getDeviceIDByUID(const std::string& uid) const {
    const AudioObjectID device = findDeviceID(platform_.audioHardware, uid);
    return device == kAudioObjectUnknown ? std::nullopt : std::optional(device);
}

} // namespace orvanta
