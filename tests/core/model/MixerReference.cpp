// What users do to the mix, and the tap engine that it goes to.

#include "tests/core/model/MixerReference.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvanta::test {

const ReferenceProcess& MixerReference::process(std::int32_t pid) const {
    static const ReferenceProcess unknown;
    const auto found = processes_.find(pid);
    return found == processes_.end() ? unknown : found->second;
}

std::vector<std::int32_t> MixerReference::tapped() const {
    std::vector<std::int32_t> pids;
    for (const auto& [pid, process] : processes_)
        if (process.isTapped)
            pids.push_back(pid);
    return pids;
}

// The tap engine.

MixerReference::Tap* MixerReference::tapOf(std::int32_t pid) {
    const auto found = taps_.find(pid);
    return found == taps_.end() ? nullptr : &found->second;
}

bool MixerReference::createTap(std::int32_t pid, std::optional<AudioObjectID> object) {
    if (rig_.tapping->refusedTaps.contains(pid))
        return false;
    taps_.try_emplace(pid, Tap{.audioObjectID = object});
    return true;
}

bool MixerReference::route(std::int32_t pid, const std::optional<std::string>& deviceUID) {
    Tap* const tap = tapOf(pid);
    if (tap == nullptr || rig_.tapping->refusedDevices.contains(deviceUID.value_or("")))
        return false;
    tap->deviceUID = deviceUID;
    return true;
}

/// An engine's volume ends its mute.
void MixerReference::pushVolume(std::int32_t pid, float volume) {
    if (Tap* const tap = tapOf(pid)) {
        tap->volume = volume;
        tap->isMuted = false;
    }
}

void MixerReference::pushMuted(std::int32_t pid, bool muted) {
    if (Tap* const tap = tapOf(pid))
        tap->isMuted = muted;
}

void MixerReference::pushEQ(std::int32_t pid, const EQPreset& preset) {
    if (Tap* const tap = tapOf(pid))
        tap->eq = preset;
}

void MixerReference::pushCompressor(std::int32_t pid, const CompressorPreset& preset) {
    if (Tap* const tap = tapOf(pid))
        tap->compressor = preset.isOff() ? std::nullopt : std::optional(preset);
}

// What is stored.

AppSettings MixerReference::recordOf(std::int32_t pid) const {
    const ReferenceProcess& its = process(pid);
    AppSettings record{.volume = its.volume.value_or(1.0F),
                       .isMuted = its.isMuted,
                       .outputDeviceUID = its.device,
                       .isTapped = its.isTapped,
                       .balance = its.balance.value_or(0.0F),
                       .limiterEnabled = its.limiter.value_or(false),
                       .normalizationEnabled = its.normalization.value_or(false),
                       .stereoWidth = its.width.value_or(1.0F),
                       .crossfeedAmount = its.crossfeed.value_or(0.0F)};
    if (its.eq && !its.eq->isFlat())
        record.eqPreset = its.eq;
    if (its.compressor && !its.compressor->isOff())
        record.compressorPreset = its.compressor;
    return record;
}

void MixerReference::save(std::int32_t pid) {
    const auto key = process(pid).key;
    if (!key)
        return;
    records_.insert_or_assign(*key, recordOf(pid));
    storeCalls_.push_back("save " + *key);
}

void MixerReference::setAutoTapEnabled(bool isEnabled) {
    storedAutoTap_ = isEnabled;
    storeCalls_.emplace_back(isEnabled ? "saveAutoTapEnabled true" : "saveAutoTapEnabled false");
}

// Tapping.

void MixerReference::enter(const App& app) {
    ReferenceProcess& its = processes_[app.pid];
    its.isTapped = true;
    its.name = app.name;
    its.key = app.key;
}

void MixerReference::toggleTap(const AudioApp& app) {
    const std::string keyOfApp = app.bundleIdentifier.value_or(app.name);
    if (isTapped(app.pid)) {
        untap(app.pid, keyOfApp);
    } else {
        if (!createTap(app.pid, app.audioObjectID))
            return;
        enter({app.pid, app.audioObjectID, app.name, keyOfApp, app.isPlaying});
        if (const auto record = records_.find(keyOfApp); record != records_.end())
            putBack(app.pid, record->second);
        else
            processes_[app.pid].volume = 1.0F;
        save(app.pid);
    }
    settleLevelTimer();
}

