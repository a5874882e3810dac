#pragma once

#include "platform/pipewire/ServerObjects.h"

#include <functional>
#include <vector>

namespace orvanta::pipewire {

/// Which of the nodes that a process plays through a tap can have.
struct StreamChoice {
    std::vector<NodeRef> toClaim;
    /// What would go on sounding beside the tap.
    std::vector<NodeRef> toLeave;
};

/// Only what the session manager links by itself, and links anew when told to, can be had without
/// a risk: were we to take the links of other nodes into our own hands, nobody would put them back
/// if this program were killed.
///
/// A stream that wants its device for itself is had alone or not at all, because the session
/// manager would leave whatever shares a target with it without any. What is claimed already, as
/// `isClaimed` says, goes before what is new.
StreamChoice chooseStreams(const std::vector<const ServerNode*>& playback,
                           const std::function<bool(const NodeRef&)>& isClaimed);

} // namespace orvanta::pipewire
