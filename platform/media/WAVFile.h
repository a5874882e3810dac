#pragma once

#include "core/platform/AudioFileWriter.h"
#include "platform/media/NewFile.h"

#include <sndfile.h>

#include <vector>

namespace orvanta::media {

/// A WAV file of 32-bit float samples, every one as it was handed over, bit by bit. Its header
/// tells the true length after every write: of a RIFF file up to 4 GiB, of an RF64 file from there
/// on. A write that finds no space leaves out its samples, or the rest of them, and no more.
class WAVFile final : public AudioFile {
public:
    /// Null, and the reason in `outReason`, when such a file cannot be. Then none is left behind.
    static std::unique_ptr<WAVFile> create(const std::filesystem::path& path,
                                           const AudioFileSettings& settings,
                                           std::string& outReason);

    ~WAVFile() override;

    std::optional<std::string> write(std::span<const float* const> channels,
                                     std::size_t frames) override;

    std::optional<std::string> finish() override;

private:
    /// Where libsndfile reads and writes next, and what kept it from writing.
    struct Storage {
        std::unique_ptr<NewFile> file;
        std::int64_t position = 0;
        std::optional<std::string> failure;

        static SF_VIRTUAL_IO calls();
    };

    using SoundFile = std::unique_ptr<SNDFILE, decltype(&sf_close)>;

    explicit WAVFile(std::unique_ptr<NewFile> file);

    bool begin(SF_INFO info, std::string& outReason);
    /// Whether the file took them all.
    bool writeBlock(std::span<const float* const> channels, std::size_t first, std::size_t frames);

    Storage storage_;
    SoundFile sound_;
    std::vector<float> interleaved_;
};

} // namespace orvanta::media
