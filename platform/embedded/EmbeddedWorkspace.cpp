#include "platform/embedded/EmbeddedWorkspace.h"

#include "platform/embedded/EmbeddedAudioServer.h"

#include <algorithm>

namespace orvanta {

using embedded::ProgramSettings;
using embedded::ProgramState;

namespace {

/// Where applications are installed.
const std::filesystem::path kApplications = "/embedded/applications";

bool isApplication(const ProgramState& program) {
    return program.settings.policy.has_value();
}

} // namespace

void EmbeddedWorkspace::add(RunningApplication application) {
    const std::scoped_lock guard(mutex_);
    if (!application.icon) {
        application.icon = iconOf(application.processIdentifier, application.bundleIdentifier);
    }
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

void EmbeddedWorkspace::setIcon(const std::string& bundleIdentifier, IconRef icon) {
    const std::scoped_lock guard(mutex_);
    icons_[bundleIdentifier] = std::move(icon);
}

std::optional<RunningApplication> EmbeddedWorkspace::runningApplication(std::int32_t pid) const {
    const auto programs = server_.programs();
    const std::scoped_lock guard(mutex_);
    const auto found = applications_.find(pid);
    if (found != applications_.end())
        return found->second;
    for (const ProgramState& program : programs)
        if (program.settings.pid == pid && isApplication(program))
            return applicationOf(program.settings);
    return std::nullopt;
}

std::vector<RunningApplication> EmbeddedWorkspace::runningApplications() const {
    const auto programs = server_.programs();
    const std::scoped_lock guard(mutex_);
    std::vector<RunningApplication> applications;
    std::set<std::int32_t> known;
    for (const ProgramState& program : programs) {
        const std::int32_t pid = program.settings.pid;
        if (isApplication(program) && !applications_.contains(pid) && known.insert(pid).second)
            applications.push_back(applicationOf(program.settings));
    }
    for (const auto& [pid, application] : applications_)
        applications.push_back(application);
    return applications;
}

std::optional<std::filesystem::path>
EmbeddedWorkspace::urlForApplication(const std::string& bundleIdentifier) const {
    const std::scoped_lock guard(mutex_);
    const bool known = installed_.contains(bundleIdentifier) || runs(bundleIdentifier);
    if (!known || uninstalled_.contains(bundleIdentifier))
        return std::nullopt;
    return kApplications / bundleIdentifier;
}

IconRef EmbeddedWorkspace::iconForFile(const std::filesystem::path& file) const {
    if (file.parent_path() != kApplications)
        return nullptr;
    const std::scoped_lock guard(mutex_);
    return iconOf(0, file.filename().string());
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

RunningApplication EmbeddedWorkspace::applicationOf(const ProgramSettings& settings) const {
    return {settings.pid, settings.name, settings.bundleIdentifier, *settings.policy,
            iconOf(settings.pid, settings.bundleIdentifier)};
}

IconRef EmbeddedWorkspace::iconOf(std::int32_t pid,
                                  const std::optional<std::string>& bundleIdentifier) const {
    const std::string key = bundleIdentifier.value_or("pid:" + std::to_string(pid));
    const auto found = icons_.find(key);
    return found != icons_.end() ? found->second : std::make_shared<EmbeddedIcon>(key);
}

} // namespace orvanta
