#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvanta {

/// One block of 32-bit float samples: one channel, or several interleaved.
struct AudioBuffer {
    std::uint32_t mNumberChannels = 0;
    /// Size of the block in bytes, all channels counted.
    std::uint32_t mDataByteSize = 0;
    /// May be null: the buffer then takes or gives nothing.
    void* mData = nullptr;

    [[nodiscard]] float* samples() const noexcept { return static_cast<float*>(mData); }

    /// Number of whole samples, all channels of an interleaved buffer counted.
    [[nodiscard]] std::size_t sampleCount() const noexcept { return mDataByteSize / sizeof(float); }
};

/// A view on the buffers of one side of an IO cycle. Owns nothing.
struct AudioBufferList {
    std::span<AudioBuffer> mBuffers;

    [[nodiscard]] std::size_t count() const noexcept { return mBuffers.size(); }

    AudioBuffer& operator[](std::size_t index) const noexcept { return mBuffers[index]; }
};

} // namespace orvanta
