#include "tests/core/model/ReferenceProcess.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace orvanta::test {
namespace {

std::string text(bool value) {
    return value ? "true" : "false";
}

std::string text(float value) {
    return fmt::format("{}", value);
}

std::string text(double value) {
    return fmt::format("{}", value);
}

std::string text(std::int64_t value) {
    return fmt::format("{}", value);
}

std::string text(Seconds value) {
    return fmt::format("{} s", value.count());
}

std::string text(const std::string& value) {
    return value;
}

std::string text(const std::vector<float>& values) {
    return fmt::format("{}", values);
}

std::string text(const EQPreset& preset) {
    return coding::JSON(preset).dump();
}

std::string text(const CompressorPreset& preset) {
    return coding::JSON(preset).dump();
}

std::string text(const RecordingFiles& files) {
    return fmt::format("wet {}, dry {}", files.wet.value_or("none").string(),
                       files.dry.value_or("none").string());
}

template <class Value>
std::string text(const std::optional<Value>& value) {
    return value ? text(*value) : "none";
}

/// Writes down the fields that differ.
class Comparison {
public:
    template <class Value>
    Comparison& field(const char* name, const Value& expected, const Value& actual) {
        if (expected != actual)
            text_ += fmt::format("{}{} {} instead of {}", text_.empty() ? "" : ", ", name,
                                 text(actual), text(expected));
        return *this;
    }

    [[nodiscard]] std::string take() { return std::move(text_); }

private:
    std::string text_;
};

} // namespace

ReferenceProcess processOf(const MixerViewModel& model, std::int32_t pid) {
    const TapWatch& watch = model.tapWatch();
    return {.isTapped = model.tappedPIDs.get().contains(pid),
            .name = entryOf(model.tappedAppNames(), pid),
            .key = entryOf(model.tappedBundleIDs(), pid),
            .volume = entryOf(model.volumes.get(), pid),
            .isMuted = model.mutedPIDs.get().contains(pid),
            .isSoloed = model.soloedPIDs.get().contains(pid),
            .device = entryOf(model.appOutputDevices.get(), pid),
            .eq = entryOf(model.eqSettings.get(), pid),
            .balance = entryOf(model.balances.get(), pid),
            .compressor = entryOf(model.compressorSettings.get(), pid),
            .limiter = entryOf(model.limiterEnabled.get(), pid),
            .normalization = entryOf(model.normalizationEnabled.get(), pid),
            .width = entryOf(model.stereoWidths.get(), pid),
            .crossfeed = entryOf(model.crossfeedAmounts.get(), pid),
            .gate = entryOf(model.noiseGateEnabled.get(), pid),
            .gateThreshold = entryOf(model.noiseGateThresholds.get(), pid),
            .isRecording = model.recordingPIDs.get().contains(pid),
            .recorded = entryOf(model.recordingDurations.get(), pid),
            .peak = entryOf(model.audioLevels.get(), pid),
            .rms = entryOf(model.audioRmsLevels.get(), pid),
            .gainReduction = entryOf(model.compressorGainReduction.get(), pid),
            .hasStats = model.processStats.get().contains(pid),
            .lastActive = entryOf(model.lastActiveTime(), pid),
            .deadPolls = entryOf(watch.deadTapPollCounts, pid),
            .rebuilds = entryOf(watch.deadTapRebuildCount, pid),
            .stalls = entryOf(watch.stallPollCounts, pid),
            .lastRetap = entryOf(watch.lastRetapTime, pid),
            .hasReceivedAudio = watch.hasReceivedAudio.contains(pid),
            .silentTicks = entryOf(watch.silentSinceAudioCount, pid),
            .retaps = entryOf(watch.consecutiveRetapCount, pid)};
}

std::string differences(const ReferenceProcess& expected, const ReferenceProcess& actual) {
    if (expected == actual)
        return {};
    return Comparison()
        .field("isTapped", expected.isTapped, actual.isTapped)
        .field("name", expected.name, actual.name)
        .field("key", expected.key, actual.key)
        .field("volume", expected.volume, actual.volume)
        .field("isMuted", expected.isMuted, actual.isMuted)
        .field("isSoloed", expected.isSoloed, actual.isSoloed)
        .field("device", expected.device, actual.device)
        .field("eq", expected.eq, actual.eq)
        .field("balance", expected.balance, actual.balance)
        .field("compressor", expected.compressor, actual.compressor)
        .field("limiter", expected.limiter, actual.limiter)
        .field("normalization", expected.normalization, actual.normalization)
        .field("width", expected.width, actual.width)
        .field("crossfeed", expected.crossfeed, actual.crossfeed)
        .field("gate", expected.gate, actual.gate)
        .field("gateThreshold", expected.gateThreshold, actual.gateThreshold)
        .field("isRecording", expected.isRecording, actual.isRecording)
        .field("recorded", expected.recorded, actual.recorded)
        .field("peak", expected.peak, actual.peak)
        .field("rms", expected.rms, actual.rms)
        .field("gainReduction", expected.gainReduction, actual.gainReduction)
        .field("hasStats", expected.hasStats, actual.hasStats)
        .field("lastActive", expected.lastActive, actual.lastActive)
        .field("deadPolls", expected.deadPolls, actual.deadPolls)
        .field("rebuilds", expected.rebuilds, actual.rebuilds)
        .field("stalls", expected.stalls, actual.stalls)
        .field("lastRetap", expected.lastRetap, actual.lastRetap)
        .field("hasReceivedAudio", expected.hasReceivedAudio, actual.hasReceivedAudio)
        .field("silentTicks", expected.silentTicks, actual.silentTicks)
        .field("retaps", expected.retaps, actual.retaps)
        .take();
}

std::string differences(const RecordingTapping::Tap& expected,
                        const RecordingTapping::Tap& actual) {
    if (expected == actual)
        return {};
    const auto object = [](const RecordingTapping::Tap& tap) {
        return tap.audioObjectID ? std::optional<std::int64_t>(*tap.audioObjectID) : std::nullopt;
    };
    return Comparison()
        .field("object", object(expected), object(actual))
        .field("volume", expected.volume, actual.volume)
        .field("isMuted", expected.isMuted, actual.isMuted)
        .field("device", expected.deviceUID, actual.deviceUID)
        .field("eq", expected.eq, actual.eq)
        .field("balance", expected.balance, actual.balance)
        .field("gate", expected.isGateEnabled, actual.isGateEnabled)
        .field("compressor", expected.compressor, actual.compressor)
        .field("limiter", expected.isLimiterEnabled, actual.isLimiterEnabled)
        .field("normalization", expected.isNormalizationEnabled, actual.isNormalizationEnabled)
        .field("width", expected.stereoWidth, actual.stereoWidth)
        .field("crossfeed", expected.crossfeed, actual.crossfeed)
        .field("recording", expected.recording, actual.recording)
        .take();
}

} // namespace orvanta::test
