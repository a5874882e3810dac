#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orvanta::test {

/// One AAC packet: where it lies in its file, and when it sounds in frames of the media.
struct M4APacket {
    std::uint64_t offset = 0;
    std::uint32_t bytes = 0;
    std::int64_t start = 0;
    std::uint32_t frames = 0;

    bool operator==(const M4APacket&) const = default;
};

struct M4AEdit {
    std::int64_t duration = 0;
    std::int64_t mediaStart = 0;

    bool operator==(const M4AEdit&) const = default;
};

/// What an MPEG-4 file with one audio track says of itself, in fragments or with one sample table.
struct M4AContent {
    /// The types of the boxes that the file consists of, in their order. One that is not whole, as
    /// a killed program may leave it, is missing.
    std::vector<std::string> boxes;
    /// Whether the movie tells that fragments follow.
    bool isFragmented = false;
    std::uint32_t movieTimeScale = 0;
    std::int64_t movieDuration = 0;
    std::int64_t trackDuration = 0;
    std::uint32_t mediaTimeScale = 0;
    std::int64_t mediaDuration = 0;
    std::vector<M4AEdit> edits;
    /// As the decoder is told.
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::vector<M4APacket> packets;

    /// Frames from the first one that is to be heard to the end.
    [[nodiscard]] std::int64_t framesToHear() const;
};

/// Shares nothing with what writes the files. Throws std::runtime_error at what contradicts the
/// format, std::out_of_range at boxes that are too short for what they should hold.
M4AContent readM4A(const std::filesystem::path& path);

} // namespace orvanta::test
