#include "app/demo/DemoSystem.h"

#include "app/demo/DemoIcon.h"

namespace orvanta {
namespace {

/// A demo may be shown for days and needs no record of its calls.
constexpr std::size_t kJournalLimit = 100;

void addDevices(EmbeddedAudioServer& server) {
    // The first one becomes the default. Neither keeps what it plays.
    server.addDevice({.uid = "demo-studio-monitors",
                      .name = "Studio Monitors",
                      .manufacturer = "Meridane",
                      .volumes = {{.scalar = 0.72F}},
                      .keepsPlayed = false});
    server.addDevice({.uid = "demo-tide-buds",
                      .name = "Tide Buds",
                      .manufacturer = "Meridane",
                      .transport = kAudioDeviceTransportTypeBluetooth,
                      .volumes = {{.scalar = 0.5F}},
                      .inputStreams = 1,
                      .keepsPlayed = false});
}

} // namespace

DemoSystem::DemoSystem(RunLoop& mainRunLoop, const std::filesystem::path& iconFolder)
    : server_({.journalLimit = kJournalLimit}),
      script_(mainRunLoop, server_, processes_, demo::demoPrograms()) {
    addDevices(server_);
    for (const demo::DemoProgram& program : demo::demoPrograms())
        workspace_.setIcon(
            program.bundleIdentifier,
            std::make_shared<demo::DemoIcon>(program.bundleIdentifier, program.tile, iconFolder));
}

std::unique_ptr<DemoSystem> DemoSystem::started(RunLoop& mainRunLoop,
                                                const std::filesystem::path& home) {
    auto system = std::make_unique<DemoSystem>(mainRunLoop, home / "icons");
    system->startClock();
    return system;
}

} // namespace orvanta
