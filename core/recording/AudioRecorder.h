#pragma once

#include "core/platform/Logger.h"
#include "core/platform/Platform.h"
#include "core/recording/PCMBuffer.h"
#include "core/recording/RecordingFormat.h"
#include "core/recording/SampleRing.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace orvanta {

/// Writes what an IO thread hands it into an audio file that the IO thread never touches: samples
/// go into a ring, and a queue of its own takes them out every 0.1 s. The ring holds 2.7 s of
/// stereo at 48 kHz, so a disk that stalls for less costs nothing; when it is full, whole blocks
/// are dropped.
///
/// Starting, stopping and the questions belong to one control thread at a time; the two write
/// operations belong to one IO thread.
class AudioRecorder {
public:
    /// `sampleRate` in Hz; `channels` above 0, samples per frame in the ring.
    AudioRecorder(double sampleRate, int channels, const Platform& platform);
    /// What was stopped is written to its end. A recording that still runs loses what is in the
    /// ring, and its file is finished.
    ~AudioRecorder();
    AudioRecorder(const AudioRecorder&) = delete;
    AudioRecorder& operator=(const AudioRecorder&) = delete;

    /// Begins a file of its own in `directory`, which is made if it is missing, named after the
    /// program and the time. Its path; none while a recording runs, or when the file cannot be
    /// made. Waits for the end of the file before, if that is not written yet.
    std::optional<std::filesystem::path> startRecording(const std::string& appName,
                                                        RecordingFormat format,
                                                        const std::filesystem::path& directory);

    /// Ends the recording and answers its file without waiting for it: up to a ring full of samples
    /// is still to be written. None when nothing is recorded.
    std::optional<std::filesystem::path> stopRecording();

    /// IO thread: one channel of a planar block, see `SampleRing::writeSamples`.
    void writeSamples(const float* samples, std::int64_t count, std::int64_t channel) noexcept;
    /// IO thread: a whole interleaved block. Its channels should be as many as the recorder's.
    void writeInterleavedSamples(const float* samples, std::int64_t frameCount,
                                 std::int64_t channelCount) noexcept;

    /// From any thread.
    [[nodiscard]] bool isRecording() const noexcept;
    /// Seconds since the start; 0 while nothing is recorded. Not moved by changes of the calendar.
    [[nodiscard]] double duration() const;

    /// Of the last start.
    [[nodiscard]] const std::optional<WallTime>& startTime() const noexcept { return startTime_; }

    /// Of the last start, also after the stop.
    [[nodiscard]] const std::optional<std::filesystem::path>& fileURL() const noexcept {
        return fileURL_;
    }

private:
    enum class State : std::int32_t { idle, recording, stopping };

    [[nodiscard]] std::unique_ptr<AudioFile> createFile(const std::filesystem::path& path,
                                                        RecordingFormat format);
    void startWriterTimer();
    void waitForFinalDrain();

    // These run on the writer queue.
    void drainInTime(AudioFile& file);
    void drainToFile(AudioFile& file);
    void finalDrain(AudioFile& file);
    /// Takes frames, of which there must be as many, out of the ring. None, and they stay there,
    /// where there is no memory for them.
    std::optional<PCMBuffer> takeFrames(std::int64_t frames);

    SampleRing ring_;
    const Logger recorderLogger_;
    AudioFileWriter& fileWriter_;
    const WallClock& wallClock_;
    const double sampleRate_;
    std::optional<WallTime> startTime_;
    Seconds startInstant_{}; ///< on the writer queue's clock
    std::optional<std::filesystem::path> fileURL_;
    std::shared_ptr<AudioFile> audioFile_;
    const int channels_;
    std::atomic<State> state_{State::idle};
    bool mayOweFinalDrain_ = false; ///< one was posted since the last start

    // The last members: a task of the queue uses the others, and the queue's end waits for it.
    const std::unique_ptr<SerialQueue> writerQueue_;
    std::unique_ptr<RepeatingTimer> writerTimer_;
};

} // namespace orvanta
