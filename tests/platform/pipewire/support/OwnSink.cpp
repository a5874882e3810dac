#include "tests/platform/pipewire/support/OwnSink.h"

#include "tests/platform/pipewire/support/LoopedStream.h"

#include <vector>

namespace orvanta::test {

namespace {

void swallow(pw_stream* stream) {
    if (pw_buffer* buffer = pw_stream_dequeue_buffer(stream))
        pw_stream_queue_buffer(stream, buffer);
}

Properties withThoseOfADevice(Properties own) {
    own.insert({{PW_KEY_MEDIA_TYPE, "Audio"}, {PW_KEY_MEDIA_CLASS, "Audio/Sink"}});
    return own;
}

} // namespace

OwnSink::OwnSink(const Properties& properties, SoundFormat format)
    : stream_(std::make_unique<LoopedStream>(
          LoopedStream::Settings{.name = "own-sink",
                                 .direction = PW_DIRECTION_INPUT,
                                 .flags = PW_STREAM_FLAG_MAP_BUFFERS,
                                 .properties = withThoseOfADevice(properties),
                                 .format = format,
                                 .process = swallow})) {}

OwnSink::~OwnSink() = default;

void OwnSink::update(const Properties& properties) {
    std::vector<spa_dict_item> items;
    for (const auto& [key, value] : properties)
        items.push_back({key.c_str(), value.c_str()});
    const spa_dict dictionary{0, static_cast<std::uint32_t>(items.size()), items.data()};
    stream_->change([&](pw_stream* stream) { pw_stream_update_properties(stream, &dictionary); });
}

} // namespace orvanta::test
