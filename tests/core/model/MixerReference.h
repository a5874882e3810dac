#pragma once

#include "platform/runloop/Instant.h"
#include "tests/core/model/ReferenceProcess.h"
#include "tests/support/model/ModelRig.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {

/// The mixer told once more, as plainly as it goes: one record for each process, a clock of its
/// own, everything done in turn and nothing announced. A running model that is told the same must
/// be in the same state after every operation.
///
/// It reads what a rig's world does (which applications and devices there are, what taps refuse,
/// hear and count), never what the model has made of it. Where the order among processes is the
/// model's own to choose, both go by ascending id.
class MixerReference {
public:
    explicit MixerReference(const ModelRig& rig) : rig_(rig) {}

    /// The program starts, without a single tap, and makes its first pass.
    void start();
    /// Ticks and passes, each at its time.
    void advance(Seconds time);

    // The model's commands, by the model's names.

    void refreshAppsSync();
    void setPopoverVisible(bool isVisible);
    void setConsoleVisible(bool isVisible);
    void toggleTap(const AudioApp& app);
    void setVolume(std::int32_t pid, float volume);
    void toggleMute(std::int32_t pid);
    void toggleSolo(std::int32_t pid);
    void toggleMuteAll();
    void setMasterVolume(float volume);
    void setMasterVolumeUI(float volume);
    void applyMasterVolumeToDevices(float volume);
    void routeApp(std::int32_t pid, const std::optional<std::string>& deviceUID);
    void setEQ(std::int32_t pid, int band, float gain);
    void resetEQ(std::int32_t pid);
    void setCompressor(std::int32_t pid, const CompressorPreset& preset);
    void setLimiterEnabled(std::int32_t pid, bool enabled);
    void setNormalizationEnabled(std::int32_t pid, bool enabled);
    void setStereoWidth(std::int32_t pid, float width);
    void setCrossfeed(std::int32_t pid, float amount);
    void setBalance(std::int32_t pid, float balance);
    void setNoiseGate(std::int32_t pid, bool enabled, float threshold);
    void applyProfile(const AudioProfile& profile);
    void updateProfile(const UUID& id);
    void renameProfile(const UUID& id, const std::string& name);
    void deleteProfile(const UUID& id);
    void toggleRecording(std::int32_t pid);
    void startRecording(std::int32_t pid);
    void stopRecording(std::int32_t pid);
    void checkRecordingDurations();

    // What the model chooses by itself, and what is assigned to it.

    void saveProfile(const UUID& id, const std::string& name, const std::string& icon);
    void setAutoTapEnabled(bool isEnabled);

    void setRecordingFormat(RecordingFormat format) { recordingFormat_ = format; }

    void setRecordingMode(RecordingMode mode) { recordingMode_ = mode; }

    void setMaxRecordingDuration(double seconds) { maxRecordingDuration_ = seconds; }

    void plug(const std::string& uid) { deviceVolumes_.insert_or_assign(uid, 1.0F); }

    void unplug(const std::string& uid) { deviceVolumes_.erase(uid); }

    // What must hold now.

    /// An empty record for a process that has none.
    [[nodiscard]] const ReferenceProcess& process(std::int32_t pid) const;

    [[nodiscard]] const std::map<std::int32_t, RecordingTapping::Tap>& taps() const {
        return taps_;
    }

    [[nodiscard]] const AppSettingsByKey& records() const { return records_; }

    /// "save music", "remove music", "saveAutoTapEnabled true", since the beginning.
    [[nodiscard]] const std::vector<std::string>& storeCalls() const { return storeCalls_; }

    [[nodiscard]] const std::vector<AudioProfile>& profiles() const { return profiles_; }

    [[nodiscard]] const std::map<std::string, float>& deviceVolumes() const {
        return deviceVolumes_;
    }

    /// Names, ids and what plays: "7 Music playing".
    [[nodiscard]] std::vector<std::string> listed() const;
    /// Everything else that a model holds, one thing a line.
    [[nodiscard]] std::vector<std::string> rest() const;
    /// Of the repeating timers, the shortest first.
    [[nodiscard]] std::vector<Seconds> timerIntervals() const;

    [[nodiscard]] std::size_t waitingNotices() const { return notices_.size(); }

    /// Level ticks that had something to show.
    [[nodiscard]] int meterChanges() const { return meterChanges_; }

