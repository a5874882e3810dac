#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace orvanta::media {

/// Where the packets of an audio track lie in its file and when they sound: four bytes a packet
/// and a few a chunk, so that hours fit into little memory.
class SampleTable {
public:
    /// Packets one behind the other, in the file as in time.
    struct Chunk {
        std::int64_t offset = 0; ///< of the first byte, in the file
        std::int64_t start = 0;  ///< of the first packet, in frames; before 0 while priming
        std::int64_t end = 0;    ///< of the last packet, in frames
        std::uint32_t packets = 0;
    };

    /// How many packets in a row last how long.
    struct Run {
        std::uint32_t packets = 0;
        std::uint32_t frames = 0;
    };

    /// Every packet lasts `packetFrames` but the last of a chunk, which may be shorter.
    explicit SampleTable(std::uint32_t packetFrames) : packetFrames_(packetFrames) {}

    /// Chunks come in the order of their time; time may be missing between them.
    void add(std::int64_t offset, std::int64_t start, std::int64_t end,
             std::span<const std::uint32_t> packetBytes);

    [[nodiscard]] const std::vector<Chunk>& chunks() const noexcept { return chunks_; }

    [[nodiscard]] const std::vector<std::uint32_t>& packetBytes() const noexcept {
        return packetBytes_;
    }

    [[nodiscard]] bool isEmpty() const noexcept { return chunks_.empty(); }

    /// When the first packet starts and the last one ends; 0 of an empty table.
    [[nodiscard]] std::int64_t start() const noexcept;
    [[nodiscard]] std::int64_t end() const noexcept;

    /// The durations of all packets. One before missing time lasts until it is over.
    [[nodiscard]] std::vector<Run> runs() const;

private:
    const std::uint32_t packetFrames_;
    std::vector<Chunk> chunks_;
    std::vector<std::uint32_t> packetBytes_;
};

} // namespace orvanta::media
