#include "core/discovery/ParentAppResolver.h"

#include "core/discovery/ProcessNames.h"

#include <sstream>

namespace orvanta {
namespace {

/// Helpers of helpers are seldom deeper than this, and no tree may hold a pass up.
constexpr int kParentSteps = 8;

/// The kernel's and the init process's ids lie below.
constexpr std::int32_t kFirstOrdinaryPID = 2;

constexpr const char* kNameless = "Unknown";

/// What the application may be called, most likely first: the helper's name without what marks it
/// as one, its first two words, its first word.
std::vector<std::string> candidateNames(const std::string& helperName) {
    std::vector<std::string> candidates{withoutHelperNameMarkers(helperName)};
    std::vector<std::string> words;
    std::istringstream pieces(helperName);
    for (std::string word; std::getline(pieces, word, ' ');)
        if (!word.empty())
            words.push_back(word);
    if (words.size() >= 2)
        candidates.push_back(words[0] + " " + words[1]);
    if (!words.empty())
        candidates.push_back(words[0]);
    return candidates;
}

} // namespace

ParentAppResolver::ParentAppResolver(const ProcessTable& processTable, const Workspace& workspace,
                                     const NameOrder& nameOrder)
    : processTable_(processTable), workspace_(workspace), nameOrder_(nameOrder) {}

std::optional<ResolvedIdentity>
ParentAppResolver::resolveParentApp(std::int32_t pid, const std::string& name,
                                    const std::vector<RunningApplication>& apps) {
    if (const auto ancestor = findInProcessTree(pid))
        return resolvedIdentity(*ancestor);
    for (const std::string& candidate : candidateNames(name))
        if (const RunningApplication* const app = findByName(candidate, apps))
            return resolvedIdentity(*app);
    return std::nullopt;
}

std::optional<RunningApplication> ParentAppResolver::findInProcessTree(std::int32_t pid) const {
    std::int32_t current = pid;
    for (int step = 0; step < kParentSteps; ++step) {
        const auto parent = processTable_.parent(current);
        if (!parent || *parent < kFirstOrdinaryPID)
            return std::nullopt;
        current = *parent;
        auto app = workspace_.runningApplication(current);
        if (!app)
            continue;
        const std::string name = app->localizedName.value_or(kNameless);
        if (name == "launchd" || name == "kernel_task")
            return std::nullopt;
        // A helper's parent can be a helper.
        if (!hasHelperNameMarker(name))
            return app;
    }
    return std::nullopt;
}

const RunningApplication*
ParentAppResolver::findByName(const std::string& name,
                              const std::vector<RunningApplication>& apps) const {
    if (name.empty())
        return nullptr;
    for (const RunningApplication& app : apps)
        if (app.localizedName && nameOrder_.isSame(*app.localizedName, name) &&
            !excludedProcessNames().contains(*app.localizedName))
            return &app;
    return nullptr;
}

ResolvedIdentity ParentAppResolver::resolvedIdentity(const RunningApplication& app) {
    return {app.localizedName.value_or(kNameless), app.bundleIdentifier,
            app.bundleIdentifier ? iconOfBundle(*app.bundleIdentifier) : app.icon};
}

IconRef ParentAppResolver::iconOfBundle(const std::string& bundleIdentifier) {
    if (const auto known = iconCache_.find(bundleIdentifier); known != iconCache_.end())
        return known->second;
    const auto place = workspace_.urlForApplication(bundleIdentifier);
    if (!place)
        return nullptr;
    IconRef icon = workspace_.iconForFile(*place);
    if (icon)
        iconCache_[bundleIdentifier] = icon;
    return icon;
}

} // namespace orvanta
