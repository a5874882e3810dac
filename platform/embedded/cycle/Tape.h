#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orvanta::embedded {

/// Keeps all samples appended to it. One thread appends at a time while others read, and neither
/// waits for the other.
class Tape {
public:
    /// The number of channels whose samples lie side by side in it.
    explicit Tape(std::uint32_t channels);
    Tape(const Tape&) = delete;
    Tape& operator=(const Tape&) = delete;
    ~Tape();

    void append(std::span<const float> samples);

    /// What whole appends have brought.
    [[nodiscard]] std::vector<float> contents() const;

    [[nodiscard]] std::uint32_t channels() const noexcept { return channels_; }

    [[nodiscard]] std::size_t size() const noexcept {
        return size_.load(std::memory_order_acquire);
    }

private:
    struct Chunk {
        std::array<float, 32768> samples;
        std::unique_ptr<Chunk> next;
    };

    std::uint32_t channels_;
    std::unique_ptr<Chunk> first_;
    Chunk* last_;
    /// Published after the samples and the link to their chunk: readers go no further.
    std::atomic<std::size_t> size_ = 0;
};

} // namespace orvanta::embedded
