#include "platform/pipewire/PipeWireAudioHardware.h"

#include "platform/pipewire/AudioSystem.h"

namespace orvanta {

using pipewire::AudioSystem;
using pipewire::ControlLoop;
using pipewire::PropertyAnswer;

namespace {

/// Calls `operation` with the system, under its lock; without PipeWire on this machine nothing
/// runs.
template <class Operation>
OSStatus locked(AudioSystem& system, Operation&& operation) {
    if (!system.loop().isUsable())
        return kAudioHardwareNotRunningError;
    const ControlLoop::Lock lock(system.loop());
    return operation(system);
}

} // namespace

PipeWireAudioHardware::PipeWireAudioHardware(PipeWireOptions options, SystemLog& log)
    : system_(std::make_unique<AudioSystem>(std::move(options), log)) {}

PipeWireAudioHardware::~PipeWireAudioHardware() = default;

bool PipeWireAudioHardware::isServerReachable() {
    return locked(*system_, [](AudioSystem& system) {
               system.waitForFirstAnswer();
               return system.hasServer() ? noErr : kAudioHardwareNotRunningError;
           }) == noErr;
}

bool PipeWireAudioHardware::hasProperty(AudioObjectID object,
                                        const AudioObjectPropertyAddress& address) {
    const OSStatus status =
        locked(*system_, [&](AudioSystem& system) { return system.read(object, address).status; });
    return status != kAudioHardwareUnknownPropertyError && status != kAudioHardwareBadObjectError;
}

OSStatus PipeWireAudioHardware::isPropertySettable(AudioObjectID object,
                                                   const AudioObjectPropertyAddress& address,
                                                   bool& outSettable) {
    return locked(*system_, [&](AudioSystem& system) {
        return system.isSettable(object, address, outSettable);
    });
}

OSStatus PipeWireAudioHardware::getPropertyDataSize(AudioObjectID object,
                                                    const AudioObjectPropertyAddress& address,
                                                    std::uint32_t& outSize) {
    return locked(*system_, [&](AudioSystem& system) {
        const PropertyAnswer answer = system.read(object, address);
        if (answer.status == noErr)
            outSize = pipewire::sizeOf(answer.value);
        return answer.status;
    });
}

OSStatus PipeWireAudioHardware::getPropertyData(AudioObjectID object,
                                                const AudioObjectPropertyAddress& address,
                                                std::uint32_t& ioSize, void* outData) {
    return locked(*system_, [&](AudioSystem& system) {
        const PropertyAnswer answer = system.read(object, address);
        return answer.status == noErr ? pipewire::copyValue(answer.value, ioSize, outData)
                                      : answer.status;
    });
}

OSStatus PipeWireAudioHardware::getStringProperty(AudioObjectID object,
                                                  const AudioObjectPropertyAddress& address,
                                                  std::optional<std::string>& outText) {
    return locked(*system_, [&](AudioSystem& system) {
        const PropertyAnswer answer = system.read(object, address);
        if (answer.status != noErr)
            return answer.status;
        const auto* text = std::get_if<std::string>(&answer.value);
        if (text == nullptr)
            return kAudioHardwareIllegalOperationError;
        outText = text->empty() ? std::nullopt : std::optional(*text);
        return noErr;
    });
}

OSStatus PipeWireAudioHardware::setPropertyData(AudioObjectID object,
                                                const AudioObjectPropertyAddress& address,
                                                std::uint32_t size, const void* data) {
    return locked(*system_,
                  [&](AudioSystem& system) { return system.write(object, address, data, size); });
}

// Listeners have their own lock: who removes one waits for a call in flight, and must not keep the
// control thread waiting meanwhile.
OSStatus PipeWireAudioHardware::addPropertyListener(AudioObjectID object,
                                                    const AudioObjectPropertyAddress& address,
                                                    AudioObjectPropertyListenerProc listener,
                                                    void* clientData) {
    return system_->listeners().add(object, address, listener, clientData);
}

OSStatus PipeWireAudioHardware::removePropertyListener(AudioObjectID object,
                                                       const AudioObjectPropertyAddress& address,
                                                       AudioObjectPropertyListenerProc listener,
                                                       void* clientData) {
    return system_->listeners().remove(object, address, listener, clientData);
}

OSStatus PipeWireAudioHardware::createProcessTap(const CATapDescription& description,
                                                 AudioObjectID& outTap) {
    return locked(*system_,
                  [&](AudioSystem& system) { return system.taps().create(description, outTap); });
}

OSStatus PipeWireAudioHardware::destroyProcessTap(AudioObjectID tap) {
    return locked(*system_, [&](AudioSystem& system) { return system.taps().destroy(tap); });
}

OSStatus PipeWireAudioHardware::createAggregateDevice(const AggregateDeviceDescription& description,
                                                      AudioObjectID& outDevice) {
    return locked(*system_, [&](AudioSystem& system) {
        return system.aggregates().create(description, outDevice);
    });
}

OSStatus PipeWireAudioHardware::destroyAggregateDevice(AudioObjectID device) {
    return locked(*system_,
                  [&](AudioSystem& system) { return system.aggregates().destroy(device); });
}

OSStatus PipeWireAudioHardware::createIOProcID(AudioObjectID device,
                                               const AudioDeviceIOClient& client,
                                               AudioDeviceIOProcID& outProcID) {
    return locked(*system_, [&](AudioSystem& system) {
        return system.aggregates().createIOProc(device, client, outProcID);
    });
}

OSStatus PipeWireAudioHardware::destroyIOProcID(AudioObjectID device, AudioDeviceIOProcID procID) {
    return locked(*system_, [&](AudioSystem& system) {
        return system.aggregates().destroyIOProc(device, procID);
    });
}

std::vector<AudioClient> PipeWireAudioHardware::audioClients() const {
    std::vector<AudioClient> clients;
    locked(*system_, [&](AudioSystem& system) {
        system.waitForFirstAnswer();
        clients = system.processes().clients();
        return noErr;
    });
    return clients;
}

std::optional<AudioClient> PipeWireAudioHardware::audioClient(std::int32_t pid) const {
    std::optional<AudioClient> client;
    locked(*system_, [&](AudioSystem& system) {
        system.waitForFirstAnswer();
        client = system.processes().client(pid);
        return noErr;
    });
    return client;
}

OSStatus PipeWireAudioHardware::startDevice(AudioObjectID device, AudioDeviceIOProcID procID) {
    return locked(*system_,
                  [&](AudioSystem& system) { return system.aggregates().start(device, procID); });
}

OSStatus PipeWireAudioHardware::stopDevice(AudioObjectID device, AudioDeviceIOProcID procID) {
    return locked(*system_,
                  [&](AudioSystem& system) { return system.aggregates().stop(device, procID); });
}

} // namespace orvanta
