#pragma once

#include "platform/pipewire/PropertyMap.h"

#include <optional>
#include <sys/types.h>

namespace orvanta::pipewire {

/// Which process plays through a stream, from the stream node's own properties and those of the
/// client that owns it; `client` is null until the server has described the client in full.
///
/// A program behind the PulseAudio bridge tells its id itself, on the node or on the client. The
/// peer of the client's socket is then the bridge, so that id must not be taken for the program's.
std::optional<pid_t> streamOwner(const PropertyMap& node, const PropertyMap* client);

} // namespace orvanta::pipewire
