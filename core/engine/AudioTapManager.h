#pragma once

#include "core/discovery/AudioProcessDiscovery.h"
#include "core/engine/AudioTapping.h"
#include "core/engine/FirstCallbackLog.h"
#include "core/engine/TapState.h"
#include "core/platform/Logger.h"
#include "core/platform/Platform.h"
#include "core/platform/WeakAccess.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace orvanta {

/// Owns every tap: its system objects, its state, its processors. One lock serialises all
/// operations and is held across system calls.
///
/// Watches the system's devices: a tap whose device is gone moves to the default output half a
/// second later, with one retry; a tap that follows the default output moves with it. The watch
/// runs on the main run loop.
class AudioTapManager final : public AudioTapping {
public:
    using TapState = orvanta::TapState;

    explicit AudioTapManager(const Platform& platform);
    /// Ends the watch and removes every tap. Not from a task of the main run loop that this manager
    /// has posted itself.
    ~AudioTapManager() override;

    bool createTap(std::int32_t pid,
                   std::optional<AudioObjectID> audioObjectID = std::nullopt) override;
    void removeTap(std::int32_t pid) override;
    void removeAllTaps() override;
    void setVolume(std::int32_t pid, float volume) override;
    [[nodiscard]] std::optional<float> getVolume(std::int32_t pid) const override;
    void setMuted(std::int32_t pid, bool muted) override;
    [[nodiscard]] bool isMuted(std::int32_t pid) const override;
    [[nodiscard]] bool hasTap(std::int32_t pid) const override;
    bool routeToDevice(std::int32_t pid, const std::optional<std::string>& deviceUID) override;
    [[nodiscard]] std::optional<std::string> getOutputDeviceUID(std::int32_t pid) const override;
    void setEQ(std::int32_t pid, int band, float gain) override;
    [[nodiscard]] std::optional<EQPreset> getEQ(std::int32_t pid) const override;
    [[nodiscard]] std::optional<AudioLevel> getAudioLevel(std::int32_t pid) const override;
    void setBalance(std::int32_t pid, float balance) override;
    [[nodiscard]] std::optional<float> getBalance(std::int32_t pid) const override;
    void setNoiseGate(std::int32_t pid, bool enabled, float threshold) override;
    [[nodiscard]] std::optional<bool> isNoiseGateOpen(std::int32_t pid) const override;
    void setCompressor(std::int32_t pid, const CompressorPreset& preset) override;
    [[nodiscard]] std::optional<CompressorPreset> getCompressor(std::int32_t pid) const override;
    [[nodiscard]] std::optional<std::vector<float>>
    getCompressorGainReduction(std::int32_t pid) const override;
    RecordingFiles startRecording(std::int32_t pid, const std::string& appName,
                                  RecordingFormat format, const std::filesystem::path& directory,
                                  RecordingMode mode) override;
    RecordingFiles stopRecording(std::int32_t pid) override;
    [[nodiscard]] bool isRecording(std::int32_t pid) const override;
    [[nodiscard]] double recordingDuration(std::int32_t pid) const override;
    [[nodiscard]] std::uint64_t getCallbackCount(std::int32_t pid) const override;
    [[nodiscard]] std::optional<TapDiagnostics> getDiagnostics(std::int32_t pid) const override;
    void setLimiterEnabled(std::int32_t pid, bool enabled) override;
    [[nodiscard]] bool isLimiterEnabled(std::int32_t pid) const override;
    void setNormalizationEnabled(std::int32_t pid, bool enabled) override;
    [[nodiscard]] bool isNormalizationEnabled(std::int32_t pid) const override;
    [[nodiscard]] std::optional<float> getNormalizationGain(std::int32_t pid) const override;
    void setStereoWidth(std::int32_t pid, float width) override;
    [[nodiscard]] std::optional<float> getStereoWidth(std::int32_t pid) const override;
    void setCrossfeed(std::int32_t pid, float amount) override;
    [[nodiscard]] std::optional<float> getCrossfeed(std::int32_t pid) const override;

