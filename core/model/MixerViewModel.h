#pragma once

#include "core/discovery/AudioDiscovering.h"
#include "core/discovery/OutputDeviceManaging.h"
#include "core/engine/AudioTapping.h"
#include "core/model/PIDMap.h"
#include "core/model/ProcessStats.h"
#include "core/model/ProfileIcon.h"
#include "core/model/TapWatch.h"
#include "core/persistence/ProfileStore.h"
#include "core/persistence/SettingsStoring.h"
#include "core/platform/Logger.h"
#include "core/platform/Platform.h"
#include "core/publishing/Published.h"
#include "core/services/HotkeyManager.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvanta {

/// The mixer: everything that a front end shows, in published values, and everything it can do, in
/// commands that answer through these values alone. Follows the applications that make sound, keeps
/// their taps, brings back what the user had set for them, and watches over taps that are silent.
///
/// All of it belongs to the main thread. Its timers and whatever it leaves to queues hold it
/// weakly: once the last reference is gone, nothing of it runs any more. The end waits for a
/// discovery that is under way. Whoever gives a command keeps a reference of their own until it
/// returns; observers may give commands, but must not take that reference away, nor end the model
/// from within an observer of its device manager.
///
/// Arguments that a caller may take out of a published value are taken by copy: a command may
/// change that very value.
///
/// A process without an entry in a map has the default that stands at the map.
class MixerViewModel final : public std::enable_shared_from_this<MixerViewModel> {
public:
    /// What the model works with. What is null it makes itself.
    struct Collaborators {
        std::shared_ptr<AudioTapping> tapManager;
        std::shared_ptr<AudioDiscovering> discovery;
        std::shared_ptr<OutputDeviceManaging> outputDeviceManager;
        std::shared_ptr<SettingsStoring> settingsStore;
    };

    /// Told the diagnostic lines of polls and watchdogs, each with its line end.
    using DiagnosticSink = std::function<void(std::string_view line)>;

    /// An application counts as recently active for so long after its last sound.
    static constexpr Seconds recentActivityWindow{60.0};
    /// What the command-center hot key announces in the notification center.
    static constexpr std::string_view toggleCommandCenter =
        "com.meridane.orvanta.toggleCommandCenter";

    /// With `skipTimerAndHotkeys` a passive model: it loads what is stored and touches no audio
    /// system by itself. What `platform` refers to must outlive it.
    [[nodiscard]] static std::shared_ptr<MixerViewModel> create(const Platform& platform,
                                                                Collaborators collaborators = {},
                                                                bool skipTimerAndHotkeys = false);

    MixerViewModel(const MixerViewModel&) = delete;
    MixerViewModel& operator=(const MixerViewModel&) = delete;
    /// Stops the timers. Taps end with the tap manager, if nobody else holds that.
    ~MixerViewModel();

    /// Told before any published value changes.
    ObjectWillChange objectWillChange;

    // Published state. The model reads at the time of use what others assign here.

