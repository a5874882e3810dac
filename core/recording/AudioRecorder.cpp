#include "core/recording/AudioRecorder.h"

#include "core/recording/RecordingFileName.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <system_error>
#include <utility>

namespace orvanta {
namespace {

constexpr Seconds kDrainInterval{0.1};
/// A writer that fell behind catches up by steps of this, so that no tick takes long.
constexpr std::int64_t kMaximumFramesPerDrain = 24000;
constexpr int kAACBitRate = 256000;

AudioFileSettings settingsOf(RecordingFormat format, double sampleRate, int channels) {
    AudioFileSettings settings;
    settings.sampleRate = sampleRate;
    settings.channels = channels;
    if (format == RecordingFormat::m4a) {
        settings.coding = AudioFileSettings::Coding::aacMPEG4;
        settings.bitRate = kAACBitRate;
    }
    return settings;
}

constexpr const char* kNoMemory = "Cannot allocate memory";

/// The reason why an operation on a file failed, lack of memory included.
template <class Operation>
std::optional<std::string> withoutMemoryAReason(Operation operation) {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    }
}

std::optional<std::string> written(AudioFile& file, const PCMBuffer& buffer) {
    return withoutMemoryAReason(
        [&] { return file.write(buffer.channels(), static_cast<std::size_t>(buffer.frames())); });
}

} // namespace

AudioRecorder::AudioRecorder(double sampleRate, int channels, const Platform& platform)
    : ring_(channels),
      recorderLogger_(platform.systemLog, "recorder"),
      fileWriter_(platform.audioFileWriter),
      wallClock_(platform.wallClock),
      sampleRate_(sampleRate),
      channels_(channels),
      writerQueue_(platform.serialQueues.make("com.meridane.orvanta.audiorecorder",
                                              QualityOfService::utility)) {}

AudioRecorder::~AudioRecorder() {
    waitForFinalDrain();
}

std::optional<std::filesystem::path>
AudioRecorder::startRecording(const std::string& appName, RecordingFormat format,
                              const std::filesystem::path& directory) {
    if (state_.load(std::memory_order_relaxed) != State::idle)
        return std::nullopt;
    waitForFinalDrain();

    // Where this fails, making the file will, and say why.
    std::error_code ignored;
    std::filesystem::create_directories(directory, ignored);
    const WallTime now = wallClock_.now();
    const std::filesystem::path path = directory / recordingFileName(appName, now, format);
    std::unique_ptr<AudioFile> file = createFile(path, format);
    if (!file)
        return std::nullopt;

    audioFile_ = std::move(file);
    ring_.takeMemory();
    ring_.clear();
    fileURL_ = path;
    startTime_ = now;
    startInstant_ = writerQueue_->now();
    startWriterTimer();
    state_.store(State::recording, std::memory_order_release);
    recorderLogger_.info("Recording started: %s", path.filename().c_str());
    return path;
}

std::unique_ptr<AudioFile> AudioRecorder::createFile(const std::filesystem::path& path,
                                                     RecordingFormat format) {
    if (!std::isfinite(sampleRate_) || sampleRate_ <= 0.0)
        return nullptr;
    std::string reason;
    auto file = fileWriter_.create(path, settingsOf(format, sampleRate_, channels_), reason);
    if (!file)
        recorderLogger_.error("Failed to create file: %s", reason.c_str());
    return file;
}

void AudioRecorder::startWriterTimer() {
    writerTimer_ =
        writerQueue_->repeat(kDrainInterval, [this, file = audioFile_] { drainInTime(*file); });
}

std::optional<std::filesystem::path> AudioRecorder::stopRecording() {
    if (state_.load(std::memory_order_relaxed) != State::recording)
        return std::nullopt;
    state_.store(State::stopping, std::memory_order_relaxed);
    writerTimer_.reset();
    state_.store(State::idle, std::memory_order_release);
    mayOweFinalDrain_ = true;
    writerQueue_->post([this, file = std::move(audioFile_)]() mutable {
        finalDrain(*file);
        // The last reference: the file is closed before anything else runs on this queue.
        file.reset();
    });
    recorderLogger_.info("Recording stopped: %s", fileURL_->filename().c_str());
    return fileURL_;
}

void AudioRecorder::waitForFinalDrain() {
    if (mayOweFinalDrain_)
        writerQueue_->postAndWait([] {});
    mayOweFinalDrain_ = false;
}

void AudioRecorder::writeSamples(const float* samples, std::int64_t count,
                                 std::int64_t channel) noexcept {
    if (isRecording())
        ring_.writeSamples(samples, count, channel);
    else
        ring_.passOver(channel);
}

void AudioRecorder::writeInterleavedSamples(const float* samples, std::int64_t frameCount,
                                            std::int64_t channelCount) noexcept {
    if (isRecording())
        ring_.writeInterleavedSamples(samples, frameCount * channelCount);
}

bool AudioRecorder::isRecording() const noexcept {
    return state_.load(std::memory_order_acquire) == State::recording;
}

double AudioRecorder::duration() const {
    return isRecording() ? (writerQueue_->now() - startInstant_).count() : 0.0;
}

void AudioRecorder::drainInTime(AudioFile& file) {
    Seconds start{};
    do {
        start = writerQueue_->now();
        drainToFile(file);
        // A write that took longer than the interval has held ticks up: they are made up for.
    } while (writerQueue_->now() - start >= kDrainInterval);
}

void AudioRecorder::drainToFile(AudioFile& file) {
    const std::int64_t frames = std::min(ring_.usedFrames(), kMaximumFramesPerDrain);
    if (frames < 1)
        return;
    const auto buffer = takeFrames(frames);
    if (!buffer)
        return; // the samples wait in the ring for the next tick
    if (const auto reason = written(file, *buffer))
        recorderLogger_.error("Write error: %s", reason->c_str());
}

void AudioRecorder::finalDrain(AudioFile& file) {
    const auto report = [this](const std::optional<std::string>& reason) {
        if (reason)
            recorderLogger_.error("Final drain write error: %s", reason->c_str());
    };
    if (const std::int64_t frames = ring_.usedFrames(); frames > 0) {
        const auto buffer = takeFrames(frames);
        report(buffer ? written(file, *buffer) : std::optional<std::string>(kNoMemory));
    }
    report(withoutMemoryAReason([&file] { return file.finish(); }));
}

std::optional<PCMBuffer> AudioRecorder::takeFrames(std::int64_t frames) {
    auto buffer = PCMBuffer::make(channels_, frames);
    if (!buffer)
        return std::nullopt;
    for (int channel = 0; channel < channels_; ++channel)
        ring_.copyChannel(channel, frames, buffer->channel(channel));
    // Before the write: what cannot be written is a gap, not an end.
    ring_.consume(frames);
    return buffer;
}

} // namespace orvanta
