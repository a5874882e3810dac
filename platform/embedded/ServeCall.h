#pragma once

#include "platform/embedded/EmbeddedAudioServer.h"

/// The two roads through the server's lock; included by the server's own sources only.
namespace orvanta {

template <typename Body>
OSStatus EmbeddedAudioServer::serve(embedded::JournalEntry entry, Body body) {
    const auto fault = faults_.strike(entry.operation, entry.object, entry.address);
    const bool fails = fault && fault->effect == embedded::FaultEffect::failure;
    Aftermath aftermath;
    OSStatus status = noErr;
    {
        const std::scoped_lock guard(mutex_);
        status = fails ? fault->status : body(entry, aftermath.changes, fault);
        entry.status = status;
        journal_.add(std::move(entry));
        preparePlan(aftermath);
    }
    settle(aftermath);
    return status;
}

template <typename Body>
auto EmbeddedAudioServer::script(Body body) {
    Aftermath aftermath;
    std::unique_lock lock(mutex_);
    const auto result = body(aftermath.changes);
    preparePlan(aftermath);
    lock.unlock();
    settle(aftermath);
    return result;
}

} // namespace orvanta