    /// Writes the log records that callbacks have handed over and that are not in the log yet.
    void flushLog() { firstCallbackLog_.flush(); }

private:
    struct AggregateBuild {
        AudioObjectID aggregateID = kAudioObjectUnknown;
        /// Device of a decoupled route, 0 for a plain one.
        AudioObjectID btDeviceID = kAudioObjectUnknown;
    };

    using PIDs = std::vector<std::int32_t>;

    // The watch. The listeners run on a thread of the audio system and only post the other
    // operations, which run on the main run loop.
    void installDeviceListeners();
    void removeDeviceListeners();
    static OSStatus deviceListListener(AudioObjectID object,
                                       const AudioObjectPropertyAddress& address, void* clientData);
    static OSStatus defaultOutputListener(AudioObjectID object,
                                          const AudioObjectPropertyAddress& address,
                                          void* clientData);
    void handleDeviceListChange();
    void handleDefaultOutputChange();
    void rerouteAfterDisconnect(const PIDs& lost);
    void retryRerouteAfterDisconnect(const PIDs& failed);
    void rebuildForNewDefault(const PIDs& pids, const std::optional<std::string>& newDefault);

    /// Tells each of them in the log.
    [[nodiscard]] PIDs tapsWithoutDevice();
    [[nodiscard]] PIDs tapsThatFollowTheDefault() const;
    [[nodiscard]] std::optional<std::string> defaultOutputUID() const;
    [[nodiscard]] std::set<AudioObjectID> liveDeviceIDs() const;

    // All of these expect the lock to be held.
    bool hasLostDevice(TapState& state, const std::set<AudioObjectID>& live) const;
    bool playOn(const std::shared_ptr<TapState>& state, const AggregateBuild& build,
                const std::optional<std::string>& deviceUID);
    void fallBackToDefaultOutput(const std::shared_ptr<TapState>& state);
    std::optional<AudioObjectID> findProcessObject(std::int32_t pid) const;
    std::shared_ptr<TapState> buildTap(std::int32_t pid, AudioObjectID processObject);
    void readTapFormat(TapState& state);
    void makeRecorders(TapState& state);
    static RecordingFiles stopRecorders(TapState& state);
    std::optional<AggregateBuild> createAggregateDevice(const std::string& tapUUID,
                                                        std::int32_t pid,
                                                        const std::optional<std::string>& uid);
    std::optional<std::string> resolveOutputUID(const std::optional<std::string>& uid) const;
    bool isDecoupledRoute(AudioObjectID device, const std::string& uid) const;
    void matchRate(AudioObjectID aggregate, AudioObjectID device, const std::string& uid,
                   bool isDecoupled);
    std::optional<AudioDeviceIOProcID> startIOProc(const std::shared_ptr<TapState>& state);
    void stopIOProc(TapState& state);
    /// A tap at rest gets no cycles. Asks for them again if it is at rest no more.
    void wake(const TapState& state);
    void setDeviceVolumeToUnity(AudioObjectID device);
    void logStreamCounts(AudioObjectID device) const;

    [[nodiscard]] std::optional<std::string>
    deviceStringProperty(AudioObjectID device, AudioObjectPropertySelector selector) const;

    /// Null for an unknown process.
    [[nodiscard]] std::shared_ptr<TapState> findShared(std::int32_t pid) const;
    [[nodiscard]] TapState* find(std::int32_t pid) const;

    const Platform platform_;
    AudioHardware& hardware_;
    const Logger logger_;
    FirstCallbackLog firstCallbackLog_;
    std::map<std::int32_t, std::shared_ptr<TapState>> activeTaps_;
    /// Guards `activeTaps_` and all control operations. The core takes no second lock under it.
    mutable std::mutex lock_;
    const AudioProcessDiscovery discovery_;
    std::mt19937 random_;
    /// Client data of IOProcs that the audio system refused to stop: it may still call them.
    std::vector<std::unique_ptr<AudioCallbackRef>> unstoppedCells_;
    bool deviceListenerInstalled_ = false;
    bool defaultOutputListenerInstalled_ = false;
    /// After the constructor only the main run loop goes near it.
    std::optional<std::string> lastDefaultOutputUID_;
    /// Last, so that no task of the watch meets a manager that is half gone.
    WeakAccess<AudioTapManager> access_{*this};
};

} // namespace orvanta
