#include "core/discovery/AudioProcessDiscovery.h"

#include "core/platform/AudioProperties.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace orvanta {
namespace {

std::string lastPathComponent(std::string_view path) {
    const auto slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

} // namespace

AudioProcessDiscovery::AudioProcessDiscovery(const Platform& platform)
    : hardware_(platform.audioHardware),
      processTable_(platform.processTable),
      workspace_(platform.workspace) {}

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
