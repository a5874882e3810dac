#include "platform/media/MovieBox.h"

#include <array>
#include <limits>

namespace orvanta::media {
namespace {

using Box = MP4BoxWriter::Open;

bool fits32(std::int64_t value) {
    return value <= std::numeric_limits<std::uint32_t>::max();
}

/// Writes a box that was made of boxes anew, each as `writeChild` says.
template <class WriteChild>
void rewrite(MP4BoxWriter& writer, const MP4Box& box, WriteChild&& writeChild) {
    const Box open(writer, box.type);
    for (const MP4Box& child : boxesIn(box.content))
        writeChild(child);
}

/// Most boxes with numbers begin with a version, which says how wide they are, and flags.
void writeVersion(MP4BoxWriter& writer, std::uint32_t version) {
    writer.number32(version << 24U);
}

/// Durations take eight bytes where four are not enough, and so do the times in the same box.
class Times {
public:
    Times(MP4BoxWriter& writer, std::int64_t longest)
        : writer_(writer), isWide_(!fits32(longest)) {}

    [[nodiscard]] std::uint32_t version() const { return isWide_ ? 1 : 0; }

    void write(std::int64_t value) {
        if (isWide_)
            writer_.number64(static_cast<std::uint64_t>(value));
        else
            writer_.number32(static_cast<std::uint32_t>(value));
    }

private:
    MP4BoxWriter& writer_;
    bool isWide_;
};

/// One of the boxes that hold version, flags, two times of day, some fields, a duration and more.
/// The times of day stay unknown.
void writeHeader(MP4BoxWriter& writer, const MP4Box& narrow, std::size_t fieldBytes,
                 std::int64_t duration) {
    constexpr std::size_t kFlagsAt = 1;
    constexpr std::size_t kFlagBytes = 3;
    constexpr std::size_t kFieldsAt = 12;
    constexpr std::size_t kDurationBytes = 4;
    const Box open(writer, narrow.type);
    Times times(writer, duration);
    writer.bytes(std::array{static_cast<std::byte>(times.version())});
    writer.bytes(narrow.content.subspan(kFlagsAt, kFlagBytes));
    times.write(0);
    times.write(0);
    writer.bytes(narrow.content.subspan(kFieldsAt, fieldBytes));
    times.write(duration);
    writer.bytes(narrow.content.subspan(kFieldsAt + fieldBytes + kDurationBytes));
}

/// For the movie and its media: their one field is the time scale.
constexpr std::size_t kTimeScaleBytes = 4;
/// For the track: its number and a space.
constexpr std::size_t kTrackNumberBytes = 8;

/// What of the media is heard, in which order. A start of -1 means silence.
struct Edit {
    std::int64_t duration;
    std::int64_t mediaStart;
};

void writeEdits(MP4BoxWriter& writer, std::span<const Edit> edits, std::int64_t longest) {
    constexpr std::uint16_t kNormalSpeed = 1;
    const Box edts(writer, "edts");
    const Box elst(writer, "elst");
    Times times(writer, longest);
    writeVersion(writer, times.version());
    writer.number32(static_cast<std::uint32_t>(edits.size()));
    for (const Edit& edit : edits) {
        times.write(edit.duration);
        times.write(edit.mediaStart);
        writer.number16(kNormalSpeed);
        writer.number16(0);
    }
}

/// Leaves the priming out, and puts silence for a beginning that was lost.
void writeEdits(MP4BoxWriter& writer, const SampleTable& table) {
    const std::int64_t start = table.start();
    const std::int64_t end = table.end();
    if (start > 0)
        writeEdits(writer, std::array{Edit{start, -1}, Edit{end - start, 0}}, end);
    else
        writeEdits(writer, std::array{Edit{end, -start}}, end);
}

void writeDurations(MP4BoxWriter& writer, const SampleTable& table) {
    const auto runs = table.runs();
    const Box stts(writer, "stts");
    writeVersion(writer, 0);
    writer.number32(static_cast<std::uint32_t>(runs.size()));
    for (const SampleTable::Run& run : runs) {
        writer.number32(run.packets);
        writer.number32(run.frames);
    }
}

void writePacketsOfChunks(MP4BoxWriter& writer, const SampleTable& table) {
    constexpr std::uint32_t kOnlyDescription = 1;
    const Box stsc(writer, "stsc");
    writeVersion(writer, 0);
    writer.number32(static_cast<std::uint32_t>(table.chunks().size()));
    std::uint32_t number = 0;
    for (const SampleTable::Chunk& chunk : table.chunks()) {
        writer.number32(++number);
        writer.number32(chunk.packets);
        writer.number32(kOnlyDescription);
    }
}

void writePacketSizes(MP4BoxWriter& writer, const SampleTable& table) {
    constexpr std::uint32_t kEachItsOwn = 0;
    const Box stsz(writer, "stsz");
    writeVersion(writer, 0);
    writer.number32(kEachItsOwn);
    writer.number32(static_cast<std::uint32_t>(table.packetBytes().size()));
    for (const std::uint32_t bytes : table.packetBytes())
        writer.number32(bytes);
}

void writeChunkOffsets(MP4BoxWriter& writer, const SampleTable& table) {
    const bool isNarrow = fits32(table.chunks().back().offset);
    const Box offsets(writer, isNarrow ? "stco" : "co64");
    writeVersion(writer, 0);
    writer.number32(static_cast<std::uint32_t>(table.chunks().size()));
    for (const SampleTable::Chunk& chunk : table.chunks())
        if (isNarrow)
            writer.number32(static_cast<std::uint32_t>(chunk.offset));
        else
            writer.number64(static_cast<std::uint64_t>(chunk.offset));
}

/// Tells whoever starts in the middle to decode one packet before the first that is heard.
void writePreRoll(MP4BoxWriter& writer, const SampleTable& table) {
    constexpr std::uint32_t kDistanceBytes = 2;
    constexpr std::uint16_t kOnePacketBack = 0xFFFF;
    {
        const Box sgpd(writer, "sgpd");
        writeVersion(writer, 1);
        writer.letters("roll");
        writer.number32(kDistanceBytes);
        writer.number32(1);
        writer.number16(kOnePacketBack);
    }
    const Box sbgp(writer, "sbgp");
    writeVersion(writer, 0);
    writer.letters("roll");
    writer.number32(1);
    writer.number32(static_cast<std::uint32_t>(table.packetBytes().size()));
    writer.number32(1);
}

void writeSamples(MP4BoxWriter& writer, const MP4Box& samples, const SampleTable& table) {
    const Box stbl(writer, samples.type);
    for (const MP4Box& child : boxesIn(samples.content))
        if (child.type == "stsd")
            writer.copy(child);
    writeDurations(writer, table);
    writePacketsOfChunks(writer, table);
    writePacketSizes(writer, table);
    writeChunkOffsets(writer, table);
    writePreRoll(writer, table);
}

void writeMedia(MP4BoxWriter& writer, const MP4Box& media, const SampleTable& table) {
    const auto writeInformation = [&](const MP4Box& child) {
        if (child.type == "stbl")
            writeSamples(writer, child, table);
        else
            writer.copy(child);
    };
    rewrite(writer, media, [&](const MP4Box& child) {
        if (child.type == "mdhd")
            writeHeader(writer, child, kTimeScaleBytes, table.end() - table.start());
        else if (child.type == "minf")
            rewrite(writer, child, writeInformation);
        else
            writer.copy(child);
    });
}

void writeTrack(MP4BoxWriter& writer, const MP4Box& track, const SampleTable& table) {
    rewrite(writer, track, [&](const MP4Box& child) {
        if (child.type == "tkhd") {
            writeHeader(writer, child, kTrackNumberBytes, table.end());
            writeEdits(writer, table);
        } else if (child.type == "mdia") {
            writeMedia(writer, child, table);
        } else {
            writer.copy(child);
        }
    });
}

} // namespace

void writeGrowingMovie(MP4BoxWriter& writer, const MP4Box& movie, std::uint32_t primingFrames) {
    constexpr std::int64_t kToTheEnd = 0;
    const auto writeGrowingTrack = [&](const MP4Box& child) {
        writer.copy(child);
        if (child.type == "tkhd")
            writeEdits(writer, std::array{Edit{kToTheEnd, primingFrames}}, kToTheEnd);
    };
    rewrite(writer, movie, [&](const MP4Box& child) {
        if (child.type == "trak")
            rewrite(writer, child, writeGrowingTrack);
        else
            writer.copy(child);
    });
}

void writeFinishedMovie(MP4BoxWriter& writer, const MP4Box& movie, const SampleTable& table) {
    rewrite(writer, movie, [&](const MP4Box& child) {
        if (child.type == "mvhd")
            writeHeader(writer, child, kTimeScaleBytes, table.end());
        else if (child.type == "trak")
            writeTrack(writer, child, table);
        else if (child.type != "mvex")
            writer.copy(child);
    });
}

} // namespace orvanta::media
