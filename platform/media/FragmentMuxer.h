#pragma once

#include "platform/media/Bytes.h"
#include "platform/media/Libav.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace orvanta::media {

/// Makes the pieces of an MPEG-4 audio file whose samples come in fragments, each with a table of
/// its own, so that the file can be read up to its last whole fragment. Works in memory: what
/// happens to the pieces is the caller's business.
class FragmentMuxer {
public:
    /// Null, and the reason in `outReason`, when libavformat refuses.
    static std::unique_ptr<FragmentMuxer> open(const AVCodecContext& encoder,
                                               std::string& outReason);

    FragmentMuxer(const FragmentMuxer&) = delete;
    FragmentMuxer& operator=(const FragmentMuxer&) = delete;
    ~FragmentMuxer();

    /// What the file begins with: the boxes "ftyp" and "moov". To be called once, first.
    [[nodiscard]] Bytes takeBeginning() { return takeOutput(); }

    /// Puts a packet into the next fragment. On failure the reason, and it is left out.
    std::optional<std::string> add(AVPacket& packet);

    /// The boxes "moof" and "mdat" of the packets since the last fragment. Empty when there are
    /// none.
    [[nodiscard]] Bytes takeFragment();

private:
    explicit FragmentMuxer(LibavOwner<AVFormatContext> context);

    void openOutput();
    /// What has been written since the last time.
    Bytes takeOutput();
    /// Returns the bytes and their number; there is no output to write to afterwards.
    LibavOwner<std::uint8_t> closeOutput(std::size_t& outSize) noexcept;

    LibavOwner<AVFormatContext> context_;
};

} // namespace orvanta::media
