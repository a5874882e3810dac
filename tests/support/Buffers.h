#pragma once

#include "core/platform/AudioBufferList.h"

#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace orvanta::test {

/// One side of an IO cycle with memory of its own. Blocks have exactly the size told, so that the
/// address sanitizer sees every step beyond them.
class Buffers {
public:
    Buffers() = default;
    Buffers(const Buffers&) = delete;
    Buffers& operator=(const Buffers&) = delete;

    /// Adds a buffer holding `samples` (all its channels interleaved).
    Buffers& add(std::uint32_t channels, std::vector<float> samples);
    /// Adds a buffer that claims `bytes` but has no memory.
    Buffers& addNull(std::uint32_t channels, std::uint32_t bytes);

    [[nodiscard]] AudioBufferList* list();

    [[nodiscard]] std::vector<float>& operator[](std::size_t index) { return storage_[index]; }

    [[nodiscard]] std::size_t count() const { return buffers_.size(); }

    /// What the buffer list says of a buffer; for tests that lie about sizes.
    [[nodiscard]] AudioBuffer& header(std::size_t index) { return buffers_[index]; }

private:
    std::deque<std::vector<float>> storage_;
    /// Memory of buffers without samples: there all the same, though not to be touched.
    float nothing_ = 0.0F;
    std::vector<AudioBuffer> buffers_;
    AudioBufferList list_;
};

} // namespace orvanta::test
