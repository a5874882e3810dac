#pragma once

#include "core/platform/AudioHardware.h"

#include <set>
#include <string>

/// The volume of output devices themselves, which is apart from that of what plays on them.
namespace orvanta {

/// 0 to 1, of the device's main control or, where it has none, of its first channel. 1 where it
/// has neither, or where it cannot be read.
[[nodiscard]] float readDeviceVolume(AudioHardware& hardware, AudioObjectID device);

/// Of the default output and of the devices with these UIDs: of the main control where it can be
/// set, else of the first two channels. Those that are not there, or that have nothing to set, are
/// passed over. From any thread.
void writeDeviceVolumes(AudioHardware& hardware, const std::set<std::string>& uids, float volume);

} // namespace orvanta
