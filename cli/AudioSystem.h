#pragma once

#include "cli/Options.h"
#include "cli/PrintingFileViewer.h"
#include "core/platform/Platform.h"
#include "core/platform/UnavailableHotKeyCenter.h"
#include "platform/linux/desktop/UserFolders.h"
#include "platform/media/MediaFileWriter.h"
#include "platform/memory/InMemoryUserDefaults.h"
#include "platform/runloop/InProcessNotificationCenter.h"
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

    /// With defaults that end with this object.
    [[nodiscard]] Platform platform() { return platform(userDefaults_); }

    [[nodiscard]] virtual Platform platform(UserDefaults& userDefaults) = 0;
    /// Waits a moment for the server's first answer.
    [[nodiscard]] virtual bool isReachable() = 0;

protected:
    [[nodiscard]] Platform platformWith(AudioHardware& hardware, ProcessTable& processes,
                                        Workspace& workspace, UserDefaults& userDefaults) {
        return {.audioHardware = hardware,
                .processTable = processes,
                .workspace = workspace,
                .systemLog = log_,
                .mainRunLoop = mainRunLoop_,
                .serialQueues = serialQueues_,
                .wallClock = wallClock_,
                .audioFileWriter = audioFiles_,
                .userDefaults = userDefaults,
                .hotKeyCenter = hotKeyCenter_,
                .notificationCenter = notificationCenter_,
                .fileViewer = fileViewer_,
                .userFolders = userFolders_};
    }

private:
    SystemLog& log_;
    WorkerRunLoop mainRunLoop_;
    ThreadSerialQueues serialQueues_;
    SystemWallClock wallClock_;
    MediaFileWriter audioFiles_;
    InMemoryUserDefaults userDefaults_;
    UnavailableHotKeyCenter hotKeyCenter_;
    InProcessNotificationCenter notificationCenter_;
    PrintingFileViewer fileViewer_;
    const UserFolders userFolders_ = userFoldersOf(DesktopFolders::fromEnvironment());
};

std::unique_ptr<AudioSystem> openAudioSystem(Server server, SystemLog& log);

} // namespace orvanta::cli
