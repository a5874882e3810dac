#include "core/discovery/AudioProcessDiscovery.h"

#include "core/discovery/ProcessNames.h"
#include "core/platform/AudioProperties.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace orvanta {
namespace {

std::string lastPathComponent(std::string_view path) {
    const auto slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

/// The helpers of one browser engine have no telling name, only a bundle.
bool isHelperProcess(const AudioApp& process) {
    return hasHelperNameMarker(process.name) ||
           (process.bundleIdentifier && process.bundleIdentifier->starts_with("com.apple.WebKit"));
}

} // namespace

AudioProcessDiscovery::AudioProcessDiscovery(const Platform& platform)
    : hardware_(platform.audioHardware),
      processTable_(platform.processTable),
      workspace_(platform.workspace),
      parentApps_(platform.processTable, platform.workspace, nameOrder_) {}

std::vector<AudioApp> AudioProcessDiscovery::discoverAudioApps() {
    std::vector<AudioApp> apps;
    // Each gets its icon anew, so that it shows the bundle that the name stands for.
    for (const auto& [name, entry] : merged(countedProcesses()))
        apps.emplace_back(workspace_, entry.audioObjectID, entry.pid, name, entry.bundleIdentifier,
                          entry.isPlaying);
    std::stable_sort(apps.begin(), apps.end(), [this](const AudioApp& a, const AudioApp& b) {
        if (a.isPlaying != b.isPlaying)
            return a.isPlaying;
        return nameOrder_.isAscending(a.name, b.name);
    });
    return apps;
}

std::vector<AudioProcessDiscovery::CountedProcess> AudioProcessDiscovery::countedProcesses() {
    const std::vector<AudioApp> processes = rawList();
    const std::vector<RunningApplication> apps = workspace_.runningApplications();
    std::vector<CountedProcess> counted;
    for (const AudioApp& process : processes)
        if (auto identity = identityOf(process, apps))
            counted.push_back({process, std::move(*identity)});
    return counted;
}

/// Nothing for a process that is not listed.
std::optional<ResolvedIdentity>
AudioProcessDiscovery::identityOf(const AudioApp& process,
                                  const std::vector<RunningApplication>& apps) {
    // The name, not the bundle: a process known by a reverse-domain string only is noise, while the
    // system vendor's applications have proper names and stay.
    if (excludedProcessNames().contains(process.name) || process.name.starts_with("com.apple."))
        return std::nullopt;
    if (isHelperProcess(process))
        return parentApps_.resolveParentApp(process.pid, process.name, apps);
    const auto app = std::find_if(apps.begin(), apps.end(), [&](const RunningApplication& entry) {
        return entry.processIdentifier == process.pid;
    });
    if (app == apps.end() || app->activationPolicy != ActivationPolicy::regular)
        return std::nullopt;
    return ResolvedIdentity{process.name, process.bundleIdentifier, process.icon};
}

AudioProcessDiscovery::MergedApps
AudioProcessDiscovery::merged(const std::vector<CountedProcess>& processes) {
    MergedApps apps;
    for (const auto& [process, resolved] : processes) {
        const auto& bundle = resolved.bundleIdentifier;
        const auto [found, isNew] = apps.try_emplace(
            resolved.name, MergedAppEntry{bundle ? bundle : process.bundleIdentifier,
                                          process.audioObjectID, process.pid, process.isPlaying});
        MergedAppEntry& entry = found->second;
        if (isNew || !process.isPlaying || entry.isPlaying)
            continue;
        entry = {bundle ? bundle : entry.bundleIdentifier, process.audioObjectID, process.pid,
                 true};
    }
    return apps;
}

std::vector<AudioApp> AudioProcessDiscovery::discoverAllAudioProcesses() const {
    std::vector<AudioApp> apps = rawList();
    std::stable_sort(apps.begin(), apps.end(), [this](const AudioApp& a, const AudioApp& b) {
        return nameOrder_.isAscending(a.name, b.name);
    });
    return apps;
}

std::vector<AudioApp> AudioProcessDiscovery::rawList() const {
    std::vector<AudioApp> apps;
    for (const AudioObjectID object : readObjectList(hardware_, kAudioObjectSystemObject,
                                                     {kAudioHardwarePropertyProcessObjectList})) {
        const auto app = readRawProcess(object);
        if (app && std::find(apps.begin(), apps.end(), *app) == apps.end())
            apps.push_back(*app);
    }
    return apps;
}

std::optional<AudioApp> AudioProcessDiscovery::readRawProcess(AudioObjectID object) const {
    const auto pid = readInt32(hardware_, object, {kAudioProcessPropertyPID});
    if (!pid || *pid < 1 || *pid == processTable_.ownPID())
        return std::nullopt;
    const bool isPlaying = isProcessRunning(object);
    if (const auto application = workspace_.runningApplication(*pid)) {
        auto name = application->localizedName.value_or(fmt::format("Unknown (PID: {})", *pid));
        return AudioApp(workspace_, object, *pid, std::move(name), application->bundleIdentifier,
                        isPlaying);
    }
    auto name = fallbackProcessName(*pid).value_or(fmt::format("Process {}", *pid));
    return AudioApp(workspace_, object, *pid, std::move(name), std::nullopt, isPlaying);
}

bool AudioProcessDiscovery::isProcessRunning(AudioObjectID object) const {
    return readUInt32(hardware_, object, {kAudioProcessPropertyIsRunningOutput}).value_or(0) != 0 ||
           readUInt32(hardware_, object, {kAudioProcessPropertyIsRunning}).value_or(0) != 0;
}

std::optional<std::string> AudioProcessDiscovery::fallbackProcessName(std::int32_t pid) const {
    if (auto name = processTable_.name(pid); name && !name->empty())
        return name;
    const auto path = processTable_.path(pid);
    if (!path || path->empty())
        return std::nullopt;
    // The innermost bundle of a nested path names the program.
    const auto bundle = path->rfind(".app");
    return lastPathComponent(std::string_view(*path).substr(0, bundle));
}

} // namespace orvanta
