#include "platform/pipewire/TransportType.h"

#include <pipewire/keys.h>

namespace orvanta::pipewire {
namespace {

bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

bool isBluetooth(const PropertyMap& device) {
    return device.text(PW_KEY_DEVICE_BUS) == "bluetooth" ||
           device.text(PW_KEY_DEVICE_API) == "bluez5" || device.has("api.bluez5.address") ||
           device.text(PW_KEY_NODE_NAME).rfind("bluez_", 0) == 0;
}

/// The sinks of a card with HDMI outputs differ by the profile only.
bool isHDMI(const PropertyMap& device) {
    return contains(device.text("device.profile.name"), "hdmi") ||
           contains(device.text(PW_KEY_NODE_NAME), "hdmi") ||
           contains(device.text("api.alsa.pcm.id"), "HDMI");
}

} // namespace

FourCharCode transportType(const PropertyMap& device) {
    if (isBluetooth(device))
        return kAudioDeviceTransportTypeBluetooth;
    if (isHDMI(device))
        return kAudioDeviceTransportTypeHDMI;
    if (device.text(PW_KEY_DEVICE_BUS) == "usb")
        return kAudioDeviceTransportTypeUSB;
    if (device.text(PW_KEY_DEVICE_FORM_FACTOR) == "internal")
        return kAudioDeviceTransportTypeBuiltIn;
    if (device.text(PW_KEY_DEVICE_BUS) == "pci")
        return kAudioDeviceTransportTypePCI;
    if (device.text(PW_KEY_DEVICE_BUS) == "platform" || device.text(PW_KEY_DEVICE_BUS) == "isa")
        return kAudioDeviceTransportTypeBuiltIn;
    if (device.text(PW_KEY_DEVICE_API) == "alsa" || device.has(PW_KEY_DEVICE_ID))
        return kAudioDeviceTransportTypeUnknown;
    return kAudioDeviceTransportTypeVirtual;
}

} // namespace orvanta::pipewire
