#pragma once

#include "core/engine/AudioTapManager.h"
#include "core/platform/UnavailableHotKeyCenter.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ProcProcessTable.h"
#include "platform/linux/desktop/UserFolders.h"
#include "platform/media/MediaFileWriter.h"
#include "platform/memory/InMemoryUserDefaults.h"
#include "platform/pipewire/PipeWireAudioHardware.h"
#include "platform/runloop/InProcessNotificationCenter.h"
#include "platform/runloop/SystemWallClock.h"
#include "platform/runloop/ThreadSerialQueue.h"
#include "platform/runloop/WorkerRunLoop.h"
#include "tests/support/RecordingFileViewer.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/Waiting.h"

#include <string>

namespace orvanta::test {

/// The tap engine over PipeWire, as the program wires it. Made after the private server, whose
/// environment it reads.
class MixerUnderTest {
public:
    /// Throws std::runtime_error when no server answers.
    MixerUnderTest();

    [[nodiscard]] AudioTapManager& manager() { return manager_; }

    [[nodiscard]] Platform platform() {
        return {.audioHardware = hardware_,
                .processTable = processTable_,
                .workspace = workspace_,
                .systemLog = log_,
                .mainRunLoop = mainRunLoop_,
                .serialQueues = serialQueues_,
                .wallClock = wallClock_,
                .audioFileWriter = audioFiles_,
                .userDefaults = userDefaults_,
                .hotKeyCenter = hotKeyCenter_,
                .notificationCenter = notificationCenter_,
                .fileViewer = fileViewer_,
                .userFolders = userFolders_};
    }

    [[nodiscard]] PipeWireAudioHardware& hardware() { return hardware_; }

    /// The process object of a process; 0 when it is not listed.
    [[nodiscard]] AudioObjectID processObject(pid_t pid);
    /// Waits until the process is listed.
    AudioObjectID awaitProcess(pid_t pid);
    [[nodiscard]] bool isRunningOutput(AudioObjectID process);
    /// Waits until the device is listed.
    AudioObjectID awaitDevice(const std::string& uid);

    /// Taps the process, at this volume from the first sample that matters to a test on: when this
    /// returns, the callback has run with it. Throws when there is no tap.
    void tap(pid_t pid, float volume);

    /// What people read of a device; empty when it is not listed.
    [[nodiscard]] std::string deviceName(const std::string& uid);

    /// Everything logged so far.
    [[nodiscard]] std::string logText() const;

    void forgetLog() { log_.clear(); }

private:
    RecordingLog log_;
    PipeWireAudioHardware hardware_;
    ProcProcessTable processTable_;
    LinuxWorkspace workspace_{DesktopFolders::fromEnvironment(), &hardware_};
    WorkerRunLoop mainRunLoop_;
    ThreadSerialQueues serialQueues_;
    SystemWallClock wallClock_;
    MediaFileWriter audioFiles_;
    InMemoryUserDefaults userDefaults_;
    UnavailableHotKeyCenter hotKeyCenter_;
    InProcessNotificationCenter notificationCenter_;
    RecordingFileViewer fileViewer_;
    const UserFolders userFolders_ = userFoldersOf(DesktopFolders::fromEnvironment());
    AudioTapManager manager_;
};

} // namespace orvanta::test
