#include "platform/pipewire/TransportType.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

namespace orvanta::pipewire {
namespace {

FourCharCode typeOf(std::initializer_list<std::pair<const char*, const char*>> entries) {
    PropertyMap map;
    for (const auto& [key, value] : entries)
        map.set(key, value);
    return transportType(map);
}

TEST(TransportType, OfADeviceWithoutHardwareIsVirtual) {
    EXPECT_EQ(typeOf({{"node.name", "null"}}), kAudioDeviceTransportTypeVirtual);
    EXPECT_EQ(typeOf({}), kAudioDeviceTransportTypeVirtual);
}

TEST(TransportType, OfBluetoothIsKnownByAnyOfItsMarks) {
    EXPECT_EQ(typeOf({{"device.bus", "bluetooth"}}), kAudioDeviceTransportTypeBluetooth);
    EXPECT_EQ(typeOf({{"device.api", "bluez5"}}), kAudioDeviceTransportTypeBluetooth);
    EXPECT_EQ(typeOf({{"api.bluez5.address", "00:11"}}), kAudioDeviceTransportTypeBluetooth);
    EXPECT_EQ(typeOf({{"node.name", "bluez_output.00_11.1"}}), kAudioDeviceTransportTypeBluetooth);
}

TEST(TransportType, OfACardIsThatOfItsBus) {
    EXPECT_EQ(typeOf({{"device.api", "alsa"}, {"device.bus", "usb"}}),
              kAudioDeviceTransportTypeUSB);
    EXPECT_EQ(typeOf({{"device.api", "alsa"}, {"device.bus", "pci"}}),
              kAudioDeviceTransportTypePCI);
    EXPECT_EQ(
        typeOf({{"device.api", "alsa"}, {"device.bus", "pci"}, {"device.form-factor", "internal"}}),
        kAudioDeviceTransportTypeBuiltIn);
    EXPECT_EQ(typeOf({{"device.api", "alsa"},
                      {"device.bus", "pci"},
                      {"device.profile.name", "hdmi-stereo"}}),
              kAudioDeviceTransportTypeHDMI);
    EXPECT_EQ(typeOf({{"device.api", "alsa"}}), kAudioDeviceTransportTypeUnknown);
}

} // namespace
} // namespace orvanta::pipewire
