#pragma once

#include "tests/e2e/support/AudioGraph.h"
#include "tests/platform/pipewire/support/SoundFormat.h"

#include <memory>
#include <sys/types.h>

namespace orvanta::test {

class LoopedStream;

/// A stream that this very process plays, through a connection of its own: a steady 0.25 on both
/// channels. So a test can have one process whose streams come and go, also over the death of the
/// server.
class OwnStream {
public:
    static constexpr float level = 0.25F;

    /// Connects to the server that the environment names; throws std::runtime_error.
    OwnStream() : OwnStream(Properties()) {}

    /// With these properties besides, of the stream and of its client.
    explicit OwnStream(const Properties& properties, SoundFormat format = SoundFormat::raw);

    /// What makes a stream another process's: it comes through the bridge, as the words are.
    static Properties ofProcess(pid_t owner);

    OwnStream(const OwnStream&) = delete;
    OwnStream& operator=(const OwnStream&) = delete;
    ~OwnStream();

    void pause() { setActive(false); }

    void resume() { setActive(true); }

private:
    void setActive(bool isActive);

    std::unique_ptr<LoopedStream> stream_;
};

} // namespace orvanta::test
