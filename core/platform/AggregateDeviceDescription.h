#pragma once

#include <string>
#include <vector>

namespace orvanta {

/// The record composed for the audio system when an aggregate device is asked for. Every field
/// carries the key under which the system's own dictionary form has it.
struct AggregateDeviceDescription {
    std::string uid;                     ///< "uid": new for every build
    std::string name;                    ///< "name"
    bool isPrivate = true;               ///< "private": only this process sees the device
    bool isStacked = false;              ///< "stacked"
    std::vector<std::string> taps;       ///< "taps": the UUIDs of the taps that are its input
    std::vector<std::string> subDevices; ///< "subdevices": UIDs of the devices it plays on
    std::string master;                  ///< "master": UID of the device whose clock leads
    bool tapAutoStart = true;            ///< "tapautostart": taps run as soon as the device runs

    friend bool operator==(const AggregateDeviceDescription&,
                           const AggregateDeviceDescription&) = default;
};

} // namespace orvanta
