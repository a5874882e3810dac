#pragma once

#include "core/engine/AudioTapManager.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ProcProcessTable.h"
#include "platform/media/MediaFileWriter.h"
#include "platform/pipewire/PipeWireAudioHardware.h"
#include "platform/runloop/SystemWallClock.h"
#include "platform/runloop/ThreadSerialQueue.h"
#include "platform/runloop/WorkerRunLoop.h"
#include "tests/e2e/support/Waiting.h"
#include "tests/support/RecordingLog.h"

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
        return {hardware_,    processTable_, workspace_, log_,
                mainRunLoop_, serialQueues_, wallClock_, audioFiles_};
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
    AudioTapManager manager_;
};

} // namespace orvanta::test
