#pragma once

#include "platform/embedded/cycle/WavRecorder.h"
#include "platform/embedded/script/ListenerRegistry.h"

#include <memory>
#include <vector>

namespace orvanta::embedded {

/// What an operation has changed and what must follow once the server's lock is let go.
struct Changes {
    /// In the order in which listeners hear of them.
    std::vector<PropertyChange> notifications;
    /// Objects that are gone: their listeners are forgotten.
    std::vector<AudioObjectID> gone;
    /// Recordings that have ended: their files are closed once no cycle writes to them any more.
    std::vector<std::shared_ptr<WavRecorder>> ended;
    /// The cycles need a new plan.
    bool replan = false;

    void notify(AudioObjectID object, AudioObjectPropertySelector selector,
                AudioObjectPropertyScope scope = kAudioObjectPropertyScopeGlobal,
                AudioObjectPropertyElement element = kAudioObjectPropertyElementMain) {
        notifications.push_back({object, {selector, scope, element}});
    }
};

} // namespace orvanta::embedded
