#pragma once

#include "platform/pipewire/PropertyMap.h"

#include <optional>
#include <sys/types.h>

namespace orvanta::pipewire {

/// Which process plays through a stream, from the stream node's own properties and those of the
/// client that owns it; `client` is null until the server has described the client in full.
///
/// The peer of the client's socket is what the kernel says, in the ids of the server. What a
/// program says of itself is its id inside of its own container, so it counts only where there is
/// no peer, and for programs behind the PulseAudio bridge, where the peer is the bridge.
std::optional<pid_t> streamOwner(const PropertyMap& node, const PropertyMap* client);

} // namespace orvanta::pipewire
