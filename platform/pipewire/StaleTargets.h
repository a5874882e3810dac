#pragma once

#include "core/platform/Logger.h"
#include "platform/pipewire/ServerMirror.h"
#include "platform/pipewire/TapName.h"

#include <set>
#include <string>

namespace orvanta::pipewire {

/// Frees the streams that taps of programs which are no longer alive have left bound to their
/// nodes. With the lock held.
class StaleTargets {
public:
    StaleTargets(ServerMirror& mirror, const Logger& logger);

    /// To be called when the mirror holds all that the server has. Looks at every foreign name
    /// once, and again when a node of that name has gone; all other calls cost next to nothing.
    void remove();

private:
    [[nodiscard]] bool isStale(const std::string& name);

    ServerMirror& mirror_;
    const Logger& logger_;
    TapOwner self_;
    /// Names without a node whose owners were found alive.
    std::set<std::string> known_;
};

} // namespace orvanta::pipewire
