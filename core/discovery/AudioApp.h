#pragma once

#include "core/platform/AudioObject.h"
#include "core/platform/Workspace.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace orvanta {

/// Icon of an application: that of the installed bundle where there is one, otherwise that of the
/// running application of this process, null where there is neither.
IconRef lookUpIcon(const Workspace& workspace, const std::optional<std::string>& bundleIdentifier,
                   std::int32_t pid);

/// One discovered application. Two records are equal when their `pid` is, whatever else differs.
struct AudioApp {
    /// Finds the icon itself.
    AudioApp(const Workspace& workspace, AudioObjectID audioObjectID, std::int32_t pid,
             std::string name, std::optional<std::string> bundleIdentifier, bool isPlaying);

    AudioObjectID audioObjectID; ///< the process object a tap is made on
    std::int32_t pid;
    std::string name; ///< for people to read
    std::optional<std::string> bundleIdentifier;
    bool isPlaying; ///< the process runs audio now
    IconRef icon;

    [[nodiscard]] std::int32_t id() const { return pid; }

    friend bool operator==(const AudioApp& a, const AudioApp& b) { return a.pid == b.pid; }
};

} // namespace orvanta

template <>
struct std::hash<orvanta::AudioApp> {
    std::size_t operator()(const orvanta::AudioApp& app) const noexcept {
        return std::hash<std::int32_t>{}(app.pid);
    }
};
