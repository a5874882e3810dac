#pragma once

#include "app/demo/DemoScript.h"
#include "app/desktop/SoundSystem.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedProcessTable.h"
#include "platform/embedded/EmbeddedWorkspace.h"

#include <filesystem>
#include <memory>

namespace orvanta {

/// A desktop on which six programs play, without a sound server and without being heard: shows
/// every view on any machine. Two devices: loudspeakers, the default, and a wireless headset.
class DemoSystem final : public SoundSystem {
public:
    /// The programs come and go on `mainRunLoop`, which must outlive the system, as the script
    /// says; their sound stands still until `startClock`. Their icons are painted into
    /// `iconFolder`, which must last as long. Throws std::runtime_error where they cannot be. Main
    /// thread, with a QGuiApplication.
    DemoSystem(RunLoop& mainRunLoop, const std::filesystem::path& iconFolder);

    /// One that plays, and keeps what it needs below `home`.
    [[nodiscard]] static std::unique_ptr<DemoSystem> started(RunLoop& mainRunLoop,
                                                             const std::filesystem::path& home);

    /// From now on the devices play in real time.
    void startClock() { server_.startClock(); }

    [[nodiscard]] AudioHardware& hardware() override { return server_; }

    [[nodiscard]] ProcessTable& processes() override { return processes_; }

    [[nodiscard]] Workspace& workspace() override { return workspace_; }

    /// For whoever drives the demo further: unplugs a device, ends a program.
    [[nodiscard]] EmbeddedAudioServer& server() { return server_; }

private:
    EmbeddedAudioServer server_;
    EmbeddedProcessTable processes_{server_};
    EmbeddedWorkspace workspace_{server_};
    demo::DemoScript script_;
};

} // namespace orvanta
