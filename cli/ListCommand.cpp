#include "cli/ListCommand.h"

#include "cli/Options.h"
#include "core/discovery/AudioProcessDiscovery.h"
#include "core/platform/AudioProperties.h"

#include <fmt/format.h>

#include <cmath>

namespace orvanta::cli {
namespace {

/// What the mixer offers.
void printApplications(const Platform& platform) {
    const auto apps = AudioProcessDiscovery(platform).discoverAudioApps();
    fmt::print("Applications\n");
    if (apps.empty()) {
        fmt::print("  none\n");
        return;
    }
    fmt::print("  {:>8}  {:<7}  {:<28}  {}\n", "PID", "playing", "name", "identifier");
    for (const AudioApp& app : apps)
        fmt::print("  {:>8}  {:<7}  {:<28}  {}\n", app.pid, app.isPlaying ? "yes" : "no", app.name,
                   app.bundleIdentifier.value_or("-"));
}

void printProcesses(const Platform& platform) {
    const auto apps = AudioProcessDiscovery(platform).discoverAllAudioProcesses();
    fmt::print("Audio processes\n");
    if (apps.empty()) {
        fmt::print("  none\n");
        return;
    }
    fmt::print("  {:>8}  {:<7}  {:>6}  {}\n", "PID", "playing", "object", "name");
    for (const AudioApp& app : apps)
        fmt::print("  {:>8}  {:<7}  {:>6}  {}\n", app.pid, app.isPlaying ? "yes" : "no",
                   app.audioObjectID, app.name);
}

std::string volumeText(AudioHardware& hardware, AudioObjectID device) {
    const auto volume = readFloat32(
        hardware, device, {kAudioDevicePropertyVolumeScalar, kAudioObjectPropertyScopeOutput});
    return volume ? fmt::format("{:.0f} %", std::round(*volume * 100.0F)) : "-";
}

void printDevices(AudioHardware& hardware) {
    const auto devices = deviceList(hardware);
    const auto standard = defaultOutputDevice(hardware);
    fmt::print("Output devices (* default)\n");
    if (devices.empty()) {
        fmt::print("  none\n");
        return;
    }
    fmt::print("  {:>6}  {:>9}  {:>6}  {:<9}  {:<28}  {}\n", "object", "rate", "volume",
               "transport", "UID", "name");
    for (const AudioObjectID device : devices) {
        const auto rate =
            readFloat64(hardware, device, {kAudioDevicePropertyNominalSampleRate}).value_or(0);
        const auto transport =
            readUInt32(hardware, device, {kAudioDevicePropertyTransportType}).value_or(0);
        fmt::print("{} {:>6}  {:>6.0f} Hz  {:>6}  {:<9}  {:<28}  {}\n",
                   device == standard ? "*" : " ", device, rate, volumeText(hardware, device),
                   transport == 0 ? "-" : fourCharText(transport),
                   readString(hardware, device, {kAudioDevicePropertyDeviceUID}).value_or("-"),
                   readString(hardware, device, {kAudioObjectPropertyName}).value_or("-"));
    }
}

} // namespace

int runListCommand(const Platform& platform) {
    printApplications(platform);
    printProcesses(platform);
    printDevices(platform.audioHardware);
    return kExitSuccess;
}

} // namespace orvanta::cli