void MixerReference::untap(std::int32_t pid, const std::string& keyOfApp) {
    const ReferenceProcess its = process(pid);
    AppSettings record = recordOf(pid);
    record.isTapped = false;
    record.eqPreset = its.eq;
    record.compressorPreset = its.compressor;
    const std::string key = its.key.value_or(keyOfApp);
    records_.insert_or_assign(key, record);
    storeCalls_.push_back("save " + key);
    taps_.erase(pid);

    ReferenceProcess left;
    left.limiter = its.limiter;
    left.normalization = its.normalization;
    left.width = its.width;
    left.crossfeed = its.crossfeed;
    left.gate = its.gate;
    left.gateThreshold = its.gateThreshold;
    left.isSoloed = its.isSoloed;
    left.gainReduction = its.gainReduction;
    left.rms = its.rms;
    left.hasStats = its.hasStats;
    left.lastActive = its.lastActive;
    left.deadPolls = its.deadPolls;
    left.rebuilds = its.rebuilds;
    left.retaps = its.retaps;
    left.recorded = its.isRecording ? std::nullopt : its.recorded;
    processes_[pid] = left;
    ++releases_;
}

/// Values that nobody would hear stay out of map and engine.
void MixerReference::putBack(std::int32_t pid, const AppSettings& record) {
    const auto& devices = rig_.devices->devices;
    ReferenceProcess& its = processes_[pid];
    its.volume = record.volume;
    pushVolume(pid, record.volume);
    if (record.isMuted)
        mute(pid, true);
    if (record.outputDeviceUID &&
        std::ranges::count(devices, *record.outputDeviceUID, &OutputDevice::uid) > 0 &&
        route(pid, record.outputDeviceUID))
        its.device = record.outputDeviceUID;
    if (record.eqPreset && !record.eqPreset->isFlat())
        pushEQ(pid, its.eq.emplace(*record.eqPreset));
    if (record.compressorPreset && !record.compressorPreset->isOff())
        pushCompressor(pid, its.compressor.emplace(*record.compressorPreset));
    Tap& tap = taps_.at(pid);
    if (record.balance > 0.01F || record.balance < -0.01F)
        tap.balance = its.balance.emplace(record.balance);
    if (record.limiterEnabled)
        tap.isLimiterEnabled = its.limiter.emplace(true);
    if (record.normalizationEnabled)
        tap.isNormalizationEnabled = its.normalization.emplace(true);
    if (record.stereoWidth - 1.0F > 0.01F || record.stereoWidth - 1.0F < -0.01F)
        tap.stereoWidth = its.width.emplace(record.stereoWidth);
    if (record.crossfeedAmount > 0.01F)
        tap.crossfeed = its.crossfeed.emplace(record.crossfeedAmount);
}

// Commands for one process.

void MixerReference::setVolume(std::int32_t pid, float volume) {
    processes_[pid].volume = volume;
    pushVolume(pid, volume);
    save(pid);
}

void MixerReference::mute(std::int32_t pid, bool muted) {
    processes_[pid].isMuted = muted;
    pushMuted(pid, muted);
}

void MixerReference::toggleMute(std::int32_t pid) {
    mute(pid, !process(pid).isMuted);
    save(pid);
}

/// While a solo lasts every tap is muted or not by whether it is soloed. The last to go leaves the
/// taps as they were before the first one came.
void MixerReference::toggleSolo(std::int32_t pid) {
    PIDSet soloed;
    PIDSet muted;
    for (const auto& [each, its] : processes_) {
        if (its.isSoloed)
            soloed.insert(each);
        if (its.isMuted)
            muted.insert(each);
    }
    if (soloed.empty())
        mutedBeforeSolo_ = muted;
    if (soloed.erase(pid) == 0)
        soloed.insert(pid);
    processes_[pid].isSoloed = soloed.contains(pid);
    for (const std::int32_t each : tapped()) {
        const bool shallBeMuted =
            soloed.empty() ? mutedBeforeSolo_.contains(each) : !soloed.contains(each);
        if (shallBeMuted != muted.contains(each))
            mute(each, shallBeMuted);
    }
    if (soloed.empty())
        mutedBeforeSolo_.clear();
}

