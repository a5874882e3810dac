#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace orvanta {

/// Samples on their way from one producer (an IO thread, which never waits) to one consumer (a
/// writer), frame by frame, channels interleaved. What does not fit is dropped in whole blocks.
///
/// Both counters run on and are masked only to find a place, so the ring can be filled to the last
/// sample. A producer that is still inside a write when the ring is cleared publishes nothing any
/// more: the counter it moves carries the number of the clearing.
class SampleRing {
public:
    static constexpr std::int64_t bufferCapacity = 262144; ///< samples, a power of two
    static constexpr std::int64_t bufferMask = bufferCapacity - 1;

    /// `channels` must be above 0.
    explicit SampleRing(int channels);

    /// Takes the ring's memory from the system, a mebibyte, which most rings never need: not many
    /// programs are recorded. Before anybody produces: a producer that had to take it itself would
    /// wait for the system at every page.
    void takeMemory() noexcept;

    /// Producer: one channel of a planar block. The channels of a block come one after the other,
    /// in ascending order; the last one publishes as many frames as it has. Whether there is room
    /// is asked at the block's first channel, for all of them. What a channel does not give,
    /// because it was left out or is shorter than the last, is silence. A channel that is none does
    /// nothing.
    void writeSamples(const float* samples, std::int64_t count, std::int64_t channel) noexcept;

    /// Producer: a channel that is not to be written. The rest of its block will not be either.
    void passOver(std::int64_t channel) noexcept;

    /// Producer: a whole block of `total` samples.
    void writeInterleavedSamples(const float* samples, std::int64_t total) noexcept;

    /// Consumer: frames that can be read. Samples of a frame that is not whole yet are not counted.
    [[nodiscard]] std::int64_t usedFrames() const noexcept;

    /// Consumer: one channel of the next `frames` frames, of which there must be as many.
    void copyChannel(int channel, std::int64_t frames, float* samples) const noexcept;

    /// Consumer: gives the place of the next `frames` frames back to the producer.
    void consume(std::int64_t frames) noexcept;

    /// Empties the ring, while nobody consumes.
    void clear() noexcept;

private:
    /// The samples produced so far in the lower bits, the number of the clearing in the upper ones.
    using Head = std::uint64_t;

    /// The planar block that the producer is in the middle of.
    struct Block {
        Head head = 0;
        std::int64_t channel = -1; ///< handed over last, -1 between two blocks
        std::int64_t total = 0;
        bool fits = false;
    };

    struct Range {
        std::int64_t from;
        std::int64_t to; ///< not included
    };

    [[nodiscard]] bool hasRoom(Head head, std::int64_t total) const noexcept;
    void beginOrContinueBlock(Head head, std::int64_t total, std::int64_t channel) noexcept;
    /// Clears channels in a range of a block's samples, which begins with a frame.
    void silence(Head head, Range channels, Range samples) noexcept;
    /// What a block remembers after this channel: -1 when it was the last.
    [[nodiscard]] std::int64_t lastOf(std::int64_t channel) const noexcept;
    void publish(Head head, std::int64_t total) noexcept;
    /// How many samples of one channel, the one at `position` first, stand before the ring's end.
    [[nodiscard]] std::int64_t framesUntilEnd(std::int64_t position) const noexcept;
    [[nodiscard]] float* place(std::int64_t position) const noexcept;

    // What each side writes stands in a cache line of its own.
    alignas(64) std::atomic<Head> head_{0};
    Block block_;
    const std::int64_t channels_;
    const std::unique_ptr<float[]> ringBuffer_;
    bool hasMemory_ = false;
    alignas(64) std::atomic<std::int64_t> tail_{0};
};

} // namespace orvanta
