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
    const auto started = [&](const std::unique_ptr<AudioRecorder>& recorder, const char* suffix) {
        return recorder ? recorder->startRecording(appName + suffix, format, directory)
                        : std::nullopt;
    };
    state->recordingMode = mode;
    RecordingFiles files;
    if (mode != RecordingMode::original)
        files.wet = started(state->recorder, mode == RecordingMode::both ? "_processed" : "");
    if (mode != RecordingMode::processed)
        files.dry = started(state->dryRecorder, "_original");
    // It was at rest before, or came to rest while the files were made.
    if (state->hasSettled())
        wake(*state);
    return files;
}

RecordingFiles AudioTapManager::stopRecording(std::int32_t pid) {
    const std::scoped_lock guard(lock_);
    TapState* const state = find(pid);
    return state == nullptr ? RecordingFiles{} : stopRecorders(*state);
}

RecordingFiles AudioTapManager::stopRecorders(TapState& state) {
    const auto stopped = [](const std::unique_ptr<AudioRecorder>& recorder) {
        return recorder ? recorder->stopRecording() : std::nullopt;
    };
    RecordingFiles files;
    files.wet = stopped(state.recorder);
    files.dry = stopped(state.dryRecorder);
    state.recordingMode = RecordingMode::processed;
    return files;
}

bool AudioTapManager::isRecording(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state != nullptr && state->recorder && state->recorder->isRecording();
}

double AudioTapManager::recordingDuration(std::int32_t pid) const {
    const std::scoped_lock guard(lock_);
    const TapState* const state = find(pid);
    return state != nullptr && state->recorder ? state->recorder->duration() : 0.0;
}

} // namespace orvanta