void MixerReference::routeApp(std::int32_t pid, const std::optional<std::string>& deviceUID) {
    if (!isTapped(pid) || !route(pid, deviceUID))
        return;
    processes_[pid].device = deviceUID;
    save(pid);
}

void MixerReference::setEQ(std::int32_t pid, int band, float gain) {
    if (!isTapped(pid) || band < 0 || band > 9)
        return;
    const auto index = static_cast<std::size_t>(band);
    EQPreset& preset = processes_[pid].eq.emplace(process(pid).eq.value_or(EQPreset()));
    preset.gains[index] = gain;
    if (Tap* const tap = tapOf(pid))
        tap->eq.emplace(tap->eq.value_or(EQPreset())).gains[index] = gain;
    save(pid);
}

void MixerReference::resetEQ(std::int32_t pid) {
    processes_[pid].eq = EQPreset();
    pushEQ(pid, EQPreset());
    save(pid);
}

void MixerReference::setCompressor(std::int32_t pid, const CompressorPreset& preset) {
    processes_[pid].compressor = preset;
    pushCompressor(pid, preset);
    save(pid);
}

void MixerReference::setLimiterEnabled(std::int32_t pid, bool enabled) {
    processes_[pid].limiter = enabled;
    if (Tap* const tap = tapOf(pid))
        tap->isLimiterEnabled = enabled;
    save(pid);
}

void MixerReference::setNormalizationEnabled(std::int32_t pid, bool enabled) {
    processes_[pid].normalization = enabled;
    if (Tap* const tap = tapOf(pid))
        tap->isNormalizationEnabled = enabled;
    save(pid);
}

void MixerReference::setStereoWidth(std::int32_t pid, float width) {
    processes_[pid].width = width;
    if (Tap* const tap = tapOf(pid))
        tap->stereoWidth = width;
    save(pid);
}

void MixerReference::setCrossfeed(std::int32_t pid, float amount) {
    processes_[pid].crossfeed = amount;
    if (Tap* const tap = tapOf(pid))
        tap->crossfeed = amount;
    save(pid);
}

void MixerReference::setBalance(std::int32_t pid, float balance) {
    if (!isTapped(pid))
        return;
    processes_[pid].balance = balance;
    if (Tap* const tap = tapOf(pid))
        tap->balance = balance;
    save(pid);
}

void MixerReference::setNoiseGate(std::int32_t pid, bool enabled, float threshold) {
    if (!isTapped(pid))
        return;
    processes_[pid].gate = enabled;
    processes_[pid].gateThreshold = threshold;
    if (Tap* const tap = tapOf(pid))
        tap->isGateEnabled = enabled;
}

// The system's volume.

void MixerReference::toggleMuteAll() {
    const bool mutes = !isMasterMuted_;
    if (mutes) {
        volumeBeforeMuteAll_ = masterVolume_ > 0.01F ? masterVolume_ : 1.0F;
        isMasterMuted_ = true;
        setMasterVolume(0.0F);
    } else {
        isMasterMuted_ = false;
        setMasterVolume(volumeBeforeMuteAll_);
    }
    for (const std::int32_t pid : tapped())
        mute(pid, mutes);
}

void MixerReference::setMasterVolume(float volume) {
    setMasterVolumeUI(volume);
    applyMasterVolumeToDevices(volume);
}

void MixerReference::setMasterVolumeUI(float volume) {
    masterVolume_ = volume;
    if (volume > 0.01F)
        isMasterMuted_ = false;
}

void MixerReference::applyMasterVolumeToDevices(float volume) {
    for (auto& [uid, itsVolume] : deviceVolumes_) {
        bool isHeard = uid == rig_.devices->defaultUID;
        for (const auto& [pid, its] : processes_)
            isHeard = isHeard || its.device == uid;
        if (isHeard)
            itsVolume = std::clamp(volume, 0.0F, 1.0F);
    }
}

// Profiles.

AppSettingsByKey MixerReference::snapshot() const {
    AppSettingsByKey settings;
    for (const std::int32_t pid : tapped())
        if (const auto key = process(pid).key)
            settings.insert_or_assign(*key, recordOf(pid));
    return settings;
}

