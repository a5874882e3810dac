#include "platform/linux/NoWorkspace.h"

namespace orvanta {

std::vector<RunningApplication> NoWorkspace::runningApplications() const {
    return {};
}

std::optional<RunningApplication> NoWorkspace::runningApplication(std::int32_t /*pid*/) const {
    return std::nullopt;
}

std::optional<std::filesystem::path>
NoWorkspace::urlForApplication(const std::string& /*bundleIdentifier*/) const {
    return std::nullopt;
}

IconRef NoWorkspace::iconForFile(const std::filesystem::path& /*file*/) const {
    return nullptr;
}

} // namespace orvanta
