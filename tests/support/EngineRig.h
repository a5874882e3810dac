#pragma once

#include "core/engine/AudioTapManager.h"
#include "platform/embedded/EmbeddedAudioServer.h"
#include "tests/support/PlatformFakes.h"

#include <memory>
#include <string>
#include <vector>

namespace orvanta::test {

/// An embedded audio server that remembers the client data of the last IOProc made.
class WatchedServer final : public EmbeddedAudioServer {
public:
    using EmbeddedAudioServer::EmbeddedAudioServer;

    OSStatus createIOProcID(AudioObjectID device, const AudioDeviceIOClient& client,
                            AudioDeviceIOProcID& outProcID) override {
        lastClientData = client.clientData;
        return EmbeddedAudioServer::createIOProcID(device, client, outProcID);
    }

    void* lastClientData = nullptr;
};

/// A tap manager on an embedded audio server in virtual time, with a stereo device "speakers" and a
/// program that plays a constant 0.5.
class EngineRig : public PlatformFakes {
public:
    static constexpr std::int32_t pid = 100;
    static constexpr std::uint32_t frames = 512;

    explicit EngineRig(const embedded::ServerSettings& settings = {},
                       embedded::DeviceSettings speakersSettings = speakersByDefault());

    static embedded::DeviceSettings speakersByDefault();

    WatchedServer server;
    AudioObjectID speakers;
    AudioObjectID program;
    std::unique_ptr<AudioTapManager> manager;

    /// State of the tap made last, for what no operation tells. The tap must exist.
    [[nodiscard]] TapState& state() const {
        return *static_cast<AudioCallbackRef*>(server.lastClientData)->state;
    }

    /// Another device like the speakers, named as its UID.
    AudioObjectID addDevice(const std::string& uid,
                            FourCharCode transport = kAudioDeviceTransportTypeUSB);
    /// What a device plays in the next cycle, channels interleaved.
    std::vector<float> nextCycle(AudioObjectID device);

    /// The same of the speakers.
    std::vector<float> nextCycle() { return nextCycle(speakers); }

    /// Calls that make, end, start or stop something, since the journal was last cleared.
    [[nodiscard]] std::vector<std::string> lifecycleCalls();
    /// Clears journal and log.
    void forget();
    /// Nothing of ours is left in the audio system and the process plays on its own.
    void expectNothingLeft();
};

} // namespace orvanta::test
