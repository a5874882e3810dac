#include "core/discovery/AudioApp.h"

#include <utility>

namespace orvanta {

IconRef lookUpIcon(const Workspace& workspace, const std::optional<std::string>& bundleIdentifier,
                   std::int32_t pid) {
    if (bundleIdentifier)
        if (const auto place = workspace.urlForApplication(*bundleIdentifier))
            return workspace.iconForFile(*place);
    const auto application = workspace.runningApplication(pid);
    return application ? application->icon : nullptr;
}

AudioApp::AudioApp(const Workspace& workspace, AudioObjectID processObject,
                   std::int32_t processIdentifier, std::string displayName,
                   std::optional<std::string> bundle, bool playing)
    : audioObjectID(processObject),
      pid(processIdentifier),
      name(std::move(displayName)),
      bundleIdentifier(std::move(bundle)),
      isPlaying(playing),
      icon(lookUpIcon(workspace, bundleIdentifier, pid)) {}

} // namespace orvanta
