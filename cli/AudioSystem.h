#pragma once

#include "cli/Options.h"
#include "core/platform/Platform.h"
#include "platform/media/MediaFileWriter.h"
#include "platform/runloop/SystemWallClock.h"
#include "platform/runloop/ThreadSerialQueue.h"
#include "platform/runloop/WorkerRunLoop.h"

#include <memory>

namespace orvanta::cli {

/// One audio server with the process table and workspace that go with it, and all else the core
/// asks of the world.
class AudioSystem {
public:
    /// `log` must outlive it.
    explicit AudioSystem(SystemLog& log) : log_(log) { mainRunLoop_.start("main"); }

    AudioSystem(const AudioSystem&) = delete;
    AudioSystem& operator=(const AudioSystem&) = delete;
    virtual ~AudioSystem() = default;

    [[nodiscard]] virtual Platform platform() = 0;
    /// Waits a moment for the server's first answer.
    [[nodiscard]] virtual bool isReachable() = 0;

protected:
    [[nodiscard]] Platform platformWith(AudioHardware& hardware, ProcessTable& processes,
                                        Workspace& workspace) {
        return {hardware,     processes,     workspace,  log_,
                mainRunLoop_, serialQueues_, wallClock_, audioFiles_};
    }

private:
    SystemLog& log_;
    WorkerRunLoop mainRunLoop_;
    ThreadSerialQueues serialQueues_;
    SystemWallClock wallClock_;
    MediaFileWriter audioFiles_;
};

std::unique_ptr<AudioSystem> openAudioSystem(Server server, SystemLog& log);

} // namespace orvanta::cli
