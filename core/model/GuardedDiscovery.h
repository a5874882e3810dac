#pragma once

#include "core/discovery/AudioDiscovering.h"

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace orvanta {

/// Lets one thread at a time into a discovery: the queue that refreshes and whoever needs the list
/// at once.
class GuardedDiscovery final : public AudioDiscovering {
public:
    explicit GuardedDiscovery(std::shared_ptr<AudioDiscovering> discovery)
        : discovery_(std::move(discovery)) {}

    [[nodiscard]] std::vector<AudioApp> discoverAudioApps() override {
        const std::scoped_lock guard(mutex_);
        return discovery_->discoverAudioApps();
    }

private:
    const std::shared_ptr<AudioDiscovering> discovery_;
    std::mutex mutex_;
};

} // namespace orvanta
