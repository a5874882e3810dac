#include "core/recording/PCMBuffer.h"

#include <new>
#include <utility>

namespace orvanta {

std::optional<PCMBuffer> PCMBuffer::make(int channels, std::int64_t frames) {
    const auto count = static_cast<std::size_t>(channels) * static_cast<std::size_t>(frames);
    std::unique_ptr<float[]> samples(new (std::nothrow) float[count]);
    if (!samples)
        return std::nullopt;
    return PCMBuffer(std::move(samples), channels, frames);
}

PCMBuffer::PCMBuffer(std::unique_ptr<float[]> samples, int channels, std::int64_t frames)
    : samples_(std::move(samples)) {
    for (int index = 0; index < channels; ++index)
        channels_.push_back(samples_.get() + index * frames);
}

} // namespace orvanta
