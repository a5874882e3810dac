#pragma once

#include <cstdint>
#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

/// Owners of what FFmpeg's libraries lend.
namespace orvanta::media {

struct FreeLibav {
    void operator()(AVCodecContext* context) const noexcept { avcodec_free_context(&context); }

    void operator()(AVFormatContext* context) const noexcept { avformat_free_context(context); }

    void operator()(AVFrame* frame) const noexcept { av_frame_free(&frame); }

    void operator()(AVPacket* packet) const noexcept { av_packet_free(&packet); }

    void operator()(std::uint8_t* memory) const noexcept { av_free(memory); }
};

template <class Object>
using LibavOwner = std::unique_ptr<Object, FreeLibav>;

/// What a negative result of a call says.
std::string libavErrorInWords(int error);

} // namespace orvanta::media
