#include "tests/support/model/RecordingTapping.h"

#include <fmt/format.h>

#include <utility>

namespace orvanta::test {
namespace {

constexpr std::uint64_t kRunning = 1'000'000;

template <class Value>
std::optional<Value> found(const std::map<std::int32_t, Value>& map, std::int32_t pid) {
    const auto entry = map.find(pid);
    return entry == map.end() ? std::nullopt : std::optional<Value>(entry->second);
}

} // namespace

std::vector<std::string> RecordingTapping::takeCalls() {
    return std::exchange(calls, {});
}

const RecordingTapping::Tap* RecordingTapping::find(std::int32_t pid) const {
    const auto entry = taps.find(pid);
    return entry == taps.end() ? nullptr : &entry->second;
}

void RecordingTapping::note(const std::string& call) {
    calls.push_back(call);
    if (listener)
        listener(call);
}

template <class... Arguments>
RecordingTapping::Tap* RecordingTapping::change(const char* operation, std::int32_t pid,
                                                const Arguments&... arguments) {
    std::string call = fmt::format("{} {}", operation, pid);
    ((call += fmt::format(" {}", arguments)), ...);
    note(call);
    const auto entry = taps.find(pid);
    return entry == taps.end() ? nullptr : &entry->second;
}

bool RecordingTapping::createTap(std::int32_t pid, std::optional<AudioObjectID> audioObjectID) {
    change("createTap", pid, audioObjectID ? std::to_string(*audioObjectID) : "-");
    if (refusedTaps.contains(pid))
        return false;
    taps.try_emplace(pid, Tap{.audioObjectID = audioObjectID});
    return true;
}

void RecordingTapping::removeTap(std::int32_t pid) {
    change("removeTap", pid);
    taps.erase(pid);
}

void RecordingTapping::removeAllTaps() {
    note("removeAllTaps");
    taps.clear();
}

void RecordingTapping::setVolume(std::int32_t pid, float volume) {
    if (Tap* const tap = change("setVolume", pid, volume)) {
        tap->volume = volume;
        tap->isMuted = false;
    }
}

std::optional<float> RecordingTapping::getVolume(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr ? std::optional(tap->volume) : std::nullopt;
}

void RecordingTapping::setMuted(std::int32_t pid, bool muted) {
    if (Tap* const tap = change("setMuted", pid, muted))
        tap->isMuted = muted;
}

bool RecordingTapping::isMuted(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr && tap->isMuted;
}

bool RecordingTapping::hasTap(std::int32_t pid) const {
    return find(pid) != nullptr;
}

bool RecordingTapping::routeToDevice(std::int32_t pid,
                                     const std::optional<std::string>& deviceUID) {
    Tap* const tap = change("routeToDevice", pid, deviceUID.value_or("-"));
    if (tap == nullptr || refusedDevices.contains(deviceUID.value_or("")))
        return false;
    tap->deviceUID = deviceUID;
    return true;
}

std::optional<std::string> RecordingTapping::getOutputDeviceUID(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr ? tap->deviceUID : std::nullopt;
}

void RecordingTapping::setEQ(std::int32_t pid, int band, float gain) {
    Tap* const tap = change("setEQ", pid, band, gain);
    if (tap == nullptr)
        return;
    if (!tap->eq)
        tap->eq.emplace();
    tap->eq->gains.at(static_cast<std::size_t>(band)) = gain;
}

std::optional<EQPreset> RecordingTapping::getEQ(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr ? tap->eq : std::nullopt;
}

std::optional<AudioLevel> RecordingTapping::getAudioLevel(std::int32_t pid) const {
    return find(pid) != nullptr ? found(levels, pid) : std::nullopt;
}

void RecordingTapping::setBalance(std::int32_t pid, float balance) {
    if (Tap* const tap = change("setBalance", pid, balance))
        tap->balance = balance;
}

std::optional<float> RecordingTapping::getBalance(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr ? std::optional(tap->balance) : std::nullopt;
}

void RecordingTapping::setNoiseGate(std::int32_t pid, bool enabled, float threshold) {
    if (Tap* const tap = change("setNoiseGate", pid, enabled, threshold))
        tap->isGateEnabled = enabled;
}

std::optional<bool> RecordingTapping::isNoiseGateOpen(std::int32_t pid) const {
    return find(pid) != nullptr ? found(gatesOpen, pid) : std::nullopt;
}

void RecordingTapping::setCompressor(std::int32_t pid, const CompressorPreset& preset) {
    if (Tap* const tap = change("setCompressor", pid, preset.isOff() ? "off" : "on")) {
        tap->compressor.reset();
        if (!preset.isOff())
            tap->compressor = preset;
    }
}

std::optional<CompressorPreset> RecordingTapping::getCompressor(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr ? tap->compressor : std::nullopt;
}

std::optional<std::vector<float>>
RecordingTapping::getCompressorGainReduction(std::int32_t pid) const {
    return find(pid) != nullptr ? found(gainReductions, pid) : std::nullopt;
}

RecordingFiles RecordingTapping::startRecording(std::int32_t pid, const std::string& appName,
                                                RecordingFormat format,
                                                const std::filesystem::path& directory,
                                                RecordingMode mode) {
    Tap* const tap = change("startRecording", pid, appName, rawValue(format), directory.string(),
                            rawValue(mode));
    if (tap == nullptr)
        return {};
    const auto file = [&](const char* suffix) {
        return directory / fmt::format("{}_{}{}", appName, pid, suffix);
    };
    RecordingFiles files;
    if (mode != RecordingMode::original)
        files.wet = file("");
    if (mode != RecordingMode::processed)
        files.dry = file("_original");
    tap->recording = found(nextRecording, pid).value_or(files);
    return *tap->recording;
}

RecordingFiles RecordingTapping::stopRecording(std::int32_t pid) {
    Tap* const tap = change("stopRecording", pid);
    if (tap == nullptr)
        return {};
    return std::exchange(tap->recording, std::nullopt).value_or(RecordingFiles{});
}

bool RecordingTapping::isRecording(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr && tap->recording && tap->recording->wet;
}

double RecordingTapping::recordingDuration(std::int32_t pid) const {
    return isRecording(pid) ? found(recordingDurations, pid).value_or(0.0) : 0.0;
}

std::uint64_t RecordingTapping::getCallbackCount(std::int32_t pid) const {
    return find(pid) != nullptr ? found(callbackCounts, pid).value_or(kRunning) : 0;
}

std::optional<TapDiagnostics> RecordingTapping::getDiagnostics(std::int32_t pid) const {
    return find(pid) != nullptr ? found(diagnostics, pid) : std::nullopt;
}

void RecordingTapping::setLimiterEnabled(std::int32_t pid, bool enabled) {
    if (Tap* const tap = change("setLimiterEnabled", pid, enabled))
        tap->isLimiterEnabled = enabled;
}

bool RecordingTapping::isLimiterEnabled(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr && tap->isLimiterEnabled;
}

void RecordingTapping::setNormalizationEnabled(std::int32_t pid, bool enabled) {
    if (Tap* const tap = change("setNormalizationEnabled", pid, enabled))
        tap->isNormalizationEnabled = enabled;
}

bool RecordingTapping::isNormalizationEnabled(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr && tap->isNormalizationEnabled;
}

std::optional<float> RecordingTapping::getNormalizationGain(std::int32_t /*pid*/) const {
    return std::nullopt;
}

void RecordingTapping::setStereoWidth(std::int32_t pid, float width) {
    if (Tap* const tap = change("setStereoWidth", pid, width))
        tap->stereoWidth = width;
}

std::optional<float> RecordingTapping::getStereoWidth(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr ? tap->stereoWidth : std::nullopt;
}

void RecordingTapping::setCrossfeed(std::int32_t pid, float amount) {
    if (Tap* const tap = change("setCrossfeed", pid, amount))
        tap->crossfeed = amount;
}

std::optional<float> RecordingTapping::getCrossfeed(std::int32_t pid) const {
    const Tap* const tap = find(pid);
    return tap != nullptr ? tap->crossfeed : std::nullopt;
}

} // namespace orvanta::test
