#include "platform/pipewire/PropertyListeners.h"

#include <algorithm>
#include <pthread.h>

namespace orvanta::pipewire {

PropertyListeners::PropertyListeners() : thread_([this] { run(); }) {
    ::pthread_setname_np(thread_.native_handle(), "orvanta-notify");
}

PropertyListeners::~PropertyListeners() {
    {
        const std::scoped_lock lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

OSStatus PropertyListeners::add(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                AudioObjectPropertyListenerProc listener, void* clientData) {
    if (listener == nullptr)
        return kAudioHardwareIllegalOperationError;
    const std::scoped_lock lock(mutex_);
    entries_.push_back({object, address, listener, clientData});
    return noErr;
}

OSStatus PropertyListeners::remove(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                   AudioObjectPropertyListenerProc listener, void* clientData) {
    const Entry entry{object, address, listener, clientData};
    std::unique_lock lock(mutex_);
    const auto found = std::find(entries_.begin(), entries_.end(), entry);
    if (found == entries_.end())
        return kAudioHardwareIllegalOperationError;
    entries_.erase(found);
    if (std::this_thread::get_id() != thread_.get_id())
        told_.wait(lock, [&] { return inFlight_ != entry; });
    return noErr;
}

void PropertyListeners::notify(AudioObjectID object, const AudioObjectPropertyAddress& address) {
    const Change change{object, address};
    {
        const std::scoped_lock lock(mutex_);
        // Nobody is told of values, so several changes that wait are one.
        if (std::find(changes_.begin(), changes_.end(), change) != changes_.end())
            return;
        changes_.push_back(change);
    }
    wake_.notify_one();
}

void PropertyListeners::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return ending_ || !changes_.empty(); });
        if (ending_)
            return;
        const Change change = changes_.front();
        changes_.pop_front();
        tell(lock, change);
    }
}

void PropertyListeners::tell(std::unique_lock<std::mutex>& lock, const Change& change) {
    std::vector<Entry> concerned;
    for (const Entry& entry : entries_)
        if (entry.object == change.object && entry.address == change.address)
            concerned.push_back(entry);
    for (const Entry& entry : concerned) {
        // One of those called before may have removed it.
        if (std::find(entries_.begin(), entries_.end(), entry) == entries_.end())
            continue;
        inFlight_ = entry;
        lock.unlock();
        entry.listener(change.object, change.address, entry.clientData);
        lock.lock();
        inFlight_.reset();
        told_.notify_all();
    }
}

} // namespace orvanta::pipewire
