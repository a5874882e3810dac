#pragma once

#include "core/platform/Logger.h"
#include "platform/pipewire/ControlLoop.h"
#include "platform/pipewire/OutputDevices.h"
#include "platform/pipewire/ProcessObjects.h"
#include "platform/pipewire/PropertyListeners.h"
#include "platform/pipewire/ServerConnection.h"
#include "platform/pipewire/ServerMirror.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace orvanta::pipewire {

/// What taps and aggregates need of everything else. References to parts that outlive them.
struct Surroundings {
    ControlLoop& loop;
    ServerConnection& connection;
    ServerMirror& mirror;
    ProcessObjects& processes;
    OutputDevices& devices;
    PropertyListeners& listeners;
    ObjectIds& ids;
    const Logger& logger;
    /// Asks for everything to be brought up to date soon, on the control thread.
    std::function<void()> changed;

    /// What these processes play through.
    [[nodiscard]] std::vector<const ServerNode*>
    playbackOf(const std::vector<AudioObjectID>& owners) const {
        std::vector<const ServerNode*> found = mirror.playback();
        std::erase_if(found, [&](const ServerNode* node) {
            return std::find(owners.begin(), owners.end(), processes.ownerOf(node->ref)) ==
                   owners.end();
        });
        return found;
    }

    /// Another number after every restart of the server or the session manager.
    [[nodiscard]] std::uint64_t generation() const {
        return connection.connections() + mirror.defaults().binds();
    }
};

} // namespace orvanta::pipewire
