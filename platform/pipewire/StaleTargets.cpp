#include "platform/pipewire/StaleTargets.h"

#include "platform/pipewire/StreamClaims.h"

#include <pipewire/keys.h>

#include <algorithm>

namespace orvanta::pipewire {

StaleTargets::StaleTargets(ServerMirror& mirror, const Logger& logger)
    : mirror_(mirror), logger_(logger), self_(currentTapOwner()) {}

void StaleTargets::remove() {
    MetadataMirror& metadata = mirror_.defaults();
    for (const auto& [stream, target] : metadata.all(kTargetKey)) {
        if (!isStale(target.value))
            continue;
        logger_.info("Stream %u is still bound to the tap '%s', whose owner is gone: freeing it",
                     stream, target.value.c_str());
        metadata.set(stream, kTargetKey, {});
    }
}

bool StaleTargets::isStale(const std::string& name) {
    const auto owner = tapOwner(name);
    if (!owner || *owner == self_)
        return false;
    // An owner in another container cannot be seen from here, but its node can.
    if (mirror_.hasNodeNamed(name)) {
        known_.erase(name);
        return false;
    }
    if (known_.contains(name))
        return false;
    if (!isAlive(*owner))
        return true;
    known_.insert(name);
    return false;
}

} // namespace orvanta::pipewire
