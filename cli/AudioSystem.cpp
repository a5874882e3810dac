#include "cli/AudioSystem.h"

#include "platform/embedded/EmbeddedAudioServer.h"
#include "platform/embedded/EmbeddedProcessTable.h"
#include "platform/embedded/EmbeddedWorkspace.h"
#include "platform/embedded/sounds/MusicLike.h"
#include "platform/embedded/sounds/SpeechLike.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/ProcProcessTable.h"
#include "platform/pipewire/PipeWireAudioHardware.h"

namespace orvanta::cli {
namespace {

class PipeWireSystem final : public AudioSystem {
public:
    using AudioSystem::platform;

    explicit PipeWireSystem(SystemLog& log)
        : AudioSystem(log),
          hardware_(PipeWireOptions{.remoteName = "", .applicationName = "AudioMixerCLI"}, log) {}

    [[nodiscard]] Platform platform(UserDefaults& userDefaults) override {
        return platformWith(hardware_, processTable_, workspace_, userDefaults);
    }

    [[nodiscard]] bool isReachable() override { return hardware_.isServerReachable(); }

private:
    ProcProcessTable processTable_;
    PipeWireAudioHardware hardware_;
    LinuxWorkspace workspace_{DesktopFolders::fromEnvironment(), &hardware_};
};

/// A tool that may run for days needs no record of its calls.
constexpr std::size_t kJournalLimit = 100;

/// Two devices and two programs that play on the first one, in real time.
class EmbeddedSystem final : public AudioSystem {
public:
    using AudioSystem::platform;

    explicit EmbeddedSystem(SystemLog& log) : AudioSystem(log) {
        server_.addDevice(
            {.uid = "embedded-speakers", .name = "Embedded Speakers", .keepsPlayed = false});
        server_.addDevice(
            {.uid = "embedded-headphones", .name = "Embedded Headphones", .keepsPlayed = false});
        server_.addProgram({.pid = 101,
                            .name = "Demo Music",
                            .bundleIdentifier = "com.meridane.orvanta.demo.music",
                            .source = embedded::musicLike()});
        server_.addProgram({.pid = 102,
                            .name = "Demo Speech",
                            .bundleIdentifier = "com.meridane.orvanta.demo.speech",
                            .source = embedded::speechLike()});
        server_.startClock();
    }

    [[nodiscard]] Platform platform(UserDefaults& userDefaults) override {
        return platformWith(server_, processTable_, workspace_, userDefaults);
    }

    [[nodiscard]] bool isReachable() override { return true; }

private:
    EmbeddedAudioServer server_{{.journalLimit = kJournalLimit}};
    EmbeddedProcessTable processTable_{server_};
    EmbeddedWorkspace workspace_{server_};
};

} // namespace

std::unique_ptr<AudioSystem> openAudioSystem(Server server, SystemLog& log) {
    if (server == Server::embedded)
        return std::make_unique<EmbeddedSystem>(log);
    return std::make_unique<PipeWireSystem>(log);
}

} // namespace orvanta::cli
