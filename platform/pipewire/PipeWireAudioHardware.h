#pragma once

#include "core/platform/AudioClient.h"
#include "core/platform/AudioHardware.h"
#include "core/platform/SystemLog.h"

#include <memory>
#include <string>

namespace orvanta::pipewire {
class AudioSystem;
}

namespace orvanta {

/// How the program presents itself to the PipeWire server.
struct PipeWireOptions {
    /// Name or path of the server's socket; empty means the session's own server.
    std::string remoteName;
    /// Shown by other programs of the session, for example in their lists of clients.
    std::string applicationName = "Orvanta";
};

/// The audio system over a PipeWire server and its session manager (see docs/pipewire.md).
///
/// The server may be absent, die and come back at any time: calls then answer failing statuses and
/// everything that exists comes back to life with the server, under the same ids.
class PipeWireAudioHardware final : public AudioHardware, public AudioClients {
public:
    /// Starts to connect and returns at once. `log` must outlive the object.
    PipeWireAudioHardware(PipeWireOptions options, SystemLog& log);

    /// Gives every tapped program back to its own output first.
    ~PipeWireAudioHardware() override;

    bool hasProperty(AudioObjectID object, const AudioObjectPropertyAddress& address) override;
    OSStatus isPropertySettable(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                bool& outSettable) override;
    OSStatus getPropertyDataSize(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                 std::uint32_t& outSize) override;
    OSStatus getPropertyData(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             std::uint32_t& ioSize, void* outData) override;
    OSStatus getStringProperty(AudioObjectID object, const AudioObjectPropertyAddress& address,
                               std::optional<std::string>& outText) override;
    OSStatus setPropertyData(AudioObjectID object, const AudioObjectPropertyAddress& address,
                             std::uint32_t size, const void* data) override;

    OSStatus addPropertyListener(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                 AudioObjectPropertyListenerProc listener,
                                 void* clientData) override;
    OSStatus removePropertyListener(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                    AudioObjectPropertyListenerProc listener,
                                    void* clientData) override;

    OSStatus createProcessTap(const CATapDescription& description, AudioObjectID& outTap) override;
    OSStatus destroyProcessTap(AudioObjectID tap) override;
    OSStatus createAggregateDevice(const AggregateDeviceDescription& description,
                                   AudioObjectID& outDevice) override;
    OSStatus destroyAggregateDevice(AudioObjectID device) override;
    OSStatus createIOProcID(AudioObjectID device, const AudioDeviceIOClient& client,
                            AudioDeviceIOProcID& outProcID) override;
    OSStatus destroyIOProcID(AudioObjectID device, AudioDeviceIOProcID procID) override;
    OSStatus startDevice(AudioObjectID device, AudioDeviceIOProcID procID) override;
    OSStatus stopDevice(AudioObjectID device, AudioDeviceIOProcID procID) override;

    [[nodiscard]] std::vector<AudioClient> audioClients() const override;
    [[nodiscard]] std::optional<AudioClient> audioClient(std::int32_t pid) const override;

    /// Whether a server answers just now. The first call waits up to two seconds for it.
    [[nodiscard]] bool isServerReachable();

private:
    std::unique_ptr<pipewire::AudioSystem> system_;
};

} // namespace orvanta
