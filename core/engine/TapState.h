#pragma once

#include "core/dsp/CompressorProcessor.h"
#include "core/dsp/CrossfeedProcessor.h"
#include "core/dsp/EQProcessor.h"
#include "core/dsp/LimiterProcessor.h"
#include "core/dsp/NormalizationProcessor.h"
#include "core/engine/CallbackEpoch.h"
#include "core/engine/FirstCallbackLog.h"
#include "core/engine/ProcessorRef.h"
#include "core/platform/AudioHardware.h"
#include "core/platform/Cell.h"
#include "core/recording/AudioRecorder.h"
#include "core/recording/RecordingMode.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace orvanta {

struct AudioCallbackRef;

/// Callbacks in a row that must be silent before the costly stages are passed over.
inline constexpr std::int32_t kSilentCallbacksBeforeBypass = 10;

/// Everything of one tapped process: its system objects, its settings, its processors, and what its
/// callback publishes. Cells, the processors, their epoch and the log are shared with the
/// callback; every other field belongs to the manager, under its lock.
struct TapState {
    /// `log` must outlive the state's callbacks.
    TapState(std::int32_t pid, AudioObjectID audioObjectID, AudioObjectID tapID,
             std::string tapUUID, AudioObjectID mixDeviceID, FirstCallbackLog& log);

    /// True when silent cycles would change nothing that can be seen or heard any more: the
    /// published levels have reached 0, the costly stages are passed over, and the gate stands
    /// where silence leaves it.
    [[nodiscard]] bool hasSettled() const noexcept;

    /// True when silent cycles are not needed any more: the tap has settled, and silence is not
    /// recorded either.
    [[nodiscard]] bool isAtRest() const noexcept;

    [[nodiscard]] bool isRecording() const noexcept;

    const std::int32_t pid;
    const AudioObjectID audioObjectID; ///< the process object
    AudioObjectID tapID;
    std::string tapUUID;                                    ///< names the tap in an aggregate
    AudioObjectID mixDeviceID;                              ///< the aggregate device
    std::optional<AudioDeviceIOProcID> callbackID;          ///< none while no IOProc is installed
    Cell<float> volume{1.0F};                               ///< linear, 0.0 to 2.0
    Cell<bool> isMuted{false};                              ///< gain 0 in place of `volume`
    int channels = 2;                                       ///< of the tap's format
    double sampleRate = 48000.0;                            ///< of the tap's format, Hz
    std::optional<std::string> outputDeviceUID;             ///< none: follows the default output
    CallbackEpoch epoch;                                    ///< counts this tap's callbacks
    ProcessorRef<EQProcessor> eqProcessor{epoch};           ///< made by the first `setEQ`
    ProcessorRef<CompressorProcessor> compressor{epoch};    ///< there only while a band is active
    ProcessorRef<LimiterProcessor> limiter{epoch};          ///< made on first enable, never dropped
    ProcessorRef<NormalizationProcessor> normalizer{epoch}; ///< like the limiter
    ProcessorRef<CrossfeedProcessor> crossfeed{epoch};      ///< made by the first amount above 0.01
    Cell<float> stereoWidth{1.0F};                          ///< 0.0 mono, 1.0 unchanged, to 2.5
    Cell<bool> limiterEnabled{false};                       ///< the limiter runs only when true
    Cell<bool> normalizationEnabled{false};                 ///< the normaliser runs only when true
    std::unique_ptr<AudioRecorder> recorder;    ///< what the device gets; made before the IOProc
    std::unique_ptr<AudioRecorder> dryRecorder; ///< what the program gives; the same
    RecordingMode recordingMode = RecordingMode::processed; ///< of the recording that runs
    AudioObjectID btOutputDeviceID = kAudioObjectUnknown;   ///< device of a decoupled route, or 0
    std::unique_ptr<AudioCallbackRef> callbackRef;          ///< cell of the installed IOProc

    Cell<float> peakLevel{0.0F};             ///< linear, after ballistics
    Cell<float> rmsLevel{0.0F};              ///< linear, after ballistics
    Cell<std::uint64_t> callbackCount{0};    ///< since creation or the last re-route
    std::uint64_t lastPollCallbackCount = 0; ///< only a re-route writes it
    Cell<std::int64_t> diagInBufCount{0};    ///< input buffers of the last callback
    Cell<std::int64_t> diagInBufBytes{0};    ///< size of its first input buffer
    Cell<float> diagInPeak{0.0F};            ///< peak of the first input, every 100th callback
    Cell<float> diagOutPeak{0.0F};           ///< stays 0: nothing measures it
    Cell<std::int64_t> diagCopyCount{0};     ///< pairs copied in the last callback
    Cell<std::int64_t> diagInBufSamples{0};  ///< samples of the first input buffer
    Cell<std::int64_t> diagOutBufSamples{0}; ///< samples of the first output buffer

    Cell<float> balance{0.0F};                    ///< -1 left only, 1 right only
    Cell<bool> noiseGateEnabled{false};           ///< the gate runs only when true
    float noiseGateThreshold = -60.0F;            ///< dB
    Cell<float> noiseGateThresholdLinear{0.001F}; ///< the same as an RMS value
    const std::uint64_t gateHoldSamples = 9600;   ///< below threshold before the gate closes
    Cell<bool> gateOpen{true};
    Cell<std::uint64_t> gateSilentCount{0};    ///< samples since the RMS reached threshold
    Cell<float> gateFadeGain{1.0F};            ///< gain the gate applies now
    Cell<std::int32_t> silentCallbackCount{0}; ///< silent callbacks in a row, at most 20

    FirstCallbackLog& firstCallbackLog;
};

/// The client data of an IOProc: keeps the state alive for as long as the IOProc exists.
struct AudioCallbackRef {
    std::shared_ptr<TapState> state;
};

} // namespace orvanta
