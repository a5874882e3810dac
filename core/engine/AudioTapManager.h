#pragma once

#include "core/discovery/AudioProcessDiscovery.h"
#include "core/engine/FirstCallbackLog.h"
#include "core/engine/TapState.h"
#include "core/platform/Logger.h"
#include "core/platform/Platform.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace orvanta {

/// Published levels of a tap, linear.
struct AudioLevel {
    float rms = 0;
    float peak = 0;

    friend bool operator==(const AudioLevel&, const AudioLevel&) = default;
};

/// What the last callback of a tap saw.
struct TapDiagnostics {
    std::int64_t inBufs = 0;    ///< input buffers
    std::int64_t inBytes = 0;   ///< size of the first one
    float inPeak = 0;           ///< its peak, refreshed every 100th callback
    std::int64_t copyCount = 0; ///< buffer pairs copied
    float outPeakPre = 0;       ///< always 0

    friend bool operator==(const TapDiagnostics&, const TapDiagnostics&) = default;
};

/// The files of a recording; none for a side that is not recorded.
struct RecordingFiles {
    std::optional<std::filesystem::path> wet; ///< what the device gets
    std::optional<std::filesystem::path> dry; ///< what the program gives

    friend bool operator==(const RecordingFiles&, const RecordingFiles&) = default;
};

/// Owns every tap: its system objects, its state, its processors. Operations may be called from any
/// thread but an IO thread; one lock serialises them and is held across system calls. Failure is a
/// false or absent result and a log line; an unknown process is never an error.
class AudioTapManager {
public:
    using TapState = orvanta::TapState;

    explicit AudioTapManager(const Platform& platform);
    /// Removes every tap.
    ~AudioTapManager();
    AudioTapManager(const AudioTapManager&) = delete;
    AudioTapManager& operator=(const AudioTapManager&) = delete;

    /// Takes the process's sound away from its normal path and hands it back through the render
    /// callback, on the default output. Without `audioObjectID` the process is looked up in the
    /// audio system's list. True when a tap for the process exists at return.
    bool createTap(std::int32_t pid, std::optional<AudioObjectID> audioObjectID = std::nullopt);
    /// The process sounds on its own again.
    void removeTap(std::int32_t pid);
    void removeAllTaps();
    [[nodiscard]] bool hasTap(std::int32_t pid) const;

    /// Limits to 0.0 … 2.0 and clears mute.
    void setVolume(std::int32_t pid, float volume);
    [[nodiscard]] std::optional<float> getVolume(std::int32_t pid) const;
    void setMuted(std::int32_t pid, bool muted);
    [[nodiscard]] bool isMuted(std::int32_t pid) const;
    /// Limits to -1.0 … 1.0.
    void setBalance(std::int32_t pid, float balance);
    [[nodiscard]] std::optional<float> getBalance(std::int32_t pid) const;
    /// `threshold` in dB, without limits. Disabling leaves no attenuation behind.
    void setNoiseGate(std::int32_t pid, bool enabled, float threshold);
    /// True while the gate is disabled.
    [[nodiscard]] std::optional<bool> isNoiseGateOpen(std::int32_t pid) const;
    /// `gain` in dB, limited by the equaliser; a band it does not have is ignored.
    void setEQ(std::int32_t pid, int band, float gain);
    /// None until a band has been set once.
    [[nodiscard]] std::optional<EQPreset> getEQ(std::int32_t pid) const;
    /// A preset without any ratio of 1.05 or more drops the compressor with all it remembers.
    /// Another one must have three bands to change anything.
    void setCompressor(std::int32_t pid, const CompressorPreset& preset);
    [[nodiscard]] std::optional<CompressorPreset> getCompressor(std::int32_t pid) const;
    /// Positive dB for each band.
    [[nodiscard]] std::optional<std::vector<float>>
    getCompressorGainReduction(std::int32_t pid) const;
    void setLimiterEnabled(std::int32_t pid, bool enabled);
    [[nodiscard]] bool isLimiterEnabled(std::int32_t pid) const;
    /// Disabling brings the gain back to unity.
    void setNormalizationEnabled(std::int32_t pid, bool enabled);
    [[nodiscard]] bool isNormalizationEnabled(std::int32_t pid) const;
    /// dB; none until normalisation has been enabled once.
    [[nodiscard]] std::optional<float> getNormalizationGain(std::int32_t pid) const;
    /// Limits to 0.0 … 2.5.
    void setStereoWidth(std::int32_t pid, float width);
    [[nodiscard]] std::optional<float> getStereoWidth(std::int32_t pid) const;
    /// Limits to 0.0 … 1.0. Amounts up to 0.01 make no processor, but an existing one takes them.
    void setCrossfeed(std::int32_t pid, float amount);
    /// A present 0.0, unlike its neighbours, where there is no crossfeed or no tap.
    [[nodiscard]] std::optional<float> getCrossfeed(std::int32_t pid) const;

    /// Begins the files that `mode` asks for. In mode `both` they are named after the side.
    RecordingFiles startRecording(std::int32_t pid, const std::string& appName,
                                  RecordingFormat format, const std::filesystem::path& directory,
                                  RecordingMode mode);
    /// Ends what is recorded. The files are complete a moment later.
    RecordingFiles stopRecording(std::int32_t pid);
    /// Of the processed side alone: false also while only the original is recorded.
    [[nodiscard]] bool isRecording(std::int32_t pid) const;
    /// Seconds; of the processed side alone.
    [[nodiscard]] double recordingDuration(std::int32_t pid) const;

    [[nodiscard]] std::optional<std::string> getOutputDeviceUID(std::int32_t pid) const;
    [[nodiscard]] std::optional<AudioLevel> getAudioLevel(std::int32_t pid) const;
    [[nodiscard]] std::uint64_t getCallbackCount(std::int32_t pid) const;
    [[nodiscard]] std::optional<TapDiagnostics> getDiagnostics(std::int32_t pid) const;

    /// Writes the log records that callbacks have handed over and that are not in the log yet.
    void flushLog() { firstCallbackLog_.flush(); }

private:
    struct AggregateBuild {
        AudioObjectID aggregateID = kAudioObjectUnknown;
        /// Device of a decoupled route, 0 for a plain one.
        AudioObjectID btDeviceID = kAudioObjectUnknown;
    };

    // All of these expect the lock to be held.
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

    [[nodiscard]] std::optional<AudioObjectID> defaultOutputDeviceID() const;
    [[nodiscard]] std::optional<std::string>
    deviceStringProperty(AudioObjectID device, AudioObjectPropertySelector selector) const;

    /// Null for an unknown process.
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
};

} // namespace orvanta
