#include "platform/embedded/cycle/CyclePlan.h"

#include <algorithm>

namespace orvanta::embedded {

void IOBuffers::add(BufferLayout layout, std::uint32_t channels, std::uint32_t frames) {
    if (channels == 0)
        return;
    const bool planar = layout == BufferLayout::planar;
    const std::uint32_t count = planar ? channels : 1;
    const std::uint32_t width = planar ? 1 : channels;
    for (std::uint32_t index = 0; index < count; ++index) {
        memory.emplace_back(std::size_t{frames} * width);
        buffers.push_back({width, 0, nullptr});
    }
    reset();
}

void IOBuffers::reset() noexcept {
    for (std::size_t index = 0; index < buffers.size(); ++index) {
        std::vector<float>& samples = memory[index];
        std::fill(samples.begin(), samples.end(), 0.0F);
        buffers[index].mDataByteSize = static_cast<std::uint32_t>(samples.size() * sizeof(float));
        buffers[index].mData = samples.data();
    }
}

} // namespace orvanta::embedded
