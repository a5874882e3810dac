#include "platform/media/AACEncoder.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace orvanta::media {
namespace {

/// Far above any sane recording, and far below where this encoder's packets outgrow what the
/// format allows (about 250) or its search for quantisers goes on for ever (about 1e6).
constexpr float kLargestMagnitude = 16.0F;

float bearable(float sample) noexcept {
    return std::isfinite(sample) ? std::clamp(sample, -kLargestMagnitude, kLargestMagnitude) : 0.0F;
}

/// 0 for a rate that AAC does not know.
int knownRate(const AVCodec& codec, double rate) noexcept {
    for (const int* known = codec.supported_samplerates; *known != 0; ++known)
        if (*known == rate)
            return *known;
    return 0;
}

} // namespace

std::unique_ptr<AACEncoder> AACEncoder::open(const AudioFileSettings& settings,
                                             std::string& outReason) {
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (codec == nullptr) {
        outReason = "There is no AAC encoder";
        return nullptr;
    }
    const int rate = knownRate(*codec, settings.sampleRate);
    if (rate == 0) {
        outReason = fmt::format("AAC has no sample rate of {} Hz", settings.sampleRate);
        return nullptr;
    }
    LibavOwner<AVCodecContext> context(avcodec_alloc_context3(codec));
    if (!context)
        throw std::bad_alloc();
    context->sample_rate = rate;
    context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->time_base = {1, rate};
    context->bit_rate = settings.bitRate;
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    av_channel_layout_default(&context->ch_layout, settings.channels);
    if (const int error = avcodec_open2(context.get(), codec, nullptr); error < 0) {
        outReason = fmt::format("AAC cannot hold {} channels at {} bit/s: {}", settings.channels,
                                settings.bitRate, libavErrorInWords(error));
        return nullptr;
    }
    return std::unique_ptr<AACEncoder>(new AACEncoder(std::move(context)));
}

AACEncoder::AACEncoder(LibavOwner<AVCodecContext> context)
    : context_(std::move(context)), block_(av_frame_alloc()), packet_(av_packet_alloc()) {
    if (!block_ || !packet_)
        throw std::bad_alloc();
}

std::optional<std::string> AACEncoder::encode(std::span<const float* const> channels,
                                              std::size_t frames, const TakePacket& take) {
    const auto blockFrames = static_cast<std::size_t>(context_->frame_size);
    std::optional<std::string> failure;
    for (std::size_t done = 0; done < frames;) {
        if (filled_ == 0)
            startBlock();
        const std::size_t count = std::min(frames - done, blockFrames - filled_);
        for (std::size_t channel = 0; channel < channels.size(); ++channel)
            std::transform(channels[channel] + done, channels[channel] + done + count,
                           reinterpret_cast<float*>(block_->extended_data[channel]) + filled_,
                           bearable);
        filled_ += count;
        done += count;
        if (filled_ < blockFrames)
            break;
        if (auto reason = sendBlock(take); reason && !failure)
            failure = std::move(reason);
    }
    return failure;
}

std::optional<std::string> AACEncoder::finish(const TakePacket& take) {
    auto failure = filled_ > 0 ? sendBlock(take) : std::nullopt;
    if (auto reason = send(nullptr, take); reason && !failure)
        failure = std::move(reason);
    return failure;
}

void AACEncoder::startBlock() {
    // The encoder may still hold the buffers of the last block.
    av_frame_unref(block_.get());
    block_->nb_samples = context_->frame_size;
    block_->format = context_->sample_fmt;
    if (av_channel_layout_copy(&block_->ch_layout, &context_->ch_layout) < 0 ||
        av_frame_get_buffer(block_.get(), 0) < 0)
        throw std::bad_alloc();
}

std::optional<std::string> AACEncoder::sendBlock(const TakePacket& take) {
    block_->nb_samples = static_cast<int>(filled_);
    block_->pts = position_;
    position_ += static_cast<std::int64_t>(filled_);
    filled_ = 0;
    return send(block_.get(), take);
}

std::optional<std::string> AACEncoder::send(const AVFrame* blockOrEnd, const TakePacket& take) {
    int result = avcodec_send_frame(context_.get(), blockOrEnd);
    while (result >= 0) {
        result = avcodec_receive_packet(context_.get(), packet_.get());
        if (result >= 0)
            take(*packet_);
        av_packet_unref(packet_.get());
    }
    const bool isAllThereIs = result == AVERROR(EAGAIN) || result == AVERROR_EOF;
    if (isAllThereIs)
        return std::nullopt;
    return "The AAC encoder failed: " + libavErrorInWords(result);
}

} // namespace orvanta::media
