#pragma once

#include "core/platform/AggregateDeviceDescription.h"
#include "core/platform/AudioBufferList.h"
#include "core/platform/AudioObject.h"
#include "core/platform/TapDescription.h"

#include <optional>
#include <string>

namespace orvanta {

/// When a cycle happens, in frames of the device and nanoseconds of the monotonic clock.
struct AudioTimeStamp {
    double mSampleTime = 0;
    std::uint64_t mHostTime = 0;
};

/// Runs once per IO cycle of a device, on the audio system's real-time thread. `input` holds what
/// the device's inputs (for an aggregate: its taps) deliver in this cycle, `output` takes what it
/// plays in the same cycle; both are valid until the return only.
using AudioDeviceIOProc = OSStatus (*)(AudioObjectID device, const AudioTimeStamp* now,
                                       const AudioBufferList* input,
                                       const AudioTimeStamp* inputTime, AudioBufferList* output,
                                       const AudioTimeStamp* outputTime, void* clientData);

/// Asks, about the client data of an IOProc whose input has fallen silent, whether further silent
/// cycles would change nothing: the audio system may then stop calling it until sound returns.
/// Called between cycles on the thread that runs them, so it obeys the same real-time rules.
using AudioDeviceRestProc = bool (*)(const void* clientData) noexcept;

/// What is registered on a device: the cycle function, its data, and (optional) the rest question.
/// Without the question, the audio system keeps calling for as long as the device is started.
struct AudioDeviceIOClient {
    AudioDeviceIOProc proc = nullptr;
    void* clientData = nullptr;
    AudioDeviceRestProc isAtRest = nullptr;
};

/// Names a registered IOProc of one device; null names none.
using AudioDeviceIOProcID = struct OpaqueAudioDeviceIOProc*;

/// Told of a change, on a thread of the audio system. Must return soon and call nothing back.
using AudioObjectPropertyListenerProc = OSStatus (*)(AudioObjectID object,
                                                     const AudioObjectPropertyAddress& address,
                                                     void* clientData);

/// The audio system, in Core Audio's terms: a flat space of objects with properties, process taps,
/// aggregate devices and IO callbacks. Every operation may be called from any thread but an IO
/// thread and answers with a status; on any status but `noErr` the out arguments are unchanged.
class AudioHardware {
public:
    AudioHardware() = default;
    AudioHardware(const AudioHardware&) = delete;
    AudioHardware& operator=(const AudioHardware&) = delete;
    virtual ~AudioHardware() = default;

    virtual bool hasProperty(AudioObjectID object, const AudioObjectPropertyAddress& address) = 0;

    /// AudioObjectIsPropertySettable.
    virtual OSStatus isPropertySettable(AudioObjectID object,
                                        const AudioObjectPropertyAddress& address,
                                        bool& outSettable) = 0;

    /// AudioObjectGetPropertyDataSize: bytes that `getPropertyData` would fill.
    virtual OSStatus getPropertyDataSize(AudioObjectID object,
                                         const AudioObjectPropertyAddress& address,
                                         std::uint32_t& outSize) = 0;

    /// AudioObjectGetPropertyData: `ioSize` is the room in `outData` and becomes the bytes filled.
    virtual OSStatus getPropertyData(AudioObjectID object,
                                     const AudioObjectPropertyAddress& address,
                                     std::uint32_t& ioSize, void* outData) = 0;

    /// The same for a string, which may be null although the read succeeds: then `outText` is
    /// emptied.
    virtual OSStatus getStringProperty(AudioObjectID object,
                                       const AudioObjectPropertyAddress& address,
                                       std::optional<std::string>& outText) = 0;

    /// AudioObjectSetPropertyData.
    virtual OSStatus setPropertyData(AudioObjectID object,
                                     const AudioObjectPropertyAddress& address, std::uint32_t size,
                                     const void* data) = 0;

    /// AudioObjectAddPropertyListener. The same three arguments name the listener on removal.
    virtual OSStatus addPropertyListener(AudioObjectID object,
                                         const AudioObjectPropertyAddress& address,
                                         AudioObjectPropertyListenerProc listener,
                                         void* clientData) = 0;

    /// AudioObjectRemovePropertyListener. After the return the listener is not called any more.
    virtual OSStatus removePropertyListener(AudioObjectID object,
                                            const AudioObjectPropertyAddress& address,
                                            AudioObjectPropertyListenerProc listener,
                                            void* clientData) = 0;

    /// AudioHardwareCreateProcessTap.
    virtual OSStatus createProcessTap(const CATapDescription& description,
                                      AudioObjectID& outTap) = 0;

    /// AudioHardwareDestroyProcessTap: the processes play on their own again.
    virtual OSStatus destroyProcessTap(AudioObjectID tap) = 0;

    /// AudioHardwareCreateAggregateDevice.
    virtual OSStatus createAggregateDevice(const AggregateDeviceDescription& description,
                                           AudioObjectID& outDevice) = 0;

    /// AudioHardwareDestroyAggregateDevice.
    virtual OSStatus destroyAggregateDevice(AudioObjectID device) = 0;

    /// AudioDeviceCreateIOProcID.
    virtual OSStatus createIOProcID(AudioObjectID device, const AudioDeviceIOClient& client,
                                    AudioDeviceIOProcID& outProcID) = 0;

    /// AudioDeviceDestroyIOProcID. Stops it first if it runs.
    virtual OSStatus destroyIOProcID(AudioObjectID device, AudioDeviceIOProcID procID) = 0;

    /// AudioDeviceStart. The IOProc gets at least one cycle soon after, even with silent input.
    /// Starting one that is started already succeeds and wakes it if it was at rest: to be done
    /// when something has changed that silent cycles must bring about.
    virtual OSStatus startDevice(AudioObjectID device, AudioDeviceIOProcID procID) = 0;

    /// AudioDeviceStop. Returns only when no callback of this IOProc is in flight.
    virtual OSStatus stopDevice(AudioObjectID device, AudioDeviceIOProcID procID) = 0;
};

} // namespace orvanta
