#pragma once

#include "core/platform/Cell.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace orvanta {

/// Moves interleaved frames of float samples from one thread to another whose device runs on a
/// clock of its own. One producer and one consumer, no lock, no wait, no allocation after the
/// constructor. Of `capacity` frames one always stays unused.
///
/// Full, it forgets its oldest frames; empty, it gives silence. It corrects no drift: what it can
/// tell of it are the two totals. When the producer moves the reader on, a read under way may undo
/// that, which costs some frames repeated or skipped.
///
/// A size that no memory has, a negative number of frames, and any frames at all through a ring of
/// capacity 0 are errors in the program and end it.
class DriftRingBuffer {
public:
    DriftRingBuffer(std::int64_t capacity, std::int64_t channels) noexcept;

    /// Producer: takes `frameCount` frames of `channels` samples each.
    void write(const float* frames, std::int64_t frameCount) noexcept;

    /// Consumer: fills all `frameCount` frames, with zeros from where none are held.
    void read(float* frames, std::int64_t frameCount) noexcept;

    /// Frames held now.
    [[nodiscard]] std::int64_t available() const noexcept;

    /// Frames ever passed to `write`.
    [[nodiscard]] std::uint64_t written() const noexcept { return totalWritten_.load(); }

    /// Frames ever asked of `read`, those that were not there included.
    [[nodiscard]] std::uint64_t readCount() const noexcept { return totalRead_.load(); }

private:
    /// A cell that no other shares a cache line with.
    struct alignas(64) Position {
        std::atomic<std::int64_t> frame = 0;
    };

    [[nodiscard]] std::int64_t held(std::int64_t writePosition,
                                    std::int64_t readPosition) const noexcept;
    void put(const float* source, std::int64_t frame, std::int64_t frameCount) noexcept;
    void take(float* target, std::int64_t frame, std::int64_t frameCount) const noexcept;

    const std::int64_t capacity_; ///< frames
    const std::int64_t channels_; ///< samples of a frame
    /// Single words, because an overrun may write a frame that is being read.
    const std::unique_ptr<Cell<float>[]> buffer_;
    // Frame indices, each in an allocation of its own.
    const std::unique_ptr<Position> writePos_;
    const std::unique_ptr<Position> readPos_;
    Cell<std::uint64_t> totalWritten_{0};
    Cell<std::uint64_t> totalRead_{0};
};

} // namespace orvanta
