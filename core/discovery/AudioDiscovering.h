#pragma once

#include "core/discovery/AudioApp.h"

#include <vector>

namespace orvanta {

/// A source of the applications that the user may mix now.
class AudioDiscovering {
public:
    AudioDiscovering() = default;
    AudioDiscovering(const AudioDiscovering&) = delete;
    AudioDiscovering& operator=(const AudioDiscovering&) = delete;
    virtual ~AudioDiscovering() = default;

    /// One record for each application, playing ones first, then by name. Empty when nothing can be
    /// read. May block; one thread at a time.
    [[nodiscard]] virtual std::vector<AudioApp> discoverAudioApps() = 0;
};

} // namespace orvanta
