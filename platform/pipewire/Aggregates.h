#pragma once

#include "core/platform/AudioHardware.h"
#include "platform/pipewire/PropertyAnswer.h"
#include "platform/pipewire/Surroundings.h"
#include "platform/pipewire/Tap.h"
#include "platform/pipewire/Taps.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace orvanta::pipewire {

/// The aggregate devices: each plays one tap on one device, with one started IOProc. All of it
/// with the lock held; creating one releases it while it waits.
class Aggregates {
public:
    Aggregates(Surroundings& surroundings, Taps& taps);
    ~Aggregates();
    Aggregates(const Aggregates&) = delete;
    Aggregates& operator=(const Aggregates&) = delete;

    OSStatus create(const AggregateDeviceDescription& description, AudioObjectID& outDevice);
    OSStatus destroy(AudioObjectID device);
    OSStatus createIOProc(AudioObjectID device, const AudioDeviceIOClient& client,
                          AudioDeviceIOProcID& outProcID);
    OSStatus destroyIOProc(AudioObjectID device, AudioDeviceIOProcID procID);
    /// Wakes one that is started already.
    OSStatus start(AudioObjectID device, AudioDeviceIOProcID procID);
    /// Returns only when no call of the IOProc is in flight.
    OSStatus stop(AudioObjectID device, AudioDeviceIOProcID procID);

    /// False where the system had no descriptors left for the timer.
    [[nodiscard]] bool isUsable() const { return returnTimer_.isUsable(); }

    /// Tells the listeners of those whose device has come or gone. After `devices.update()`, which
    /// tells of a changed device list.
    void update();

    /// Stops and destroys all.
    void destroyAll();

    /// Those whose device is there. After a restart of the server or the session manager devices
    /// come back one by one, so for a second they count as there.
    [[nodiscard]] std::vector<AudioObjectID> list() const;
    [[nodiscard]] bool contains(AudioObjectID object) const;

    /// Nothing when there is no such aggregate. `rate` is the graph's, in Hz.
    [[nodiscard]] std::optional<PropertyAnswer>
    read(AudioObjectID object, const AudioObjectPropertyAddress& address, double rate) const;

private:
    struct IOProc;
    struct Aggregate;

    [[nodiscard]] Aggregate* find(AudioObjectID device) const;
    [[nodiscard]] static IOProc* find(const Aggregate& aggregate, AudioDeviceIOProcID procID);
    OSStatus awaitStreams(AudioObjectID device, AudioDeviceIOProcID procID,
                          const std::shared_ptr<Tap>& tap);
    void stop(Aggregate& aggregate);
    [[nodiscard]] bool areDevicesReturning();
    void tellOfDevices() const;

    Surroundings& surroundings_;
    Taps& taps_;
    std::map<AudioObjectID, std::unique_ptr<Aggregate>> aggregates_;
    /// Their addresses are the ids of IOProcs. None is ever removed, so an id that is out of date
    /// never fits a newer IOProc.
    std::deque<char> procTokens_;
    std::uint64_t generation_;
    bool wereReturning_ = true;
    /// Set while devices return.
    ControlTimer returnTimer_;
};

} // namespace orvanta::pipewire
