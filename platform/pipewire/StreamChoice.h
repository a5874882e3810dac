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

/// Only what the session manager links by itself, and links anew whenever it must, can be had
/// without a risk. Were we to take the links of other nodes into our own hands, nobody would put
/// them back if this program were killed. And a stream that wants its device for itself is not let
/// back to one on which another program has begun to play meanwhile.
///
/// A stream that is only ever linked by hand is in nobody's way while it is not: `isHeard` says
/// whether a node is linked to anything that may be heard.
StreamChoice chooseStreams(const std::vector<const ServerNode*>& playback,
                           const std::function<bool(const ServerNode&)>& isHeard);

} // namespace orvanta::pipewire
