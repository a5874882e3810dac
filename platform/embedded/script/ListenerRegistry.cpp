#include "platform/embedded/script/ListenerRegistry.h"

#include <algorithm>

namespace orvanta::embedded {

namespace {

bool isSame(const PropertyChange& left, const PropertyChange& right) {
    return left.object == right.object && left.address == right.address;
}

bool isSame(const Listener& left, const Listener& right) {
    return isSame(left.change, right.change) && left.proc == right.proc &&
           left.clientData == right.clientData;
}

} // namespace

void ListenerRegistry::add(const Listener& listener) {
    const std::scoped_lock guard(mutex_);
    const bool known = std::any_of(entries_.begin(), entries_.end(), [&](const EntryRef& entry) {
        return isSame(entry->listener, listener);
    });
    if (!known)
        entries_.push_back(std::make_shared<Entry>(Entry{listener, false, {}}));
}

bool ListenerRegistry::remove(const Listener& listener) {
    const std::scoped_lock guard(mutex_);
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const EntryRef& entry) {
        return isSame(entry->listener, listener);
    });
    if (found == entries_.end())
        return false;
    retire(*found);
    entries_.erase(found);
    return true;
}

void ListenerRegistry::waitUntilReturned(const Listener& listener) {
    std::unique_lock lock(mutex_);
    returned_.wait(lock, [&] {
        return std::none_of(leaving_.begin(), leaving_.end(), [&](const EntryRef& entry) {
            return isSame(entry->listener, listener) && isCalledElsewhere(*entry);
        });
    });
}

std::size_t ListenerRegistry::count() const {
    const std::scoped_lock guard(mutex_);
    return entries_.size();
}

void ListenerRegistry::forget(AudioObjectID object) {
    const std::scoped_lock guard(mutex_);
    std::erase_if(entries_, [&](const EntryRef& entry) {
        if (entry->listener.change.object != object)
            return false;
        retire(entry);
        return true;
    });
}

void ListenerRegistry::deliver(const PropertyChange& change) {
    for (const EntryRef& entry : listenersTo(change))
        call(entry);
}

std::vector<ListenerRegistry::EntryRef>
ListenerRegistry::listenersTo(const PropertyChange& change) const {
    const std::scoped_lock guard(mutex_);
    std::vector<EntryRef> found;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(found),
                 [&](const EntryRef& entry) { return isSame(entry->listener.change, change); });
    return found;
}

void ListenerRegistry::call(const EntryRef& entry) {
    const std::thread::id self = std::this_thread::get_id();
    {
        const std::scoped_lock guard(mutex_);
        if (entry->removed)
            return;
        entry->callers.push_back(self);
    }
    const Listener& listener = entry->listener;
    listener.proc(listener.change.object, listener.change.address, listener.clientData);
    {
        const std::scoped_lock guard(mutex_);
        auto& callers = entry->callers;
        callers.erase(std::find(callers.begin(), callers.end(), self));
        if (entry->removed && callers.empty())
            std::erase(leaving_, entry);
    }
    returned_.notify_all();
}

void ListenerRegistry::retire(const EntryRef& entry) {
    entry->removed = true;
    if (!entry->callers.empty())
        leaving_.push_back(entry);
}

bool ListenerRegistry::isCalledElsewhere(const Entry& entry) {
    const std::thread::id self = std::this_thread::get_id();
    return std::any_of(entry.callers.begin(), entry.callers.end(),
                       [&](std::thread::id caller) { return caller != self; });
}

} // namespace orvanta::embedded
