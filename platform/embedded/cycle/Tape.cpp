#include "platform/embedded/cycle/Tape.h"

#include <algorithm>

namespace orvanta::embedded {

Tape::Tape(std::uint32_t channels)
    : channels_(channels), first_(std::make_unique<Chunk>()), last_(first_.get()) {}

Tape::~Tape() {
    // One by one: a chain that frees itself recursively could exhaust the stack.
    while (first_)
        first_ = std::move(first_->next);
}

void Tape::append(std::span<const float> samples) {
    std::size_t size = size_.load(std::memory_order_relaxed);
    while (!samples.empty()) {
        const std::size_t used = size % last_->samples.size();
        if (used == 0 && size > 0) {
            last_->next = std::make_unique<Chunk>();
            last_ = last_->next.get();
        }
        const std::size_t count = std::min(samples.size(), last_->samples.size() - used);
        std::copy_n(samples.begin(), count, last_->samples.begin() + static_cast<long>(used));
        samples = samples.subspan(count);
        size += count;
    }
    size_.store(size, std::memory_order_release);
}

std::vector<float> Tape::contents() const {
    std::size_t left = size();
    std::vector<float> contents;
    contents.reserve(left);
    for (const Chunk* chunk = first_.get(); left > 0; chunk = chunk->next.get()) {
        const std::size_t count = std::min(left, chunk->samples.size());
        contents.insert(contents.end(), chunk->samples.begin(),
                        chunk->samples.begin() + static_cast<long>(count));
        left -= count;
        if (left == 0)
            break;
    }
    return contents;
}

} // namespace orvanta::embedded
