#pragma once

#include "app/desktop/SoundSystem.h"
#include "core/platform/SystemLog.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ProcProcessTable.h"
#include "platform/pipewire/PipeWireAudioHardware.h"

namespace orvanta {

/// The sound server of the user's session. It may be away and come back.
class PipeWireSystem final : public SoundSystem {
public:
    /// `log` must outlive it.
    explicit PipeWireSystem(SystemLog& log)
        : hardware_(PipeWireOptions{.remoteName = "", .applicationName = "Orvanta"}, log) {}

    [[nodiscard]] AudioHardware& hardware() override { return hardware_; }

    [[nodiscard]] ProcessTable& processes() override { return processes_; }

    [[nodiscard]] Workspace& workspace() override { return workspace_; }

private:
    ProcProcessTable processes_;
    PipeWireAudioHardware hardware_;
    LinuxWorkspace workspace_{DesktopFolders::fromEnvironment(), &hardware_};
};

} // namespace orvanta