    /// The listed applications, in discovery's order.
    Published<std::vector<AudioApp>> audioApps{objectWillChange};
    Published<PIDSet> tappedPIDs{objectWillChange};
    /// Linear; 1.
    Published<PIDMap<float>> volumes{objectWillChange};
    Published<PIDSet> mutedPIDs{objectWillChange};
    /// Volume of the system's output as last read or set, 0 to 1.
    Published<float> masterVolume{objectWillChange, 1.0F};
    /// Whether playing applications are tapped without being asked. Saved at each assignment.
    Published<bool> autoTapEnabled{objectWillChange, false, [this] {
                                       saveAutoTapEnabled();
                                   }};
    /// UIDs; without an entry the default output.
    Published<PIDMap<std::string>> appOutputDevices{objectWillChange};
    /// Flat.
    Published<PIDMap<EQPreset>> eqSettings{objectWillChange};
    Published<bool> isMasterMuted{objectWillChange, false};
    /// For the front end, which acts on it.
    Published<bool> launchAtLogin{objectWillChange, false};
    /// Peaks, linear; 0.
    Published<PIDMap<float>> audioLevels{objectWillChange};
    /// Linear; 0.
    Published<PIDMap<float>> audioRmsLevels{objectWillChange};
    /// -1 to 1; 0.
    Published<PIDMap<float>> balances{objectWillChange};
    /// Off.
    Published<PIDMap<CompressorPreset>> compressorSettings{objectWillChange};
    Published<PIDSet> recordingPIDs{objectWillChange};
    /// Seconds.
    Published<PIDMap<double>> recordingDurations{objectWillChange};
    /// Positive dB for each band; 0.
    Published<PIDMap<std::vector<float>>> compressorGainReduction{objectWillChange};
    /// Off.
    Published<PIDMap<bool>> limiterEnabled{objectWillChange};
    /// Off.
    Published<PIDMap<bool>> normalizationEnabled{objectWillChange};
    /// For a meter to come: the model only ever removes entries.
    Published<PIDMap<float>> normalizationGain{objectWillChange};
    /// 1.
    Published<PIDMap<float>> stereoWidths{objectWillChange};
    /// 0.
    Published<PIDMap<float>> crossfeedAmounts{objectWillChange};
    /// For the front end alone.
    Published<std::optional<std::int32_t>> selectedConsolePID{objectWillChange};
    Published<RecordingFormat> recordingFormat{objectWillChange, RecordingFormat::wav};
    Published<RecordingMode> recordingMode{objectWillChange, RecordingMode::processed};
    /// Made when it is first needed.
    Published<std::filesystem::path> recordingSaveDirectory;
    Published<PIDSet> soloedPIDs{objectWillChange};
    /// As the profile store has them.
    Published<std::vector<AudioProfile>> audioProfiles{objectWillChange};
    /// Last applied or saved, whatever has changed since.
    Published<std::optional<UUID>> activeProfileID{objectWillChange};
    /// Of the recording that was finished last, as is the name.
    Published<std::optional<std::filesystem::path>> lastRecordingURL{objectWillChange};
    Published<std::optional<std::string>> lastRecordingAppName{objectWillChange};
    /// Asks for the notice that a recording is finished.
    Published<bool> showRecordingComplete{objectWillChange, false};
    /// Seconds.
    Published<double> maxRecordingDuration{objectWillChange, 7200.0};
    Published<PIDMap<ProcessStats>> processStats{objectWillChange};
    /// Off.
    Published<PIDMap<bool>> noiseGateEnabled{objectWillChange};
    /// dB.
    Published<PIDMap<float>> noiseGateThresholds{objectWillChange};

    // State that is not announced.

    /// When a process last had a peak above 0.005, on the main run loop's clock.
    [[nodiscard]] const PIDMap<Seconds>& lastActiveTime() const { return lastActiveTime_; }

    /// Where mute-all returns to.
    [[nodiscard]] float preMuteVolume() const { return preMuteVolume_; }

    /// Names for people, of tapped processes.
    [[nodiscard]] const PIDMap<std::string>& tappedAppNames() const { return tappedAppNames_; }

    /// What tapped processes are stored under: the bundle identifier, or the name where there is
    /// none.
    [[nodiscard]] const PIDMap<std::string>& tappedBundleIDs() const { return tappedBundleIDs_; }

    [[nodiscard]] const TapWatch& tapWatch() const { return watch_; }

    [[nodiscard]] bool popoverVisible() const { return popoverVisible_; }

    [[nodiscard]] bool consoleVisible() const { return consoleVisible_; }

    /// A front end says whether its view is open: levels come at 60 Hz while one is.
    void setPopoverVisible(bool isVisible);
    void setConsoleVisible(bool isVisible);

    /// Nothing is told until one is set. Lines are composed only while there is one.
    void setDiagnosticSink(DiagnosticSink sink) { diagnosticSink_ = std::move(sink); }

