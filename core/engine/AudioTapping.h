#pragma once

#include "core/dsp/CompressorPreset.h"
#include "core/dsp/EQPreset.h"
#include "core/platform/AudioObject.h"
#include "core/recording/RecordingFormat.h"
#include "core/recording/RecordingMode.h"

#include <cstdint>
#include <filesystem>
#include <optional>
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

/// Everything that can be done to a tap, each by the process whose sound it has taken. Operations
/// may be called from any thread but an IO thread. Failure is a false or absent result; an unknown
/// process is never an error: setters then do nothing, getters answer none, false or 0.
class AudioTapping {
public:
    AudioTapping() = default;
    AudioTapping(const AudioTapping&) = delete;
    AudioTapping& operator=(const AudioTapping&) = delete;
    virtual ~AudioTapping() = default;

    /// Takes the process's sound away from its normal path and hands it back through the render
    /// callback, on the default output. Without `audioObjectID` the process is looked up in the
    /// audio system's list. True when a tap for the process exists at return.
    virtual bool createTap(std::int32_t pid,
                           std::optional<AudioObjectID> audioObjectID = std::nullopt) = 0;
    /// The process sounds on its own again.
    virtual void removeTap(std::int32_t pid) = 0;
    virtual void removeAllTaps() = 0;

    /// Limits to 0.0 … 2.0 and clears mute.
    virtual void setVolume(std::int32_t pid, float volume) = 0;
    [[nodiscard]] virtual std::optional<float> getVolume(std::int32_t pid) const = 0;
    virtual void setMuted(std::int32_t pid, bool muted) = 0;
    [[nodiscard]] virtual bool isMuted(std::int32_t pid) const = 0;

    [[nodiscard]] virtual bool hasTap(std::int32_t pid) const = 0;
    /// Moves the tap to the device with this UID or, without one, to the default output, which it
    /// then follows. Settings, meters' ballistics aside, and recordings go on. True only when the
    /// tap plays where it was asked to: otherwise it plays on the default output, or, where that
    /// fails too, nowhere.
    virtual bool routeToDevice(std::int32_t pid, const std::optional<std::string>& deviceUID) = 0;
    /// None also for a tap that follows the default output.
    [[nodiscard]] virtual std::optional<std::string> getOutputDeviceUID(std::int32_t pid) const = 0;

    /// `gain` in dB, limited by the equaliser; a band it does not have is ignored.
    virtual void setEQ(std::int32_t pid, int band, float gain) = 0;
    /// None until a band has been set once.
    [[nodiscard]] virtual std::optional<EQPreset> getEQ(std::int32_t pid) const = 0;
    [[nodiscard]] virtual std::optional<AudioLevel> getAudioLevel(std::int32_t pid) const = 0;
    /// Limits to -1.0 … 1.0.
    virtual void setBalance(std::int32_t pid, float balance) = 0;
    [[nodiscard]] virtual std::optional<float> getBalance(std::int32_t pid) const = 0;
    /// `threshold` in dB, without limits. Disabling leaves no attenuation behind.
    virtual void setNoiseGate(std::int32_t pid, bool enabled, float threshold) = 0;
    /// True while the gate is disabled.
    [[nodiscard]] virtual std::optional<bool> isNoiseGateOpen(std::int32_t pid) const = 0;
    /// A preset without any ratio of 1.05 or more drops the compressor with all it remembers.
    /// Another one must have three bands to change anything.
    virtual void setCompressor(std::int32_t pid, const CompressorPreset& preset) = 0;
    [[nodiscard]] virtual std::optional<CompressorPreset> getCompressor(std::int32_t pid) const = 0;
    /// Positive dB for each band.
    [[nodiscard]] virtual std::optional<std::vector<float>>
    getCompressorGainReduction(std::int32_t pid) const = 0;

    /// Begins the files that `mode` asks for. In mode `both` they are named after the side.
    virtual RecordingFiles startRecording(std::int32_t pid, const std::string& appName,
                                          RecordingFormat format,
                                          const std::filesystem::path& directory,
                                          RecordingMode mode) = 0;
    /// Ends what is recorded. The files are complete a moment later.
    virtual RecordingFiles stopRecording(std::int32_t pid) = 0;
    /// Of the processed side alone: false also while only the original is recorded.
    [[nodiscard]] virtual bool isRecording(std::int32_t pid) const = 0;
    /// Seconds; of the processed side alone.
    [[nodiscard]] virtual double recordingDuration(std::int32_t pid) const = 0;

    /// Since the tap was made or last moved.
    [[nodiscard]] virtual std::uint64_t getCallbackCount(std::int32_t pid) const = 0;
    [[nodiscard]] virtual std::optional<TapDiagnostics> getDiagnostics(std::int32_t pid) const = 0;

    virtual void setLimiterEnabled(std::int32_t pid, bool enabled) = 0;
    [[nodiscard]] virtual bool isLimiterEnabled(std::int32_t pid) const = 0;
    /// Disabling brings the gain back to unity.
    virtual void setNormalizationEnabled(std::int32_t pid, bool enabled) = 0;
    [[nodiscard]] virtual bool isNormalizationEnabled(std::int32_t pid) const = 0;
    /// dB; none until normalisation has been enabled once.
    [[nodiscard]] virtual std::optional<float> getNormalizationGain(std::int32_t pid) const = 0;
    /// Limits to 0.0 … 2.5.
    virtual void setStereoWidth(std::int32_t pid, float width) = 0;
    [[nodiscard]] virtual std::optional<float> getStereoWidth(std::int32_t pid) const = 0;
    /// Limits to 0.0 … 1.0. Amounts up to 0.01 make no processor, but an existing one takes them.
    virtual void setCrossfeed(std::int32_t pid, float amount) = 0;
    /// A present 0.0, unlike its neighbours, where there is no crossfeed or no tap.
    [[nodiscard]] virtual std::optional<float> getCrossfeed(std::int32_t pid) const = 0;
};

} // namespace orvanta
