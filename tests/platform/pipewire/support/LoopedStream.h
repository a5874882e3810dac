#pragma once

#include "tests/e2e/support/AudioGraph.h"
#include "tests/platform/pipewire/support/SoundFormat.h"

#include <pipewire/pipewire.h>

#include <memory>
#include <string>

namespace orvanta::test {

/// A stream of this very process, on a connection and a thread of its own, as long as it lives.
class LoopedStream {
public:
    struct Settings {
        std::string name;
        pw_direction direction = PW_DIRECTION_OUTPUT;
        pw_stream_flags flags = PW_STREAM_FLAG_NONE;
        Properties properties;
        SoundFormat format = SoundFormat::raw;
        /// Called for each cycle.
        void (*process)(pw_stream* stream) = nullptr;
    };

    /// Connects to the server that the environment names; throws std::runtime_error.
    explicit LoopedStream(const Settings& settings);
    LoopedStream(const LoopedStream&) = delete;
    LoopedStream& operator=(const LoopedStream&) = delete;
    ~LoopedStream();

    /// Does something with the stream while its thread waits.
    template <class Change>
    void change(const Change& change) {
        pw_thread_loop_lock(loop_.get());
        change(stream_.get());
        pw_thread_loop_unlock(loop_.get());
    }

private:
    struct Destroy {
        void operator()(pw_thread_loop* loop) const { pw_thread_loop_destroy(loop); }

        void operator()(pw_stream* stream) const { pw_stream_destroy(stream); }
    };

    void (*process_)(pw_stream* stream);
    pw_stream_events events_{};
    std::unique_ptr<pw_thread_loop, Destroy> loop_;
    std::unique_ptr<pw_stream, Destroy> stream_;
};

} // namespace orvanta::test
