#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orvanta {

/// The data of kAudioDevicePropertyStreamConfiguration: Core Audio's own record of a list of
/// buffers, one for each stream, with a number of channels and without samples.
std::vector<std::byte> streamConfiguration(std::span<const std::uint32_t> channelsOfStreams);

/// Channels of all streams together; buffers that the data does not hold in full count as none.
std::uint64_t channelCount(std::span<const std::byte> streamConfiguration);

} // namespace orvanta
