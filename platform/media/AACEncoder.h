#pragma once

#include "core/platform/AudioFileWriter.h"
#include "platform/media/Libav.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace orvanta::media {

/// Turns samples into AAC packets (low complexity profile). A packet's time stamp counts frames of
/// the recording; the first one starts before 0, for the decoder has to be primed.
class AACEncoder {
public:
    /// May move data out of the packet; gets packets in order.
    using TakePacket = std::function<void(AVPacket& packet)>;

    /// Null, and the reason in `outReason`, when AAC cannot be made of this.
    static std::unique_ptr<AACEncoder> open(const AudioFileSettings& settings,
                                            std::string& outReason);

    /// What a muxer wants to know.
    [[nodiscard]] const AVCodecContext& context() const noexcept { return *context_; }

    /// Takes `frames` samples of each channel, one pointer a channel. Samples that are no finite
    /// number count as 0, and all are held within ±16 (24 dB above full scale). On failure the
    /// reason; the packet that could not be made is left out.
    std::optional<std::string> encode(std::span<const float* const> channels, std::size_t frames,
                                      const TakePacket& take);

    /// The last packets; they end with the last frame that was taken. Nothing can follow.
    std::optional<std::string> finish(const TakePacket& take);

private:
    explicit AACEncoder(LibavOwner<AVCodecContext> context);

    void startBlock();
    /// Encodes what the block holds and passes on what comes out.
    std::optional<std::string> sendBlock(const TakePacket& take);
    std::optional<std::string> send(const AVFrame* blockOrEnd, const TakePacket& take);

    LibavOwner<AVCodecContext> context_;
    /// The samples that do not fill a packet yet.
    LibavOwner<AVFrame> block_;
    std::size_t filled_ = 0;
    /// Frames of the recording before the block.
    std::int64_t position_ = 0;
    LibavOwner<AVPacket> packet_;
};

} // namespace orvanta::media
