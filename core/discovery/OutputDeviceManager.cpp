#include "core/discovery/OutputDeviceManager.h"

#include "core/platform/AudioProperties.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>
#include <utility>

namespace orvanta {
namespace {

/// What the list and the default depend on, in the order in which they are listened to.
constexpr std::array<AudioObjectPropertyAddress, 2> kWatched{
    {{kAudioHardwarePropertyDevices}, {kAudioHardwarePropertyDefaultOutputDevice}}};

/// Devices of this program's own making.
bool isOwn(std::string_view uid) {
    return uid.starts_with("com.meridane.orvanta") || uid.starts_with("com.orvanta");
}

/// In all that is known of them, where equality looks at the UID only.
bool areAlike(const OutputDevice& a, const OutputDevice& b) {
    const auto known = [](const OutputDevice& device) {
        return std::tie(device.id, device.uid, device.name, device.manufacturer, device.isDefault);
    };
    return known(a) == known(b);
}

} // namespace

OutputDeviceManager::OutputDeviceManager(const Platform& platform)
    : hardware_(platform.audioHardware), mainRunLoop_(platform.mainRunLoop) {
    refresh();
    for (const auto& address : kWatched)
        hardware_.addPropertyListener(kAudioObjectSystemObject, address, changeListener, this);
}

OutputDeviceManager::~OutputDeviceManager() {
    access_.end();
    for (const auto& address : kWatched)
        hardware_.removePropertyListener(kAudioObjectSystemObject, address, changeListener, this);
}

OSStatus OutputDeviceManager::changeListener(AudioObjectID /*object*/,
                                             const AudioObjectPropertyAddress& /*address*/,
                                             void* clientData) {
    const auto& manager = *static_cast<const OutputDeviceManager*>(clientData);
    manager.mainRunLoop_.post(
        manager.access_.task([](OutputDeviceManager& self) { self.refresh(); }));
    return noErr;
}

void OutputDeviceManager::refresh() {
    const auto devices = readDevices();
    const auto defaultUID = readDefaultUID();
    mainRunLoop_.post(access_.task(
        [devices, defaultUID](OutputDeviceManager& self) { self.publish(devices, defaultUID); }));
}

void OutputDeviceManager::publish(std::vector<OutputDevice> devices,
                                  const std::string& defaultUID) {
    for (OutputDevice& device : devices)
        device.isDefault = !defaultUID.empty() && device.uid == defaultUID;
    const bool isNew = defaultUID != defaultDeviceUID_.get() ||
                       !std::ranges::equal(devices, availableDevices_.get(), areAlike);
    availableDevices_.set(std::move(devices));
    defaultDeviceUID_.set(defaultUID);
    if (isNew)
        changed_.tell();
}

std::vector<OutputDevice> OutputDeviceManager::readDevices() const {
    std::vector<OutputDevice> devices;
    for (const AudioObjectID id : deviceList(hardware_))
        if (auto device = readDevice(id))
            devices.push_back(std::move(*device));
    std::stable_sort(devices.begin(), devices.end(),
                     [this](const OutputDevice& a, const OutputDevice& b) {
                         return nameOrder_.isAscending(a.name, b.name);
                     });
    return devices;
}

/// Nothing for what cannot play, has no UID, or is our own.
std::optional<OutputDevice> OutputDeviceManager::readDevice(AudioObjectID device) const {
    const auto channels = readChannelCount(hardware_, device, kAudioObjectPropertyScopeOutput);
    if (channels.value_or(0) == 0)
        return std::nullopt;
    auto uid = readString(hardware_, device, {kAudioDevicePropertyDeviceUID});
    if (!uid || isOwn(*uid))
        return std::nullopt;
    auto name = readString(hardware_, device, {kAudioObjectPropertyName});
    auto manufacturer = readString(hardware_, device, {kAudioObjectPropertyManufacturer});
    return OutputDevice{.id = device,
                        .uid = std::move(*uid),
                        .name = std::move(name).value_or("Unknown Device"),
                        .manufacturer = std::move(manufacturer).value_or("")};
}

std::string OutputDeviceManager::readDefaultUID() const {
    const auto device = defaultOutputDevice(hardware_);
    if (!device)
        return {};
    return readString(hardware_, *device, {kAudioDevicePropertyDeviceUID}).value_or("");
}

} // namespace orvanta