    [[nodiscard]] AudioTapping& tapManager() const { return *tapManager_; }

    [[nodiscard]] OutputDeviceManaging& outputDeviceManager() const {
        return *outputDeviceManager_;
    }

    [[nodiscard]] SettingsStoring& settingsStore() const { return *settingsStore_; }

    [[nodiscard]] ProfileStore& profileStore() const { return *profileStore_; }

    // Refreshing.

    /// Returns at once: discovery works on its queue, and what it finds is taken up on the main
    /// one.
    void refreshApps();
    /// For callers that need the list at once.
    void refreshAppsSync();

    // Queries. None of them changes anything.

    [[nodiscard]] bool isTapped(std::int32_t pid) const { return tappedPIDs.get().contains(pid); }

    [[nodiscard]] bool isMuted(std::int32_t pid) const { return mutedPIDs.get().contains(pid); }

    [[nodiscard]] bool isRecording(std::int32_t pid) const {
        return recordingPIDs.get().contains(pid);
    }

    [[nodiscard]] float volume(std::int32_t pid) const;
    [[nodiscard]] float balance(std::int32_t pid) const;
    [[nodiscard]] float audioLevel(std::int32_t pid) const;
    [[nodiscard]] std::optional<std::string> outputDeviceUID(std::int32_t pid) const;
    [[nodiscard]] EQPreset eqPreset(std::int32_t pid) const;
    [[nodiscard]] CompressorPreset getCompressor(std::int32_t pid) const;
    /// As the tap has it now; three zeros where it has none.
    [[nodiscard]] std::vector<float> getCompressorGainReduction(std::int32_t pid) const;
    /// As the tap has it now; true where it does not say.
    [[nodiscard]] bool isNoiseGateOpen(std::int32_t pid) const;
    /// The first device with this UID.
    [[nodiscard]] std::optional<AudioObjectID> getDeviceIDByUID(const std::string& uid) const;
    /// In the order in which they are offered.
    [[nodiscard]] static std::span<const ProfileIcon> profileIcons() noexcept;

    // Commands. Ranges are the caller's and the tap's to keep. A command for one process sets the
    // published value, then the tap, then saves what is stored of the application, if it is tapped.

    /// Taps the application, with what is stored for it, or gives it back. A tap that is refused
    /// changes nothing.
    void toggleTap(AudioApp app);
    void setVolume(std::int32_t pid, float volume);
    void toggleMute(std::int32_t pid);
    /// Mutes all tapped processes that are not soloed, until no solo is left. Never saved.
    void toggleSolo(std::int32_t pid);
    /// Mutes all taps and the system's volume, or unmutes them, by hand muted ones included. Never
    /// saved.
    void toggleMuteAll();
    /// Raising the volume ends the mute-all state, though not the mute of the taps.
    void setMasterVolume(float volume);
    /// The same without the devices.
    void setMasterVolumeUI(float volume);
    /// The default output and every device that an application is routed to.
    void applyMasterVolumeToDevices(float volume) const;
    /// The same as a task for any thread, for a slider that must not wait for devices. Made on the
    /// main thread; may run when the model has gone.
    [[nodiscard]] Task masterVolumeToDevicesTask(float volume) const;
    /// Without a UID the default output, which the application then follows.
    void routeApp(std::int32_t pid, std::optional<std::string> deviceUID);
    /// `gain` in dB. Nothing for a band that is not there or a process that is not tapped.
    void setEQ(std::int32_t pid, int band, float gain);
    void resetEQ(std::int32_t pid);
    void setCompressor(std::int32_t pid, CompressorPreset preset);
    void setLimiterEnabled(std::int32_t pid, bool enabled);
    void setNormalizationEnabled(std::int32_t pid, bool enabled);
    void setStereoWidth(std::int32_t pid, float width);
    void setCrossfeed(std::int32_t pid, float amount);
    /// Nothing for a process that is not tapped.
    void setBalance(std::int32_t pid, float balance);
    /// `threshold` in dB. Lasts as long as the tap: never saved. Nothing for a process that is not
    /// tapped.
    void setNoiseGate(std::int32_t pid, bool enabled, float threshold);

