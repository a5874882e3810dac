#include "core/platform/StreamConfiguration.h"

#include "core/platform/AudioBufferList.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace orvanta {
namespace {

static_assert(std::is_trivially_copyable_v<AudioBuffer>);

/// The number of buffers stands where the alignment of the first one allows.
constexpr std::size_t kFirstBuffer = alignof(AudioBuffer);

} // namespace

std::vector<std::byte> streamConfiguration(std::span<const std::uint32_t> channelsOfStreams) {
    const auto count = static_cast<std::uint32_t>(channelsOfStreams.size());
    std::vector<std::byte> data(kFirstBuffer + count * sizeof(AudioBuffer));
    std::memcpy(data.data(), &count, sizeof count);
    std::byte* place = data.data() + kFirstBuffer;
    for (const std::uint32_t channels : channelsOfStreams) {
        const AudioBuffer buffer{.mNumberChannels = channels};
        std::memcpy(place, &buffer, sizeof buffer);
        place += sizeof buffer;
    }
    return data;
}

std::uint64_t channelCount(std::span<const std::byte> streamConfiguration) {
    if (streamConfiguration.size() < kFirstBuffer)
        return 0;
    std::uint32_t count = 0;
    std::memcpy(&count, streamConfiguration.data(), sizeof count);
    const std::size_t held = (streamConfiguration.size() - kFirstBuffer) / sizeof(AudioBuffer);
    std::uint64_t channels = 0;
    for (std::size_t index = 0; index < std::min<std::size_t>(count, held); ++index) {
        AudioBuffer buffer;
        std::memcpy(&buffer,
                    streamConfiguration.data() + kFirstBuffer + index * sizeof(AudioBuffer),
                    sizeof buffer);
        channels += buffer.mNumberChannels;
    }
    return channels;
}

} // namespace orvanta
