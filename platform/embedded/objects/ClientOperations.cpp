#include "platform/embedded/objects/ObjectSpace.h"

#include <algorithm>
#include <bit>

namespace orvanta::embedded {

OSStatus ObjectSpace::createTap(const CATapDescription& description, AudioObjectID& outTap,
                                Changes& changes) {
    const auto& processes = description.processes();
    const bool known =
        std::all_of(processes.begin(), processes.end(),
                    [this](AudioObjectID process) { return program(process) != nullptr; });
    if (!known)
        return kAudioHardwareBadObjectError;
    if (tap(description.UUID()) != nullptr)
        return kAudioHardwareIllegalOperationError;
    taps_.push_back(std::make_unique<Tap>(Tap{newID(), description}));
    outTap = taps_.back()->id;
    changes.replan = true;
    return noErr;
}

OSStatus ObjectSpace::destroyTap(AudioObjectID id, Changes& changes) {
    if (std::erase_if(taps_, [=](const auto& tap) { return tap->id == id; }) == 0)
        return kAudioHardwareBadObjectError;
    changes.replan = true;
    changes.gone.push_back(id);
    return noErr;
}

OSStatus ObjectSpace::createAggregate(const AggregateDeviceDescription& description,
                                      AudioObjectID& outDevice, Changes& changes) {
    const auto hasDevice = [this](const std::string& uid) {
        return device(uid) != nullptr;
    };
    const auto hasTap = [this](const std::string& uuid) {
        return tap(uuid) != nullptr;
    };
    const auto& subDevices = description.subDevices;
    const auto& tapped = description.taps;
    const bool uidTaken = hasDevice(description.uid) ||
                          std::any_of(aggregates_.begin(), aggregates_.end(), [&](const auto& it) {
                              return it->description.uid == description.uid;
                          });
    if (description.uid.empty() || uidTaken)
        return kAudioHardwareIllegalOperationError;
    if (settings_.refusesUnknownSubDevices &&
        !std::all_of(subDevices.begin(), subDevices.end(), hasDevice))
        return kAudioHardwareBadDeviceError;
    if (settings_.refusesUnknownTaps && !std::all_of(tapped.begin(), tapped.end(), hasTap))
        return kAudioHardwareBadObjectError;

    auto aggregate = std::make_unique<Aggregate>();
    aggregate->id = newID();
    aggregate->description = description;
    const Device* main = mainDevice(*aggregate);
    const double deviceRate = main != nullptr ? main->sampleRate : kFallbackSampleRate;
    aggregate->sampleRate = settings_.aggregateSampleRate.value_or(deviceRate);
    aggregate->volumes = settings_.aggregateVolumes;
    aggregate->volumeControls = std::make_shared<VolumeControls>(settings_.aggregateVolumes);
    const std::size_t streamsOfTap = settings_.tapLayout == BufferLayout::planar ? 2 : 1;
    aggregate->inputStreams = newIDs(tapped.size() * streamsOfTap);
    aggregate->inputChannels = static_cast<std::uint32_t>(tapped.size() * 2);
    aggregate->outputStreams = newIDs(main != nullptr ? main->outputStreams.size() : 0);
    aggregate->outputChannels = main != nullptr ? main->outputChannels : 0;
    outDevice = aggregate->id;
    aggregates_.push_back(std::move(aggregate));
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyDevices);
    return noErr;
}

OSStatus ObjectSpace::destroyAggregate(AudioObjectID id, Changes& changes) {
    const Aggregate* found = aggregate(id);
    if (found == nullptr) {
        return contains(id) ? kAudioHardwareBadDeviceError : kAudioHardwareBadObjectError;
    }
    for (const IOProc& proc : found->procs)
        proc.client->setStarted(false);
    std::erase_if(aggregates_, [=](const auto& it) { return it->id == id; });
    changes.replan = true;
    changes.gone.push_back(id);
    changes.notify(kAudioObjectSystemObject, kAudioHardwarePropertyDevices);
    return noErr;
}

OSStatus ObjectSpace::findForIO(AudioObjectID id, DeviceRecord*& outDevice) {
    if (!contains(id))
        return kAudioHardwareBadObjectError;
    outDevice = anyDevice(id);
    return outDevice != nullptr ? noErr : kAudioHardwareBadDeviceError;
}

OSStatus ObjectSpace::findProc(AudioObjectID device, AudioDeviceIOProcID procID, IOProc*& outProc) {
    DeviceRecord* found = nullptr;
    if (const OSStatus status = findForIO(device, found); status != noErr)
        return status;
    outProc = found->proc(procID);
    return outProc != nullptr ? noErr : kAudioHardwareIllegalOperationError;
}

OSStatus ObjectSpace::createProc(AudioObjectID device, const AudioDeviceIOClient& client,
                                 AudioDeviceIOProcID& outProcID) {
    DeviceRecord* found = nullptr;
    if (const OSStatus status = findForIO(device, found); status != noErr)
        return status;
    if (client.proc == nullptr)
        return kAudioHardwareIllegalOperationError;
    // A number in the clothes of a pointer: nobody looks behind it, and unlike an address it never
    // comes again.
    outProcID = std::bit_cast<AudioDeviceIOProcID>(++lastProcID_);
    found->procs.push_back({outProcID, std::make_shared<IOClient>(device, client), 0});
    return noErr;
}

OSStatus ObjectSpace::destroyProc(AudioObjectID device, AudioDeviceIOProcID procID,
                                  Changes& changes) {
    if (const OSStatus status = stopProc(device, procID, changes); status != noErr)
        return status;
    std::erase_if(anyDevice(device)->procs, [=](const IOProc& proc) { return proc.id == procID; });
    return noErr;
}

OSStatus ObjectSpace::startProc(AudioObjectID device, AudioDeviceIOProcID procID,
                                Changes& changes) {
    IOProc* proc = nullptr;
    if (const OSStatus status = findProc(device, procID, proc); status != noErr)
        return status;
    const Aggregate* aggregated = aggregate(device);
    if (aggregated != nullptr && mainDevice(*aggregated) == nullptr)
        return kAudioHardwareNotRunningError;
    proc->client->setStarted(true);
    // Counted also when it was started already: whatever is at rest gets a cycle and wakes.
    ++proc->starts;
    changes.replan = true;
    return noErr;
}

OSStatus ObjectSpace::stopProc(AudioObjectID device, AudioDeviceIOProcID procID, Changes& changes) {
    IOProc* proc = nullptr;
    if (const OSStatus status = findProc(device, procID, proc); status != noErr)
        return status;
    proc->client->setStarted(false);
    changes.replan = true;
    return noErr;
}

} // namespace orvanta::embedded
