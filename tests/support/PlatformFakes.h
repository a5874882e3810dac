#pragma once

#include "core/platform/Platform.h"
#include "platform/runloop/InProcessNotificationCenter.h"
#include "platform/runloop/VirtualRunLoop.h"
#include "platform/runloop/VirtualSerialQueue.h"
#include "tests/support/MemoryAudioFiles.h"
#include "tests/support/MemoryUserDefaults.h"
#include "tests/support/RecordingFileViewer.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/ScriptedHotKeyCenter.h"
#include "tests/support/ScriptedProcesses.h"
#include "tests/support/ScriptedWallClock.h"

namespace orvanta::test {

/// All that the core asks of the world but sound, in virtual time and, by default, without a disk.
struct PlatformFakes {
    ScriptedProcessTable processTable;
    ScriptedWorkspace workspace;
    RecordingLog log;
    VirtualRunLoop runLoop;
    VirtualSerialQueues serialQueues{runLoop};
    ScriptedWallClock wallClock;
    MemoryAudioFiles audioFiles;
    MemoryUserDefaults userDefaults;
    ScriptedHotKeyCenter hotKeyCenter;
    InProcessNotificationCenter notificationCenter;
    RecordingFileViewer fileViewer;
    UserFolders userFolders{.music = "/home/user/Music"};

    [[nodiscard]] Platform platformWith(AudioHardware& hardware) {
        return platformOf(hardware, workspace, serialQueues, audioFiles);
    }

    /// With files of another kind.
    [[nodiscard]] Platform platformWith(AudioHardware& hardware, AudioFileWriter& files) {
        return platformOf(hardware, workspace, serialQueues, files);
    }

    /// With queues of another kind.
    [[nodiscard]] Platform platformWith(AudioHardware& hardware, SerialQueues& queues) {
        return platformOf(hardware, workspace, queues, audioFiles);
    }

    /// With another desktop.
    [[nodiscard]] Platform platformWith(AudioHardware& hardware, Workspace& desktop) {
        return platformOf(hardware, desktop, serialQueues, audioFiles);
    }

private:
    [[nodiscard]] Platform platformOf(AudioHardware& hardware, Workspace& desktop,
                                      SerialQueues& queues, AudioFileWriter& files) {
        return {.audioHardware = hardware,
                .processTable = processTable,
                .workspace = desktop,
                .systemLog = log,
                .mainRunLoop = runLoop,
                .serialQueues = queues,
                .wallClock = wallClock,
                .audioFileWriter = files,
                .userDefaults = userDefaults,
                .hotKeyCenter = hotKeyCenter,
                .notificationCenter = notificationCenter,
                .fileViewer = fileViewer,
                .userFolders = userFolders};
    }
};

} // namespace orvanta::test
