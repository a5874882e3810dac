#pragma once

#include "core/platform/AudioHardware.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace orvanta::pipewire {

/// Who wants to be told of changes. They are called on a thread of their own: the control thread
/// must stay fast and holds the lock, and neither is anything that a listener should feel.
class PropertyListeners {
public:
    PropertyListeners();
    ~PropertyListeners();
    PropertyListeners(const PropertyListeners&) = delete;
    PropertyListeners& operator=(const PropertyListeners&) = delete;

    OSStatus add(AudioObjectID object, const AudioObjectPropertyAddress& address,
                 AudioObjectPropertyListenerProc listener, void* clientData);

    /// Waits for a call of the listener that is in flight, unless it is the listener who removes.
    OSStatus remove(AudioObjectID object, const AudioObjectPropertyAddress& address,
                    AudioObjectPropertyListenerProc listener, void* clientData);

    /// Has the listeners of exactly this property called soon. Never waits for them.
    void notify(AudioObjectID object, const AudioObjectPropertyAddress& address);

private:
    struct Entry {
        AudioObjectID object = kAudioObjectUnknown;
        AudioObjectPropertyAddress address;
        AudioObjectPropertyListenerProc listener = nullptr;
        void* clientData = nullptr;

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    struct Change {
        AudioObjectID object = kAudioObjectUnknown;
        AudioObjectPropertyAddress address;

        friend bool operator==(const Change&, const Change&) = default;
    };

    void run();
    void tell(std::unique_lock<std::mutex>& lock, const Change& change);

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable told_;
    std::vector<Entry> entries_;
    std::deque<Change> changes_;
    std::optional<Entry> inFlight_;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace orvanta::pipewire
