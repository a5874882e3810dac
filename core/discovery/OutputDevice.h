#pragma once

#include "core/platform/AudioObject.h"

#include <functional>
#include <string>

namespace orvanta {

/// A device that can play. Two records are equal when their `uid` is, whatever else differs.
struct OutputDevice {
    AudioObjectID id = kAudioObjectUnknown;
    std::string uid = {}; ///< lasts over replugging and restarts
    std::string name = {};
    std::string manufacturer = {}; ///< may be empty
    bool isDefault = false;        ///< the system plays on it when nothing else is chosen

    friend bool operator==(const OutputDevice& a, const OutputDevice& b) { return a.uid == b.uid; }
};

} // namespace orvanta

template <>
struct std::hash<orvanta::OutputDevice> {
    std::size_t operator()(const orvanta::OutputDevice& device) const noexcept {
        return std::hash<std::string>{}(device.uid);
    }
};
