#include "core/recording/PCMBuffer.h"

#include <new>
#include <utility>

namespace orvanta {

std::optional<PCMBuffer> PCMBuffer::make(int channels, std::int64_t frames) {
    const auto count = static_cast<std::size_t>(channels) * static_cast<std::size_t>(frames);
    try {
        return PCMBuffer(std::make_unique<float[]>(count), channels, frames);
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

PCMBuffer::PCMBuffer(std::unique_ptr<float[]> samples, int channels, std::int64_t frames)
    : samples_(std::move(samples)), frames_(frames) {
    for (int index = 0; index < channels; ++index)
        channels_.push_back(samples_.get() + index * frames);
}

} // namespace orvanta
