#pragma once

#include "cli/Options.h"
#include "core/platform/Platform.h"

#include <memory>

namespace orvanta::cli {

/// One audio server with the process table and workspace that go with it.
class AudioSystem {
public:
    AudioSystem() = default;
    AudioSystem(const AudioSystem&) = delete;
    AudioSystem& operator=(const AudioSystem&) = delete;
    virtual ~AudioSystem() = default;

    [[nodiscard]] virtual Platform platform() = 0;
    /// Waits a moment for the server's first answer.
    [[nodiscard]] virtual bool isReachable() = 0;
};

std::unique_ptr<AudioSystem> openAudioSystem(Server server, SystemLog& log);

} // namespace orvanta::cli
