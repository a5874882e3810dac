#pragma once

#include "platform/embedded/DeviceSettings.h"

#include <optional>
#include <vector>

namespace orvanta::embedded {

/// Choices that hold for the whole server.
struct ServerSettings {
    /// Nominal rate of new aggregates in Hz; none: the rate of the device they play on. It is a
    /// figure to be read and set only, the cycles run at the rate of the device.
    std::optional<double> aggregateSampleRate = std::nullopt;
    bool aggregateSampleRateSettable = true;
    /// Volume controls of every new aggregate, heard on what the aggregate plays.
    std::vector<VolumeElement> aggregateVolumes = {};
    /// With false an aggregate on an unknown UID is made, and comes alive with such a device.
    bool refusesUnknownSubDevices = true;
    /// With false an unknown tap gives silence.
    bool refusesUnknownTaps = false;

    /// How taps deliver their two channels.
    BufferLayout tapLayout = BufferLayout::interleaved;
    /// Rate in the format of every tap; none: the rate at which its first program plays.
    std::optional<double> tapSampleRate = std::nullopt;

    /// Whether the first device that can play becomes the default output, and the first one left
    /// takes over when the default is unplugged. With false the default is then 0.
    bool choosesDefaultOutput = true;

    /// Lets IOProcs at rest sleep in stepped mode also, as they always do in real time.
    bool restsWhenStepped = false;

    /// Calls that the journal keeps; beyond it the oldest are dropped.
    std::size_t journalLimit = 100000;
};

} // namespace orvanta::embedded
