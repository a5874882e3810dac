#pragma once

#include "core/engine/AudioTapping.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace orvanta::test {

/// A tap engine without sound: keeps what each tap is set to, as a new tap of the real one would
/// have it, and writes down every call that changes something.
class RecordingTapping final : public AudioTapping {
public:
    struct Tap {
        std::optional<AudioObjectID> audioObjectID = std::nullopt;
        float volume = 1.0F;
        bool isMuted = false;
        std::optional<std::string> deviceUID = std::nullopt;
        std::optional<EQPreset> eq = std::nullopt;
        float balance = 0.0F;
        bool isGateEnabled = false;
        std::optional<CompressorPreset> compressor = std::nullopt;
        bool isLimiterEnabled = false;
        bool isNormalizationEnabled = false;
        std::optional<float> stereoWidth = std::nullopt;
        std::optional<float> crossfeed = std::nullopt;
        std::optional<RecordingFiles> recording = std::nullopt;

        friend bool operator==(const Tap&, const Tap&) = default;
    };

    /// "createTap 7", "setVolume 7 0.5": the operation, the process, the rest.
    std::vector<std::string> calls;
    /// Told of each call too, when set.
    std::function<void(const std::string& call)> listener;
    std::map<std::int32_t, Tap> taps;

    // What the test has the taps do. A process without an entry has the default named here.

    std::set<std::int32_t> refusedTaps;
    /// "" is the default output.
    std::set<std::string> refusedDevices;
    /// None.
    std::map<std::int32_t, AudioLevel> levels;
    /// A million: the callback runs.
    std::map<std::int32_t, std::uint64_t> callbackCounts;
    /// None.
    std::map<std::int32_t, TapDiagnostics> diagnostics;
    /// None.
    std::map<std::int32_t, std::vector<float>> gainReductions;
    /// 0.
    std::map<std::int32_t, double> recordingDurations;
    std::map<std::int32_t, bool> gatesOpen;
    /// Which sides a recording gets: without an entry, what its mode asks for.
    std::map<std::int32_t, RecordingFiles> nextRecording;

    /// Those since the last time, and forgets them.
    std::vector<std::string> takeCalls();

    bool createTap(std::int32_t pid, std::optional<AudioObjectID> audioObjectID) override;
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

private:
    [[nodiscard]] const Tap* find(std::int32_t pid) const;
    void note(const std::string& call);
    /// Writes the call down. Null for a process without a tap: the real one ignores the call, too.
    template <class... Arguments>
    Tap* change(const char* operation, std::int32_t pid, const Arguments&... arguments);
};

} // namespace orvanta::test
