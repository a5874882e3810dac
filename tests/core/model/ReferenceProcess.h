#pragma once

#include "core/model/MixerViewModel.h"
#include "tests/support/model/RecordingTapping.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::test {

/// All that a mixer model keeps for one process. Without a value where the model has no entry.
struct ReferenceProcess {
    bool isTapped = false;
    std::optional<std::string> name;
    std::optional<std::string> key;

    std::optional<float> volume;
    bool isMuted = false;
    bool isSoloed = false;
    std::optional<std::string> device;
    std::optional<EQPreset> eq;
    std::optional<float> balance;
    std::optional<CompressorPreset> compressor;
    std::optional<bool> limiter;
    std::optional<bool> normalization;
    std::optional<float> width;
    std::optional<float> crossfeed;
    std::optional<bool> gate;
    std::optional<float> gateThreshold;

    bool isRecording = false;
    std::optional<double> recorded;

    std::optional<float> peak;
    std::optional<float> rms;
    std::optional<std::vector<float>> gainReduction;
    bool hasStats = false;
    std::optional<Seconds> lastActive;

    std::optional<std::int64_t> deadPolls;
    std::optional<std::int64_t> rebuilds;
    std::optional<std::int64_t> stalls;
    std::optional<Seconds> lastRetap;
    bool hasReceivedAudio = false;
    std::optional<std::int64_t> silentTicks;
    std::optional<std::int64_t> retaps;

    friend bool operator==(const ReferenceProcess&, const ReferenceProcess&) = default;
};

/// What the model keeps for it.
[[nodiscard]] ReferenceProcess processOf(const MixerViewModel& model, std::int32_t pid);

/// "volume 0.5 instead of 1" for every field that differs; empty for equal ones.
[[nodiscard]] std::string differences(const ReferenceProcess& expected,
                                      const ReferenceProcess& actual);
[[nodiscard]] std::string differences(const RecordingTapping::Tap& expected,
                                      const RecordingTapping::Tap& actual);

} // namespace orvanta::test