GlobalSettings MixerReference::globals() const {
    return {masterVolume_, isMasterMuted_, recordingFormat_, recordingMode_};
}

void MixerReference::saveProfile(const UUID& id, const std::string& name, const std::string& icon) {
    profiles_.push_back({id, name, icon, Date(rig_.wallClock.now()), snapshot(), globals()});
    activeProfile_ = id;
}

void MixerReference::updateProfile(const UUID& id) {
    for (AudioProfile& profile : profiles_) {
        if (profile.id != id)
            continue;
        profile.appSettings = snapshot();
        profile.globalSettings = globals();
    }
}

void MixerReference::renameProfile(const UUID& id, const std::string& name) {
    for (AudioProfile& profile : profiles_)
        if (profile.id == id)
            profile.name = name;
}

void MixerReference::deleteProfile(const UUID& id) {
    std::erase_if(profiles_, [&](const AudioProfile& each) { return each.id == id; });
    if (activeProfile_ == id)
        activeProfile_.reset();
}

void MixerReference::applyProfile(const AudioProfile& profile) {
    masterVolume_ = profile.globalSettings.masterVolume;
    isMasterMuted_ = profile.globalSettings.isMasterMuted;
    recordingFormat_ = profile.globalSettings.recordingFormat;
    recordingMode_ = profile.globalSettings.recordingMode;
    for (const auto& [key, record] : profile.appSettings) {
        const auto named = std::ranges::find_if(
            processes_, [&key = key](const auto& each) { return each.second.key == key; });
        if (named != processes_.end())
            pour(named->first, record);
    }
    for (auto& [pid, its] : processes_)
        its.isSoloed = false;
    activeProfile_ = profile.id;
}

/// All of it, whether anybody would hear it or not.
void MixerReference::pour(std::int32_t pid, const AppSettings& record) {
    ReferenceProcess& its = processes_[pid];
    its.volume = record.volume;
    pushVolume(pid, record.volume);
    mute(pid, record.isMuted);
    if (record.outputDeviceUID) {
        if (route(pid, record.outputDeviceUID))
            its.device = record.outputDeviceUID;
    } else if (its.device) {
        route(pid, std::nullopt);
        its.device.reset();
    }
    its.eq.reset();
    if (record.eqPreset && !record.eqPreset->isFlat())
        its.eq = record.eqPreset;
    pushEQ(pid, its.eq.value_or(EQPreset()));
    its.compressor.reset();
    if (record.compressorPreset && !record.compressorPreset->isOff())
        its.compressor = record.compressorPreset;
    pushCompressor(pid, its.compressor.value_or(CompressorPreset::off));
    its.balance = record.balance;
    its.limiter = record.limiterEnabled;
    its.normalization = record.normalizationEnabled;
    its.width = record.stereoWidth;
    its.crossfeed = record.crossfeedAmount;
    if (Tap* const tap = tapOf(pid)) {
        tap->balance = record.balance;
        tap->isLimiterEnabled = record.limiterEnabled;
        tap->isNormalizationEnabled = record.normalizationEnabled;
        tap->stereoWidth = record.stereoWidth;
        tap->crossfeed = record.crossfeedAmount;
    }
}

// Recording.

void MixerReference::toggleRecording(std::int32_t pid) {
    if (process(pid).isRecording)
        stopRecording(pid);
    else
        startRecording(pid);
}

void MixerReference::startRecording(std::int32_t pid) {
    auto name = process(pid).name;
    if (const auto app = std::ranges::find(listed_, pid, &App::pid); !name && app != listed_.end())
        name = app->name;
    Tap* const tap = tapOf(pid);
    if (!name || tap == nullptr)
        return;
    const auto folder = *rig_.userFolders.music / "Orvanta Recordings";
    RecordingFiles& files = tap->recording.emplace();
    if (recordingMode_ != RecordingMode::original)
        files.wet = folder / fmt::format("{}_{}", *name, pid);
    if (recordingMode_ != RecordingMode::processed)
        files.dry = folder / fmt::format("{}_{}_original", *name, pid);
    processes_[pid].isRecording = true;
    processes_[pid].recorded = 0.0;
    showsRecordingComplete_ = false;
}