    // Profiles: the mix of the tapped applications under a name. They never make or end a tap.

    void saveCurrentAsProfile(const std::string& name, const std::string& icon);
    /// Sets the applications that are tapped now; saves none of them. The devices' volume and the
    /// mute-all of the taps stay as they are.
    void applyProfile(AudioProfile profile);
    /// Takes the mix as it is now.
    void updateProfile(UUID id);
    void renameProfile(UUID id, const std::string& name);
    void deleteProfile(UUID id);
    void loadProfiles();

    // Recording.

    void toggleRecording(std::int32_t pid);
    /// The file that is being written; of two the processed one. None when none could be begun.
    std::optional<std::filesystem::path> startRecording(std::int32_t pid);
    /// The file that was written, likewise. The notice that it is finished stays for 8 seconds.
    std::optional<std::filesystem::path> stopRecording(std::int32_t pid);
    /// Ends the recordings that have reached the limit.
    void checkRecordingDurations();
    /// Bytes of so many seconds, with two channels at 48 kHz.
    [[nodiscard]] std::int64_t estimatedFileSize(double duration) const;
    [[nodiscard]] std::string formattedFileSize(double duration) const;
    void revealLastRecording();

private:
    /// A tap that is to be made anew.
    struct DeadTap {
        std::int32_t pid = 0;
        const AudioApp* app = nullptr;
    };

    /// While any listed application plays, and while none does.
    static constexpr Seconds playingRefreshInterval{2.0};
    static constexpr Seconds idleRefreshInterval{10.0};

    /// What a poll has found: the peaks that have changed, and all RMS levels.
    struct LevelReadings {
        std::vector<std::pair<std::int32_t, float>> peaks;
        std::vector<std::pair<std::int32_t, float>> rms;
    };

    using AppsByName = std::map<std::string_view, const AudioApp*>;

    MixerViewModel(const Platform& platform, Collaborators collaborators);

    // State and start-up.
    void start();
    void registerHotkeys();

    void saveAutoTapEnabled() { settingsStore_->saveAutoTapEnabled(autoTapEnabled.get()); }

    /// A task that calls `body` with the model, or does nothing once that has gone.
    template <class Body>
    [[nodiscard]] Task weakly(Body body) {
        return [model = weak_from_this(), body = std::move(body)] {
            if (const auto self = model.lock())
                body(*self);
        };
    }

    template <class Compose>
    void diagnose(Compose compose) const {
        // A copy: a sink may set another one.
        if (const DiagnosticSink sink = diagnosticSink_)
            sink(compose());
    }

    // The refresh pass.
    void scheduleRefresh(Seconds interval);
    void updateRefreshInterval();
    void applyDiscoveredApps(const std::vector<AudioApp>& apps);
    void publishApps(const std::vector<AudioApp>& apps);
    void followVanishedProcesses(const std::vector<AudioApp>& apps);
    [[nodiscard]] const AudioApp* successorOf(std::int32_t pid, const AppsByName& appsByName) const;
    void releaseVanished(std::int32_t pid);
    void migrateTap(std::int32_t pid, const AudioApp& next);
    void restoreTaps(const std::vector<AudioApp>& apps);
    void autoTap(const std::vector<AudioApp>& apps);
    void purgeProcessState(std::int32_t pid);

