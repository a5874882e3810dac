#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace orvanta {

/// Float samples of some frames, each channel for itself.
class PCMBuffer {
public:
    /// None where there is no memory for it.
    [[nodiscard]] static std::optional<PCMBuffer> make(int channels, std::int64_t frames);

    [[nodiscard]] std::int64_t frames() const noexcept { return frames_; }

    [[nodiscard]] float* channel(int index) noexcept {
        return channels_[static_cast<std::size_t>(index)];
    }

    /// One pointer a channel.
    [[nodiscard]] std::span<const float* const> channels() const noexcept {
        return {channels_.data(), channels_.size()};
    }

private:
    PCMBuffer(std::unique_ptr<float[]> samples, int channels, std::int64_t frames);

    std::unique_ptr<float[]> samples_;
    std::vector<float*> channels_;
    std::int64_t frames_;
};

} // namespace orvanta
