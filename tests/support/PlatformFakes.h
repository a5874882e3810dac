#pragma once

#include "core/platform/Platform.h"
#include "platform/runloop/VirtualRunLoop.h"
#include "platform/runloop/VirtualSerialQueue.h"
#include "tests/support/MemoryAudioFiles.h"
#include "tests/support/RecordingLog.h"
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

    [[nodiscard]] Platform platformWith(AudioHardware& hardware) {
        return platformWith(hardware, audioFiles);
    }

    /// With files of another kind.
    [[nodiscard]] Platform platformWith(AudioHardware& hardware, AudioFileWriter& files) {
        return {hardware, processTable, workspace, log, runLoop, serialQueues, wallClock, files};
    }
};

} // namespace orvanta::test
