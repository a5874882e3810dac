#include "platform/embedded/ServeCall.h"

namespace orvanta {

using embedded::Changes;
using embedded::Fault;
using embedded::FaultEffect;
using embedded::JournalEntry;
using embedded::Operation;

namespace {

using Struck = std::optional<Fault>;

} // namespace

OSStatus EmbeddedAudioServer::createProcessTap(const CATapDescription& description,
                                               AudioObjectID& outTap) {
    return serve({.operation = Operation::createProcessTap, .tap = description},
                 [&](JournalEntry& entry, Changes& changes, const Struck&) {
                     const OSStatus status = objects_.createTap(description, outTap, changes);
                     entry.created = status == noErr ? outTap : kAudioObjectUnknown;
                     return status;
                 });
}

OSStatus EmbeddedAudioServer::destroyProcessTap(AudioObjectID tap) {
    return serve({.operation = Operation::destroyProcessTap, .object = tap},
                 [&](JournalEntry&, Changes& changes, const Struck&) {
                     return objects_.destroyTap(tap, changes);
                 });
}

OSStatus EmbeddedAudioServer::createAggregateDevice(const AggregateDeviceDescription& description,
                                                    AudioObjectID& outDevice) {
    return serve({.operation = Operation::createAggregateDevice, .aggregate = description},
                 [&](JournalEntry& entry, Changes& changes, const Struck&) {
                     const OSStatus status =
                         objects_.createAggregate(description, outDevice, changes);
                     entry.created = status == noErr ? outDevice : kAudioObjectUnknown;
                     return status;
                 });
}

OSStatus EmbeddedAudioServer::destroyAggregateDevice(AudioObjectID device) {
    return serve({.operation = Operation::destroyAggregateDevice, .object = device},
                 [&](JournalEntry&, Changes& changes, const Struck&) {
                     return objects_.destroyAggregate(device, changes);
                 });
}

OSStatus EmbeddedAudioServer::createIOProcID(AudioObjectID device,
                                             const AudioDeviceIOClient& client,
                                             AudioDeviceIOProcID& outProcID) {
    return serve({.operation = Operation::createIOProcID, .object = device},
                 [&](JournalEntry& entry, Changes&, const Struck& fault) {
                     if (fault && fault->effect == FaultEffect::nullProcID) {
                         outProcID = nullptr;
                         return noErr;
                     }
                     const OSStatus status = objects_.createProc(device, client, outProcID);
                     entry.procID = status == noErr ? outProcID : nullptr;
                     return status;
                 });
}

OSStatus EmbeddedAudioServer::destroyIOProcID(AudioObjectID device, AudioDeviceIOProcID procID) {
    return serve({.operation = Operation::destroyIOProcID, .object = device, .procID = procID},
                 [&](JournalEntry&, Changes& changes, const Struck&) {
                     return objects_.destroyProc(device, procID, changes);
                 });
}

OSStatus EmbeddedAudioServer::startDevice(AudioObjectID device, AudioDeviceIOProcID procID) {
    return serve({.operation = Operation::startDevice, .object = device, .procID = procID},
                 [&](JournalEntry&, Changes& changes, const Struck&) {
                     return objects_.startProc(device, procID, changes);
                 });
}

OSStatus EmbeddedAudioServer::stopDevice(AudioObjectID device, AudioDeviceIOProcID procID) {
    return serve({.operation = Operation::stopDevice, .object = device, .procID = procID},
                 [&](JournalEntry&, Changes& changes, const Struck&) {
                     return objects_.stopProc(device, procID, changes);
                 });
}

} // namespace orvanta
