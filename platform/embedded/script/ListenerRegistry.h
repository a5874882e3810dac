#pragma once

#include "core/platform/AudioHardware.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orvanta::embedded {

/// Which property of which object has changed.
struct PropertyChange {
    AudioObjectID object = kAudioObjectUnknown;
    AudioObjectPropertyAddress address;
};

/// One listener and what it listens to.
struct Listener {
    PropertyChange change;
    AudioObjectPropertyListenerProc proc = nullptr;
    void* clientData = nullptr;
};

/// Keeps the property listeners and calls them. Safe from all threads; listeners may add and
/// remove listeners, themselves included.
class ListenerRegistry {
    struct Entry {
        Listener listener;
        bool removed = false;
        /// Threads that are inside a call of it.
        std::vector<std::thread::id> callers;
    };

public:
    /// Adding one a second time changes nothing.
    void add(const Listener& listener);

    /// No call of it begins any more. False if there is no such listener.
    bool remove(const Listener& listener);

    /// Returns when no call that began before the listener was removed, or forgotten, is in flight
    /// on another thread.
    void waitUntilReturned(const Listener& listener);

    [[nodiscard]] std::size_t count() const;

    /// Removes the listeners of an object that is gone, waiting for nothing.
    void forget(AudioObjectID object);

    /// Calls, on this thread and in the order in which they were added, the listeners to exactly
    /// this change.
    void deliver(const PropertyChange& change);

private:
    using EntryRef = std::shared_ptr<Entry>;

    std::vector<EntryRef> listenersTo(const PropertyChange& change) const;
    void call(const EntryRef& entry);
    /// Under the lock, for an entry that is taken out of `entries_`.
    void retire(const EntryRef& entry);
    [[nodiscard]] static bool isCalledElsewhere(const Entry& entry);

    mutable std::mutex mutex_;
    std::condition_variable returned_;
    std::vector<EntryRef> entries_;
    /// Removed, but with callers inside: whoever removes them once more waits as well.
    std::vector<EntryRef> leaving_;
};

} // namespace orvanta::embedded
