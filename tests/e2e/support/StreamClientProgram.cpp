// A program that plays the known noise signal and is told what to do on standard input:
//   open [TARGET]   opens a stream, which goes on in the signal where the last one ended
//   close           closes it
//   reconnect       closes it and connects to the server that runs now
//   pause, resume   the stream stays open
//   quit
// Each line is answered with "ok". Options: --rate HZ, --channels 1|2|6, --seed N, --name TEXT.

#include "tests/e2e/support/NoiseSignal.h"

#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace orvanta::test {

namespace {

struct Options {
    std::uint32_t rate = 48000;
    std::uint32_t channels = 2;
    std::uint64_t seed = 1;
    std::string name = "e2e-player";
};

Options parse(int count, char** words) {
    Options options;
    for (int index = 1; index + 1 < count; index += 2) {
        const std::string_view option = words[index];
        const char* const value = words[index + 1];
        if (option == "--rate")
            options.rate = static_cast<std::uint32_t>(std::atoi(value));
        else if (option == "--channels")
            options.channels = static_cast<std::uint32_t>(std::atoi(value));
        else if (option == "--seed")
            options.seed = static_cast<std::uint64_t>(std::atoll(value));
        else if (option == "--name")
            options.name = value;
    }
    return options;
}

spa_audio_info_raw formatOf(const Options& options) {
    spa_audio_info_raw format = {};
    format.format = SPA_AUDIO_FORMAT_F32;
    format.rate = options.rate;
    format.channels = options.channels;
    constexpr std::array<std::uint32_t, 6> surround = {SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR,
                                                       SPA_AUDIO_CHANNEL_FC, SPA_AUDIO_CHANNEL_LFE,
                                                       SPA_AUDIO_CHANNEL_SL, SPA_AUDIO_CHANNEL_SR};
    if (options.channels == 1)
        format.position[0] = SPA_AUDIO_CHANNEL_MONO;
    else
        for (std::size_t index = 0; index < options.channels; ++index)
            format.position[index] = surround.at(index);
    return format;
}

class Player {
public:
    Player(pw_main_loop* loop, Options options)
        : loop_(loop), options_(std::move(options)), noise_(options_.seed) {
        context_ =
            pw_context_new(pw_main_loop_get_loop(loop_),
                           pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
        connect();
    }

    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    ~Player() {
        close();
        if (core_ != nullptr)
            pw_core_disconnect(core_);
        pw_context_destroy(context_);
    }

    [[nodiscard]] bool isConnected() const { return core_ != nullptr; }

    void obey(const std::string& line) {
        const std::string word = line.substr(0, line.find(' '));
        if (word == "open")
            open(line.size() > 5 ? line.substr(5) : "");
        else if (word == "close")
            close();
        else if (word == "reconnect")
            reconnect();
        else if (word == "pause" || word == "resume")
            pw_stream_set_active(stream_, word == "resume");
        else if (word == "quit")
            pw_main_loop_quit(loop_);
        std::puts("ok");
        std::fflush(stdout);
    }

private:
    void connect() {
        core_ = pw_context_connect(
            context_, pw_properties_new(PW_KEY_APP_NAME, options_.name.c_str(), nullptr), 0);
    }

    void reconnect() {
        close();
        if (core_ != nullptr)
            pw_core_disconnect(core_);
        connect();
    }

    void open(const std::string& target) {
        static const pw_stream_events events = [] {
            pw_stream_events table = {};
            table.version = PW_VERSION_STREAM_EVENTS;
            table.process = [](void* data) {
                static_cast<Player*>(data)->process();
            };
            return table;
        }();
        pw_properties* const properties = pw_properties_new(
            PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback", PW_KEY_MEDIA_ROLE,
            "Music", PW_KEY_NODE_NAME, options_.name.c_str(), nullptr);
        if (!target.empty())
            pw_properties_set(properties, PW_KEY_TARGET_OBJECT, target.c_str());
        stream_ = pw_stream_new(core_, options_.name.c_str(), properties);
        listener_ = {};
        pw_stream_add_listener(stream_, &listener_, &events, this);

        std::array<std::uint8_t, 1024> memory = {};
        spa_pod_builder builder = {};
        spa_pod_builder_init(&builder, memory.data(), static_cast<std::uint32_t>(memory.size()));
        spa_audio_info_raw format = formatOf(options_);
        const spa_pod* parameters[] = {
            spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format)};
        pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                          static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT |
                                                       PW_STREAM_FLAG_MAP_BUFFERS |
                                                       PW_STREAM_FLAG_RT_PROCESS),
                          parameters, 1);
    }

    void close() {
        if (stream_ == nullptr)
            return;
        pw_stream_destroy(stream_);
        stream_ = nullptr;
    }

    void process() {
        pw_buffer* const buffer = pw_stream_dequeue_buffer(stream_);
        if (buffer == nullptr)
            return;
        spa_data& data = buffer->buffer->datas[0];
        const std::size_t stride = options_.channels * sizeof(float);
        std::size_t frames = data.maxsize / stride;
        if (buffer->requested != 0)
            frames = std::min(frames, static_cast<std::size_t>(buffer->requested));
        auto* samples = static_cast<float*>(data.data);
        for (std::size_t frame = 0; frame < frames; ++frame, ++position_)
            for (std::uint32_t channel = 0; channel < options_.channels; ++channel)
                *samples++ = noise_.sample(channel, position_);
        data.chunk->offset = 0;
        data.chunk->stride = static_cast<std::int32_t>(stride);
        data.chunk->size = static_cast<std::uint32_t>(frames * stride);
        pw_stream_queue_buffer(stream_, buffer);
    }

    pw_main_loop* loop_;
    Options options_;
    NoiseSignal noise_;
    pw_context* context_ = nullptr;
    pw_core* core_ = nullptr;
    pw_stream* stream_ = nullptr;
    spa_hook listener_ = {};
    std::uint64_t position_ = 0;
};

/// Reads commands as they come and hands on whole lines.
class Commands {
public:
    Commands(pw_main_loop* loop, Player& player) : loop_(loop), player_(player) {
        pw_loop_add_io(
            pw_main_loop_get_loop(loop), STDIN_FILENO, SPA_IO_IN | SPA_IO_HUP, false,
            [](void* data, int, std::uint32_t) { static_cast<Commands*>(data)->read(); }, this);
    }

private:
    void read() {
        char bytes[256];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) {
            pw_main_loop_quit(loop_);
            return;
        }
        text_.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end = text_.find('\n'); end != std::string::npos; end = text_.find('\n')) {
            player_.obey(text_.substr(0, end));
            text_.erase(0, end + 1);
        }
    }

    pw_main_loop* loop_;
    Player& player_;
    std::string text_;
};

int run(int count, char** words) {
    pw_init(&count, &words);
    pw_main_loop* const loop = pw_main_loop_new(nullptr);
    {
        Player player(loop, parse(count, words));
        if (!player.isConnected())
            return 1;
        const Commands commands(loop, player);
        pw_main_loop_run(loop);
    }
    pw_main_loop_destroy(loop);
    pw_deinit();
    return 0;
}

} // namespace

} // namespace orvanta::test

int main(int count, char** words) {
    return orvanta::test::run(count, words);
}
