#pragma once

#include "core/platform/AudioClient.h"
#include "platform/pipewire/PropertyMap.h"

namespace orvanta::pipewire {

/// What a stream and the client that owns it (may be null) tell of their program; the process id is
/// not set. The stream is asked first: behind the PulseAudio bridge and in programs that play for
/// others it is the one that knows.
///
/// The name is `application.name` or nothing. What else there is names something smaller than a
/// program: `media.name` is the song, `node.name` and `node.description` are the stream, and the
/// desktop finds a better name by the binary.
AudioClient clientIdentity(const PropertyMap& node, const PropertyMap* client);

/// Fills what `client` does not know from `other`.
void complete(AudioClient& client, const AudioClient& other);

} // namespace orvanta::pipewire
