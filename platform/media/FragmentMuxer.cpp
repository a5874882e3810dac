#include "platform/media/FragmentMuxer.h"

#include <new>
#include <utility>

extern "C" {
#include <libavutil/dict.h>
}

namespace orvanta::media {
namespace {

/// The muxer's flags: a fragment ends where we say so; the beginning holds no samples and stands
/// before the first one; offsets count from their fragment, so that it can stand anywhere; nothing
/// is kept for an index at the end.
constexpr const char* kFragmented = "frag_custom+empty_moov+default_base_moof+skip_trailer";

/// Options of the muxer for as long as it looks at them.
class Options {
public:
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;

    ~Options() { av_dict_free(&options_); }

    void set(const char* name, const char* value) { av_dict_set(&options_, name, value, 0); }

    void set(const char* name, std::int64_t value) { av_dict_set_int(&options_, name, value, 0); }

    [[nodiscard]] AVDictionary** get() noexcept { return &options_; }

private:
    AVDictionary* options_ = nullptr;
};

int writeBeginning(AVFormatContext& context, int rate) {
    Options options;
    options.set("movflags", kFragmented);
    // Durations of the whole count frames as well, not milliseconds.
    options.set("movie_timescale", rate);
    return avformat_write_header(&context, options.get());
}

} // namespace

std::unique_ptr<FragmentMuxer> FragmentMuxer::open(const AVCodecContext& encoder,
                                                   std::string& outReason) {
    AVFormatContext* allocated = nullptr;
    int result = avformat_alloc_output_context2(&allocated, nullptr, "ipod", nullptr);
    LibavOwner<AVFormatContext> context(allocated);
    AVStream* stream = context ? avformat_new_stream(context.get(), nullptr) : nullptr;
    if (stream == nullptr && result >= 0)
        result = AVERROR(ENOMEM);
    if (stream != nullptr) {
        std::unique_ptr<FragmentMuxer> muxer(new FragmentMuxer(std::move(context)));
        stream->time_base = encoder.time_base;
        result = avcodec_parameters_from_context(stream->codecpar, &encoder);
        if (result >= 0)
            result = writeBeginning(*muxer->context_, encoder.sample_rate);
        if (result >= 0)
            return muxer;
    }
    outReason = "There is no muxer for MPEG-4 audio: " + libavErrorInWords(result);
    return nullptr;
}

FragmentMuxer::FragmentMuxer(LibavOwner<AVFormatContext> context) : context_(std::move(context)) {
    // No name and version of the library in the file.
    context_->flags |= AVFMT_FLAG_BITEXACT;
    openOutput();
}

FragmentMuxer::~FragmentMuxer() {
    std::size_t ignored = 0;
    closeOutput(ignored);
}

std::optional<std::string> FragmentMuxer::add(AVPacket& packet) {
    packet.stream_index = 0;
    if (const int error = av_write_frame(context_.get(), &packet); error < 0)
        return "The MPEG-4 muxer refused a packet: " + libavErrorInWords(error);
    return std::nullopt;
}

Bytes FragmentMuxer::takeFragment() {
    // Without a packet it means: end the fragment. In memory it has only memory to fail at.
    if (av_write_frame(context_.get(), nullptr) < 0)
        throw std::bad_alloc();
    return takeOutput();
}

void FragmentMuxer::openOutput() {
    if (avio_open_dyn_buf(&context_->pb) < 0)
        throw std::bad_alloc();
}

Bytes FragmentMuxer::takeOutput() {
    std::size_t size = 0;
    const auto output = closeOutput(size);
    openOutput();
    const auto bytes = std::as_bytes(std::span(output.get(), size));
    return {bytes.begin(), bytes.end()};
}

LibavOwner<std::uint8_t> FragmentMuxer::closeOutput(std::size_t& outSize) noexcept {
    std::uint8_t* output = nullptr;
    outSize = static_cast<std::size_t>(avio_close_dyn_buf(context_->pb, &output));
    context_->pb = nullptr;
    return LibavOwner<std::uint8_t>(output);
}

} // namespace orvanta::media
