#pragma once

#include "core/platform/AudioFileWriter.h"
#include "platform/media/AACEncoder.h"
#include "platform/media/FragmentMuxer.h"
#include "platform/media/NewFile.h"
#include "platform/media/SampleTable.h"

#include <vector>

namespace orvanta::media {

/// An MPEG-4 audio file with AAC in it. While it grows it consists of fragments of half a second,
/// so whatever happens to the program, what came before can be played. Finished, it is an ordinary
/// file with one table of all samples, made in place: the samples stay where they are, the table
/// goes behind them, and last of all sixteen bytes turn the fragments into one box of data.
///
/// A fragment that finds no space is missing from the recording; what follows keeps its time. A
/// table that finds none leaves the file in fragments.
class M4AFile final : public AudioFile {
public:
    /// Null, and the reason in `outReason`, when such a file cannot be. Then none is left behind.
    static std::unique_ptr<M4AFile> create(const std::filesystem::path& path,
                                           const AudioFileSettings& settings,
                                           std::string& outReason);

    ~M4AFile() override;

    std::optional<std::string> write(std::span<const float* const> channels,
                                     std::size_t frames) override;

    std::optional<std::string> finish() override;

private:
    M4AFile(std::unique_ptr<AACEncoder> encoder, std::unique_ptr<FragmentMuxer> muxer,
            std::unique_ptr<NewFile> file, Bytes beginning);

    void take(AVPacket& packet);
    void endFragment();
    /// Turns the fragments into an ordinary file.
    std::optional<std::string> writeTable();
    /// The first of several failures is the one to be told.
    void keep(std::optional<std::string> reason);

    const std::unique_ptr<AACEncoder> encoder_;
    const std::unique_ptr<FragmentMuxer> muxer_;
    const std::unique_ptr<NewFile> file_;
    /// As the muxer made it.
    const Bytes beginning_;
    const AACEncoder::TakePacket take_;
    std::optional<std::string> failure_;
    bool isFinished_ = false;

    /// The fragment that is being filled: its time in frames and the sizes of its packets.
    std::int64_t fragmentStart_ = 0;
    std::int64_t fragmentEnd_ = 0;
    std::vector<std::uint32_t> packetBytes_;
    /// The fragments in the file.
    SampleTable table_;
};

} // namespace orvanta::media
