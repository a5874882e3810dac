#include "tests/platform/pipewire/support/OwnSink.h"

#include <pipewire/pipewire.h>

#include <array>
#include <stdexcept>
#include <vector>

namespace orvanta::test {

struct OwnSink::State {
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
        if (pw_buffer* buffer = pw_stream_dequeue_buffer(stream))
            pw_stream_queue_buffer(stream, buffer);
    }
};

OwnSink::OwnSink(const Properties& own, SoundFormat format) : state_(std::make_unique<State>()) {
    pw_init(nullptr, nullptr);
    state_->events.version = PW_VERSION_STREAM_EVENTS;
    state_->events.process = State::process;
    state_->loop = pw_thread_loop_new("own-sink", nullptr);
    pw_properties* properties =
        pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CLASS, "Audio/Sink", nullptr);
    for (const auto& [key, value] : own)
        pw_properties_set(properties, key.c_str(), value.c_str());
    state_->stream = pw_stream_new_simple(pw_thread_loop_get_loop(state_->loop), "own-sink",
                                          properties, &state_->events, state_.get());
    if (state_->stream == nullptr)
        throw std::runtime_error("no server to offer a device to");

    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    std::array<const spa_pod*, 1> params{buildSoundFormat(builder, format)};
    if (pw_stream_connect(state_->stream, PW_DIRECTION_INPUT, PW_ID_ANY, PW_STREAM_FLAG_MAP_BUFFERS,
                          params.data(), params.size()) < 0)
        throw std::runtime_error("the server refuses a device");
    pw_thread_loop_start(state_->loop);
}

OwnSink::~OwnSink() = default;

void OwnSink::update(const Properties& properties) {
    std::vector<spa_dict_item> items;
    for (const auto& [key, value] : properties)
        items.push_back({key.c_str(), value.c_str()});
    const spa_dict dictionary{0, static_cast<std::uint32_t>(items.size()), items.data()};
    pw_thread_loop_lock(state_->loop);
    pw_stream_update_properties(state_->stream, &dictionary);
    pw_thread_loop_unlock(state_->loop);
}

} // namespace orvanta::test
