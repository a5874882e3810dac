#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace orvanta {

/// What a file is to hold, and how.
struct AudioFileSettings {
    enum class Coding {
        floatWAV, ///< 32-bit float, little endian, interleaved, in a WAV file
        aacMPEG4, ///< AAC in an MPEG-4 file
    };

    Coding coding = Coding::floatWAV;
    double sampleRate = 48000.0; ///< Hz
    int channels = 2;
    int bitRate = 0; ///< bit/s of a compressed coding, 0 for others
};

/// A file that is being written. What was written stays readable although the program should die.
/// A file that was not finished is when it is destroyed.
class AudioFile {
public:
    AudioFile() = default;
    AudioFile(const AudioFile&) = delete;
    AudioFile& operator=(const AudioFile&) = delete;
    virtual ~AudioFile() = default;

    /// Appends `frames` samples of each channel, one pointer a channel. On failure the reason, in
    /// words: what found no place is missing from the file, always whole frames, and what comes
    /// later may find one. A coding that gathers samples tells of those it lost with the call that
    /// could not write them, which may be a later one than the one that brought them.
    virtual std::optional<std::string> write(std::span<const float* const> channels,
                                             std::size_t frames) = 0;

    /// Writes what was held back and completes the file. On failure the reason, in words; the file
    /// is readable nevertheless. Nothing follows.
    virtual std::optional<std::string> finish() = 0;
};

/// Makes audio files. Never on an IO thread.
class AudioFileWriter {
public:
    AudioFileWriter() = default;
    AudioFileWriter(const AudioFileWriter&) = delete;
    AudioFileWriter& operator=(const AudioFileWriter&) = delete;
    virtual ~AudioFileWriter() = default;

    /// Creates a file that must not exist yet. On failure null, and the reason in `outReason`; then
    /// there is no new file.
    virtual std::unique_ptr<AudioFile> create(const std::filesystem::path& path,
                                              const AudioFileSettings& settings,
                                              std::string& outReason) = 0;
};

} // namespace orvanta