    // The watchdogs.
    void scanDeadTaps(const std::vector<AudioApp>& apps);
    void countDeadPoll(std::int32_t pid, const AudioApp& app, std::vector<DeadTap>& rebuildList);
    void rebuildDeadTap(const DeadTap& dead);
    void checkStall(std::int32_t pid, std::uint64_t callbackCount,
                    const std::optional<TapDiagnostics>& seen);
    void noteSilence(std::int32_t pid);
    void countStall(std::int32_t pid, std::uint64_t callbackCount);
    void retapApp(std::int32_t pid);
    void returnToDevice(std::int32_t pid, const std::string& deviceUID);

    // Steps that several of the others share.
    [[nodiscard]] static const std::string& settingsKey(const AudioApp& app);
    [[nodiscard]] static const AudioApp* findApp(const std::vector<AudioApp>& apps,
                                                 std::int32_t pid);
    /// As the maps have it, with an equaliser and a compressor that do nothing left out.
    [[nodiscard]] AppSettings currentSettings(std::int32_t pid) const;
    void persistSettings(std::int32_t pid);
    /// Enters a tap that has just been made.
    void enterTap(std::int32_t pid, const AudioApp& app);
    /// Puts back what differs audibly from a new tap.
    void restoreSettings(std::int32_t pid, const AppSettings& record);
    void applySettings(std::int32_t pid, const AppSettings& record);
    void routeAsInProfile(std::int32_t pid, const std::optional<std::string>& deviceUID);
    void pushEQ(std::int32_t pid, const EQPreset& preset);
    void setMuted(std::int32_t pid, bool muted);
    void applySoloState();
    bool tap(const AudioApp& app);
    void untap(const AudioApp& app);
    [[nodiscard]] std::optional<std::string> recordingName(std::int32_t pid) const;
    [[nodiscard]] AppSettingsByKey settingsOfTappedApps() const;
    [[nodiscard]] GlobalSettings globalSettings() const;
    [[nodiscard]] std::optional<AudioProfile> storedProfile(const UUID& id);

    // Levels and statistics.
    [[nodiscard]] bool isViewOpen() const { return popoverVisible_ || consoleVisible_; }

    void updateLevelTimer();
    void levelTick();
    void pollLevels();
    void pollLevel(std::int32_t pid, bool isDiagnosticTick, LevelReadings& readings);
    void pollDiagnostics(std::int32_t pid, const AudioLevel& level, float old);
    void pollGainReduction();
    void pollRecordings();
    void queueProcessStats();
    void takeProcessReadings(const ProcessReadings& readings);

    const Platform platform_;
    const Logger logger_;
    const Logger profilesLogger_;
    std::shared_ptr<AudioTapping> tapManager_;
    std::shared_ptr<AudioDiscovering> discovery_;
    std::shared_ptr<OutputDeviceManaging> outputDeviceManager_;
    std::shared_ptr<SettingsStoring> settingsStore_;
    std::unique_ptr<ProfileStore> profileStore_;
    DiagnosticSink diagnosticSink_;

    PIDMap<Seconds> lastActiveTime_;
    float preMuteVolume_ = 1.0F;
    /// What was muted when the first solo began.
    PIDSet preSoloMutedPIDs_;
    PIDMap<std::string> tappedAppNames_;
    PIDMap<std::string> tappedBundleIDs_;
    TapWatch watch_;
    PIDMap<CPUTimes> lastCPUTimes_;
    std::int64_t statsPollCounter_ = 0;
    std::int64_t diagPollCount_ = 0;
    bool popoverVisible_ = false;
    bool consoleVisible_ = false;
    /// Asks for the slowest meters. Nothing sets it yet: what counts as silence is not settled.
    bool allTappedSilent_ = false;

    std::shared_ptr<HotkeyManager> hotkeyManager_;
    std::unique_ptr<RepeatingTimer> refreshTimer_;
    std::unique_ptr<RepeatingTimer> levelTimer_;
    /// Last, so that they end before anything that their tasks may use.
    std::unique_ptr<SerialQueue> statsQueue_;
    std::unique_ptr<SerialQueue> discoveryQueue_;
};

} // namespace orvanta
