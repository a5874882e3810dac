#include "tests/support/Buffers.h"

#include <utility>

namespace orvanta::test {

Buffers& Buffers::add(std::uint32_t channels, std::vector<float> samples) {
    auto& stored = storage_.emplace_back(std::move(samples));
    stored.shrink_to_fit();
    buffers_.push_back({channels, static_cast<std::uint32_t>(stored.size() * sizeof(float)),
                        stored.empty() ? &nothing_ : stored.data()});
    return *this;
}

Buffers& Buffers::addNull(std::uint32_t channels, std::uint32_t bytes) {
    storage_.emplace_back();
    buffers_.push_back({channels, bytes, nullptr});
    return *this;
}

AudioBufferList* Buffers::list() {
    list_.mBuffers = buffers_;
    return &list_;
}

} // namespace orvanta::test
