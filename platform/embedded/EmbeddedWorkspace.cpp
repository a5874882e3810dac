#include "platform/embedded/EmbeddedWorkspace.h"

#include "platform/embedded/EmbeddedAudioServer.h"

#include <algorithm>

namespace orvanta {

using embedded::ProgramSettings;
using embedded::ProgramState;

namespace {

IconRef iconOf(std::int32_t pid, const std::optional<std::string>& bundleIdentifier) {
    return std::make_shared<EmbeddedIcon>(bundleIdentifier.value_or("pid:" + std::to_string(pid)));
}

bool isApplication(const ProgramState& program) {
    return program.settings.policy.has_value();
}

} // namespace

void EmbeddedWorkspace::add(RunningApplication application) {
    if (!application.icon) {
        application.icon = iconOf(application.processIdentifier, application.bundleIdentifier);
    }
    const std::scoped_lock guard(mutex_);
    applications_[application.processIdentifier] = std::move(application);
}

void EmbeddedWorkspace::remove(std::int32_t pid) {
    const std::scoped_lock guard(mutex_);
    applications_.erase(pid);
}

void EmbeddedWorkspace::install(const std::string& bundleIdentifier) {
    const std::scoped_lock guard(mutex_);
    installed_.insert(bundleIdentifier);
    uninstalled_.erase(bundleIdentifier);
}

void EmbeddedWorkspace::uninstall(const std::string& bundleIdentifier) {
    const std::scoped_lock guard(mutex_);
    installed_.erase(bundleIdentifier);
    uninstalled_.insert(bundleIdentifier);
}

std::optional<RunningApplication> EmbeddedWorkspace::runningApplication(std::int32_t pid) const {
    {
        const std::scoped_lock guard(mutex_);
        const auto found = applications_.find(pid);
        if (found != applications_.end())
            return found->second;
    }
    for (const ProgramState& program : server_.programs()) {
        const ProgramSettings& settings = program.settings;
        if (settings.pid == pid && isApplication(program)) {
            return RunningApplication{pid, settings.name, settings.bundleIdentifier,
                                      *settings.policy, iconOf(pid, settings.bundleIdentifier)};
        }
    }
    return std::nullopt;
}

IconRef EmbeddedWorkspace::iconForBundleIdentifier(const std::string& bundleIdentifier) const {
    const std::scoped_lock guard(mutex_);
    const bool known = installed_.contains(bundleIdentifier) || runs(bundleIdentifier);
    if (!known || uninstalled_.contains(bundleIdentifier))
        return nullptr;
    return std::make_shared<EmbeddedIcon>(bundleIdentifier);
}

bool EmbeddedWorkspace::runs(const std::string& bundleIdentifier) const {
    const auto programs = server_.programs();
    const bool asProgram =
        std::any_of(programs.begin(), programs.end(), [&](const ProgramState& program) {
            return isApplication(program) && program.settings.bundleIdentifier == bundleIdentifier;
        });
    return asProgram ||
           std::any_of(applications_.begin(), applications_.end(), [&](const auto& entry) {
               return entry.second.bundleIdentifier == bundleIdentifier;
           });
}

} // namespace orvanta
