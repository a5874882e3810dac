#include "tests/platform/pipewire/support/OwnStream.h"

#include "tests/platform/pipewire/support/LoopedStream.h"

#include <algorithm>

namespace orvanta::test {

namespace {

void fill(pw_stream* stream) {
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream);
    if (buffer == nullptr)
        return;
    constexpr std::uint32_t stride = 2 * sizeof(float);
    spa_data& block = buffer->buffer->datas[0];
    std::uint32_t frames = block.maxsize / stride;
    if (buffer->requested != 0)
        frames = std::min(frames, static_cast<std::uint32_t>(buffer->requested));
    std::fill_n(static_cast<float*>(block.data), 2UL * frames, OwnStream::level);
    *block.chunk = {0, frames * stride, stride, 0};
    pw_stream_queue_buffer(stream, buffer);
}

Properties withThoseOfAPlayer(Properties own) {
    own.insert({{PW_KEY_MEDIA_TYPE, "Audio"},
                {PW_KEY_MEDIA_CATEGORY, "Playback"},
                {PW_KEY_NODE_AUTOCONNECT, "true"}});
    return own;
}

} // namespace

Properties OwnStream::ofProcess(pid_t owner) {
    return {{PW_KEY_CLIENT_API, "pipewire-pulse"}, {PW_KEY_APP_PROCESS_ID, std::to_string(owner)}};
}

OwnStream::OwnStream(const Properties& properties, SoundFormat format)
    : stream_(std::make_unique<LoopedStream>(LoopedStream::Settings{
          .name = "own-stream",
          .direction = PW_DIRECTION_OUTPUT,
          .flags =
              static_cast<pw_stream_flags>(PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS),
          .properties = withThoseOfAPlayer(properties),
          .format = format,
          .process = fill})) {}

OwnStream::~OwnStream() = default;

void OwnStream::setActive(bool isActive) {
    stream_->change([&](pw_stream* stream) { pw_stream_set_active(stream, isActive); });
}

} // namespace orvanta::test
