#pragma once

#include "core/platform/Logger.h"
#include "platform/pipewire/ControlLoop.h"
#include "platform/pipewire/OutputDevices.h"
#include "platform/pipewire/ProcessObjects.h"
#include "platform/pipewire/PropertyListeners.h"
#include "platform/pipewire/ServerConnection.h"
#include "platform/pipewire/ServerMirror.h"
#include "platform/pipewire/StreamChoice.h"

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

    /// Which of the nodes that these processes play through a tap can have.
    [[nodiscard]] StreamChoice chooseStreams(const std::vector<AudioObjectID>& owners) const {
        std::vector<const ServerNode*> playback = mirror.playback();
        std::erase_if(playback, [&](const ServerNode* node) {
            return std::find(owners.begin(), owners.end(), processes.ownerOf(node->ref)) ==
                   owners.end();
        });
        return pipewire::chooseStreams(
            playback, [this](const ServerNode& node) { return mirror.isHeard(node.ref.id); });
    }

    /// Another number after every restart of the server or the session manager.
    [[nodiscard]] std::uint64_t generation() const {
        return connection.connections() + mirror.defaults().binds();
    }
};

} // namespace orvanta::pipewire
