#include "tests/platform/pipewire/support/LoopedStream.h"

#include <array>
#include <cstdint>
#include <stdexcept>

namespace orvanta::test {

LoopedStream::LoopedStream(const Settings& settings) : process_(settings.process) {
    pw_init(nullptr, nullptr);
    events_.version = PW_VERSION_STREAM_EVENTS;
    events_.process = [](void* data) {
        const auto& self = *static_cast<LoopedStream*>(data);
        self.process_(self.stream_.get());
    };
    const char* const name = settings.name.c_str();
    loop_.reset(pw_thread_loop_new(name, nullptr));
    pw_properties* properties = pw_properties_new(nullptr, nullptr);
    for (const auto& [key, value] : settings.properties)
        pw_properties_set(properties, key.c_str(), value.c_str());
    stream_.reset(pw_stream_new_simple(pw_thread_loop_get_loop(loop_.get()), name, properties,
                                       &events_, this));
    if (!stream_)
        throw std::runtime_error("no server for " + settings.name);

    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    std::array<const spa_pod*, 1> params{buildSoundFormat(builder, settings.format)};
    if (pw_stream_connect(stream_.get(), settings.direction, PW_ID_ANY, settings.flags,
                          params.data(), params.size()) < 0)
        throw std::runtime_error("the server refuses " + settings.name);
    pw_thread_loop_start(loop_.get());
}

LoopedStream::~LoopedStream() {
    pw_thread_loop_stop(loop_.get());
}

} // namespace orvanta::test
