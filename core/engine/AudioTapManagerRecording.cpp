// Recordings of a running tap.

#include "core/engine/AudioTapManager.h"

namespace orvanta {
namespace {

/// A tap is a stereo mix-down, whatever its format says.
constexpr int kRecordedChannels = 2;

} // namespace

void AudioTapManager::makeRecorders(TapState& state) {
    state.recorder =
        std::make_unique<AudioRecorder>(state.sampleRate, kRecordedChannels, platform_);
    state.dryRecorder =
        std::make_unique<AudioRecorder>(state.sampleRate, kRecordedChannels, platform_);
}

RecordingFiles AudioTapManager::startRecording(std::int32_t pid, const std::string& appName,
                                               RecordingFormat format,
                                               const std::filesystem::path& directory,
                                               RecordingMode mode) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return {};
    const bool wasAtRest = state->isAtRest();
    state->recordingMode = mode;
    RecordingFiles files;
    if (mode != RecordingMode::original) {
        const std::string name = mode == RecordingMode::both ? appName + "_processed" : appName;
        files.wet = state->recorder->startRecording(name, format, directory);
    }
    if (mode != RecordingMode::processed)
        files.dry = state->dryRecorder->startRecording(appName + "_original", format, directory);
    if (wasAtRest)
        wake(*state);
    return files;
}

RecordingFiles AudioTapManager::stopRecording(std::int32_t pid) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    if (state == nullptr)
        return {};
    RecordingFiles files;
    files.wet = state->recorder->stopRecording();
    files.dry = state->dryRecorder->stopRecording();
    state->recordingMode = RecordingMode::processed;
    return files;
}

bool AudioTapManager::isRecording(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state != nullptr && state->recorder->isRecording();
}

double AudioTapManager::recordingDuration(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state == nullptr ? 0.0 : state->recorder->duration();
}

} // namespace orvanta