void MixerReference::stopRecording(std::int32_t pid) {
    ReferenceProcess& its = processes_[pid];
    its.isRecording = false;
    its.recorded.reset();
    Tap* const tap = tapOf(pid);
    if (tap == nullptr || !tap->recording)
        return;
    lastRecording_ = tap->recording->wet ? tap->recording->wet : tap->recording->dry;
    lastRecordingName_ = its.name.value_or("");
    tap->recording.reset();
    showsRecordingComplete_ = true;
    notices_.push_back({now_ + wholeNanoseconds(Seconds(8.0)), lastRecording_});
}

void MixerReference::checkRecordingDurations() {
    for (const auto& [pid, its] : std::map(processes_))
        if (its.isRecording && its.recorded && !(maxRecordingDuration_ > *its.recorded))
            stopRecording(pid);
}

double MixerReference::recordedBy(std::int32_t pid) {
    const Tap* const tap = tapOf(pid);
    if (tap == nullptr || !tap->recording || !tap->recording->wet)
        return 0.0;
    const auto scripted = rig_.tapping->recordingDurations.find(pid);
    return scripted == rig_.tapping->recordingDurations.end() ? 0.0 : scripted->second;
}

// What is left to compare.

std::vector<std::string> MixerReference::listed() const {
    std::vector<std::string> lines;
    for (const App& app : listed_)
        lines.push_back(fmt::format("{} {} ({}){}", app.pid, app.name, app.key,
                                    app.isPlaying ? " playing" : ""));
    return lines;
}

std::vector<std::string> listedBy(const MixerViewModel& model) {
    std::vector<std::string> lines;
    for (const AudioApp& app : model.audioApps.get())
        lines.push_back(fmt::format("{} {} ({}){}", app.pid, app.name,
                                    app.bundleIdentifier.value_or(app.name),
                                    app.isPlaying ? " playing" : ""));
    return lines;
}

std::vector<std::string> MixerReference::rest() const {
    return {fmt::format("masterVolume {}", masterVolume_),
            fmt::format("preMuteVolume {}", volumeBeforeMuteAll_),
            fmt::format("isMasterMuted {}", isMasterMuted_),
            fmt::format("autoTapEnabled {}", storedAutoTap_.value_or(false)),
            fmt::format("recordingFormat {}", rawValue(recordingFormat_)),
            fmt::format("recordingMode {}", rawValue(recordingMode_)),
            fmt::format("maxRecordingDuration {}", maxRecordingDuration_),
            fmt::format("lastRecordingURL {}", lastRecording_.value_or("none").string()),
            fmt::format("lastRecordingAppName {}", lastRecordingName_.value_or("none")),
            fmt::format("showRecordingComplete {}", showsRecordingComplete_),
            fmt::format("activeProfileID {}", activeProfile_.value_or(UUID()).uuidString()),
            fmt::format("popoverVisible {}", isPopoverVisible_),
            fmt::format("consoleVisible {}", isConsoleVisible_)};
}

std::vector<std::string> restOf(const MixerViewModel& model) {
    return {
        fmt::format("masterVolume {}", model.masterVolume.get()),
        fmt::format("preMuteVolume {}", model.preMuteVolume()),
        fmt::format("isMasterMuted {}", model.isMasterMuted.get()),
        fmt::format("autoTapEnabled {}", model.autoTapEnabled.get()),
        fmt::format("recordingFormat {}", rawValue(model.recordingFormat.get())),
        fmt::format("recordingMode {}", rawValue(model.recordingMode.get())),
        fmt::format("maxRecordingDuration {}", model.maxRecordingDuration.get()),
        fmt::format("lastRecordingURL {}", model.lastRecordingURL.get().value_or("none").string()),
        fmt::format("lastRecordingAppName {}", model.lastRecordingAppName.get().value_or("none")),
        fmt::format("showRecordingComplete {}", model.showRecordingComplete.get()),
        fmt::format("activeProfileID {}",
                    model.activeProfileID.get().value_or(UUID()).uuidString()),
        fmt::format("popoverVisible {}", model.popoverVisible()),
        fmt::format("consoleVisible {}", model.consoleVisible())};
}

} // namespace orvanta::test
