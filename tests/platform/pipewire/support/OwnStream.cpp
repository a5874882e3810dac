#include "tests/platform/pipewire/support/OwnStream.h"

#include <pipewire/pipewire.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace orvanta::test {

struct OwnStream::State {
    pw_thread_loop* loop = nullptr;
    pw_stream* stream = nullptr;
    pw_stream_events events{};

    ~State() {
        if (loop != nullptr)
            pw_thread_loop_stop(loop);
        if (stream != nullptr)
            pw_stream_destroy(stream);
        if (loop != nullptr)
            pw_thread_loop_destroy(loop);
    }

    static void process(void* data) {
        pw_stream* stream = static_cast<State*>(data)->stream;
        pw_buffer* buffer = pw_stream_dequeue_buffer(stream);
        if (buffer == nullptr)
            return;
        constexpr std::uint32_t stride = 2 * sizeof(float);
        spa_data& block = buffer->buffer->datas[0];
        std::uint32_t frames = block.maxsize / stride;
        if (buffer->requested != 0)
            frames = std::min(frames, static_cast<std::uint32_t>(buffer->requested));
        std::fill_n(static_cast<float*>(block.data), 2UL * frames, level);
        *block.chunk = {0, frames * stride, stride, 0};
        pw_stream_queue_buffer(stream, buffer);
    }
};

Properties OwnStream::ofProcess(pid_t owner) {
    return {{PW_KEY_CLIENT_API, "pipewire-pulse"}, {PW_KEY_APP_PROCESS_ID, std::to_string(owner)}};
}

OwnStream::OwnStream(const Properties& own, SoundFormat format)
    : state_(std::make_unique<State>()) {
    pw_init(nullptr, nullptr);
    state_->events.version = PW_VERSION_STREAM_EVENTS;
    state_->events.process = State::process;
    state_->loop = pw_thread_loop_new("own-stream", nullptr);
    pw_properties* properties =
        pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback",
                          PW_KEY_NODE_AUTOCONNECT, "true", nullptr);
    for (const auto& [key, value] : own)
        pw_properties_set(properties, key.c_str(), value.c_str());
    state_->stream = pw_stream_new_simple(pw_thread_loop_get_loop(state_->loop), "own-stream",
                                          properties, &state_->events, state_.get());
    if (state_->stream == nullptr)
        throw std::runtime_error("no server to play a stream on");

    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    std::array<const spa_pod*, 1> params{buildSoundFormat(builder, format)};
    constexpr auto flags =
        static_cast<pw_stream_flags>(PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS);
    if (pw_stream_connect(state_->stream, PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, params.data(),
                          params.size()) < 0)
        throw std::runtime_error("the server refuses a stream");
    pw_thread_loop_start(state_->loop);
}

OwnStream::~OwnStream() = default;

void OwnStream::setActive(bool isActive) {
    pw_thread_loop_lock(state_->loop);
    pw_stream_set_active(state_->stream, isActive);
    pw_thread_loop_unlock(state_->loop);
}

} // namespace orvanta::test