    /// Processes that were purged or untapped.
    [[nodiscard]] int releases() const { return releases_; }

private:
    using Tap = RecordingTapping::Tap;

    struct Timer {
        Seconds interval{};
        Instant next{};
    };

    /// When a notice goes, and of which file; of none for that of an earlier run.
    struct Notice {
        Instant due{};
        std::optional<std::filesystem::path> file;
    };

    struct App {
        std::int32_t pid = 0;
        AudioObjectID object = 0;
        std::string name;
        std::string key;
        bool isPlaying = false;
    };

    [[nodiscard]] Seconds now() const { return inSeconds(now_); }

    [[nodiscard]] bool isTapped(std::int32_t pid) const { return process(pid).isTapped; }

    [[nodiscard]] std::vector<std::int32_t> tapped() const;
    [[nodiscard]] std::vector<App> discover() const;
    [[nodiscard]] Tap* tapOf(std::int32_t pid);
    [[nodiscard]] AppSettings recordOf(std::int32_t pid) const;
    [[nodiscard]] AppSettingsByKey snapshot() const;
    [[nodiscard]] GlobalSettings globals() const;
    [[nodiscard]] std::optional<AudioLevel> levelOf(std::int32_t pid);
    [[nodiscard]] std::uint64_t callbacksOf(std::int32_t pid);
    [[nodiscard]] double recordedBy(std::int32_t pid);

    // The tap engine.
    bool createTap(std::int32_t pid, std::optional<AudioObjectID> object);
    bool route(std::int32_t pid, const std::optional<std::string>& deviceUID);
    void pushVolume(std::int32_t pid, float volume);
    void pushMuted(std::int32_t pid, bool muted);
    void pushEQ(std::int32_t pid, const EQPreset& preset);
    void pushCompressor(std::int32_t pid, const CompressorPreset& preset);

    void save(std::int32_t pid);
    void mute(std::int32_t pid, bool muted);
    void enter(const App& app);
    void putBack(std::int32_t pid, const AppSettings& record);
    void pour(std::int32_t pid, const AppSettings& record);
    void untap(std::int32_t pid, const std::string& keyOfApp);

    void pass();
    void followVanished(const std::vector<App>& apps);
    void move(std::int32_t pid, const App& next);
    void purge(std::int32_t pid);
    void restore(const std::vector<App>& apps);
    void rebuildDeadTaps(const std::vector<App>& apps);
    void rebuild(const App& app);
    void autoTap(const std::vector<App>& apps);
    void refreshTimerFires();

    void settleLevelTimer();
    /// The processes whose statistics it asks for.
    std::vector<std::int32_t> tick();
    void showLevels();
    void showGainReductions();
    void watch(std::int32_t pid);
    void retap(std::int32_t pid);

    const ModelRig& rig_;
    Instant now_{};
    std::map<std::int32_t, ReferenceProcess> processes_;
    std::map<std::int32_t, Tap> taps_;
    std::vector<App> listed_;
    PIDSet mutedBeforeSolo_;

    AppSettingsByKey records_;
    std::vector<std::string> storeCalls_;
    std::optional<bool> storedAutoTap_;
    std::vector<AudioProfile> profiles_;
    std::optional<UUID> activeProfile_;

    std::map<std::string, float> deviceVolumes_;
    float masterVolume_ = 1.0F;
    float volumeBeforeMuteAll_ = 1.0F;
    bool isMasterMuted_ = false;

    RecordingFormat recordingFormat_ = RecordingFormat::wav;
    RecordingMode recordingMode_ = RecordingMode::processed;
    double maxRecordingDuration_ = 7200.0;
    std::optional<std::filesystem::path> lastRecording_;
    std::optional<std::string> lastRecordingName_;
    bool showsRecordingComplete_ = false;
    std::vector<Notice> notices_;

    bool isPopoverVisible_ = false;
    bool isConsoleVisible_ = false;
    Timer refreshTimer_;
    std::optional<Timer> levelTimer_;
    std::int64_t ticks_ = 0;
    int ticksSinceStats_ = 0;
    int meterChanges_ = 0;
    int releases_ = 0;
};

/// What `rest` tells of a reference, of a model.
[[nodiscard]] std::vector<std::string> restOf(const MixerViewModel& model);
[[nodiscard]] std::vector<std::string> listedBy(const MixerViewModel& model);

} // namespace orvanta::test
