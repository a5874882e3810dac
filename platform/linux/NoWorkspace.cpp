#include "platform/linux/NoWorkspace.h"

namespace orvanta {

std::optional<RunningApplication> NoWorkspace::runningApplication(std::int32_t /*pid*/) const {
    return std::nullopt;
}

IconRef NoWorkspace::iconForBundleIdentifier(const std::string& /*bundleIdentifier*/) const {
    return nullptr;
}

} // namespace orvanta
