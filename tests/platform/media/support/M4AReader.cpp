#include "tests/platform/media/support/M4AReader.h"

#include "tests/support/FileContent.h"

#include <iterator>
#include <map>
#include <stdexcept>
#include <string_view>

namespace orvanta::test {
namespace {

void check(bool isSo, const std::string& what) {
    if (!isSo)
        throw std::runtime_error("not a sound MPEG-4 file: " + what);
}

/// Goes through the numbers of a box.
class Numbers {
public:
    explicit Numbers(std::string_view bytes) : bytes_(bytes) {}

    std::uint64_t next(std::size_t size) {
        std::uint64_t value = 0;
        for (std::size_t index = 0; index < size; ++index)
            value = value << 8U | static_cast<unsigned char>(bytes_.at(position_++));
        return value;
    }

    std::uint32_t next32() { return static_cast<std::uint32_t>(next(4)); }

    /// The lower bytes of a number with its sign.
    std::int64_t nextSigned(std::size_t size) {
        const std::uint64_t value = next(size);
        return size == 4 ? static_cast<std::int32_t>(value) : static_cast<std::int64_t>(value);
    }

    /// A size of an MPEG-4 descriptor: seven bits a byte.
    std::uint32_t nextDescriptorSize() {
        std::uint32_t value = 0;
        std::uint64_t byte = 0;
        do {
            byte = next(1);
            value = value << 7U | static_cast<std::uint32_t>(byte & 0x7FU);
        } while ((byte & 0x80U) != 0);
        return value;
    }

    void skip(std::size_t bytes) { position_ += bytes; }

    [[nodiscard]] std::string_view rest() const { return bytes_.substr(position_); }

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
};

struct Box {
    std::string type;
    std::string_view content;
};

std::vector<Box> boxesIn(std::string_view bytes) {
    std::vector<Box> boxes;
    while (bytes.size() >= 8) {
        Numbers numbers(bytes);
        std::uint64_t size = numbers.next(4);
        std::uint64_t headerBytes = 8;
        numbers.skip(4);
        if (size == 1 && bytes.size() >= 16) {
            size = numbers.next(8);
            headerBytes = 16;
        }
        check(size >= headerBytes, "a box shorter than its header");
        if (size > bytes.size())
            break;
        boxes.push_back(
            {std::string(bytes.substr(4, 4)), bytes.substr(headerBytes, size - headerBytes)});
        bytes.remove_prefix(size);
    }
    return boxes;
}

std::string_view child(std::string_view bytes, const std::string& type) {
    for (const Box& box : boxesIn(bytes))
        if (box.type == type)
            return box.content;
    throw std::runtime_error("not a sound MPEG-4 file: no " + type);
}

bool hasChild(std::string_view bytes, const std::string& type) {
    for (const Box& box : boxesIn(bytes))
        if (box.type == type)
            return true;
    return false;
}

class Reader {
public:
    explicit Reader(std::string bytes) : bytes_(std::move(bytes)) {}

    M4AContent read() {
        for (const Box& box : boxesIn(bytes_)) {
            content_.boxes.push_back(box.type);
            if (box.type == "moov" && content_.sampleRate == 0)
                readMovie(box.content);
            else if (box.type == "moof" && content_.isFragmented)
                readFragment(box.content);
        }
        check(content_.sampleRate != 0, "no movie");
        return content_;
    }

private:
    [[nodiscard]] std::uint64_t offsetOf(std::string_view part) const {
        return static_cast<std::uint64_t>(part.data() - bytes_.data());
    }

    void readMovie(std::string_view movie) {
        content_.isFragmented = hasChild(movie, "mvex");
        const std::string_view track = child(movie, "trak");
        const std::string_view media = child(track, "mdia");
        readScaled(child(movie, "mvhd"), content_.movieTimeScale, content_.movieDuration);
        readScaled(child(media, "mdhd"), content_.mediaTimeScale, content_.mediaDuration);
        readTrackHeader(child(track, "tkhd"));
        if (hasChild(track, "edts"))
            readEdits(child(child(track, "edts"), "elst"));
        const std::string_view table = child(child(media, "minf"), "stbl");
        readDescription(child(table, "stsd"));
        if (!content_.isFragmented)
            readTable(table);
    }

    static void readScaled(std::string_view header, std::uint32_t& scale, std::int64_t& duration) {
        Numbers numbers(header);
        const std::size_t width = numbers.next(1) == 1 ? 8 : 4;
        numbers.skip(3 + 2 * width);
        scale = numbers.next32();
        duration = static_cast<std::int64_t>(numbers.next(width));
    }

    void readTrackHeader(std::string_view header) {
        Numbers numbers(header);
        const std::size_t width = numbers.next(1) == 1 ? 8 : 4;
        numbers.skip(3 + 2 * width + 8);
        content_.trackDuration = static_cast<std::int64_t>(numbers.next(width));
    }

    void readEdits(std::string_view list) {
        Numbers numbers(list);
        const std::size_t width = numbers.next(1) == 1 ? 8 : 4;
        numbers.skip(3);
        const std::uint32_t count = numbers.next32();
        for (std::uint32_t index = 0; index < count; ++index) {
            M4AEdit edit;
            edit.duration = static_cast<std::int64_t>(numbers.next(width));
            edit.mediaStart = numbers.nextSigned(width);
            check(numbers.next32() == 0x10000, "an edit at another speed");
            content_.edits.push_back(edit);
        }
    }

    void readDescription(std::string_view descriptions) {
        Numbers numbers(descriptions);
        numbers.skip(4);
        check(numbers.next32() == 1, "more than one kind of samples");
        const std::string_view mp4a = child(numbers.rest(), "mp4a");
        Numbers esds(child(mp4a.substr(28), "esds"));
        esds.skip(4);
        check(esds.next(1) == 3, "no elementary stream");
        esds.nextDescriptorSize();
        esds.skip(3);
        check(esds.next(1) == 4, "no decoder configuration");
        esds.nextDescriptorSize();
        check(esds.next(1) == 0x40, "not MPEG-4 audio");
        esds.skip(12);
        check(esds.next(1) == 5, "no decoder specific configuration");
        esds.nextDescriptorSize();
        readAudioConfiguration(static_cast<std::uint32_t>(esds.next(2)));
    }

    /// Five bits of kind, four of rate, four of channels.
    void readAudioConfiguration(std::uint32_t bits) {
        constexpr std::uint32_t kRates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                            22050, 16000, 12000, 11025, 8000,  7350};
        constexpr std::uint32_t kLowComplexity = 2;
        check(bits >> 11U == kLowComplexity, "another AAC than low complexity");
        const std::uint32_t rate = bits >> 7U & 15U;
        check(rate < std::size(kRates), "an unknown rate");
        content_.sampleRate = kRates[rate];
        content_.channels = bits >> 3U & 15U;
    }

    void readTable(std::string_view table) {
        readSizes(child(table, "stsz"));
        readDurations(child(table, "stts"));
        const bool isWide = hasChild(table, "co64");
        readPlaces(child(table, "stsc"), child(table, isWide ? "co64" : "stco"), isWide ? 8 : 4);
    }

    void readSizes(std::string_view sizes) {
        Numbers numbers(sizes);
        numbers.skip(4);
        check(numbers.next32() == 0, "packets of one size");
        content_.packets.resize(numbers.next32());
        for (M4APacket& packet : content_.packets)
            packet.bytes = numbers.next32();
    }

    void readDurations(std::string_view durations) {
        Numbers numbers(durations);
        numbers.skip(4);
        std::size_t index = 0;
        std::int64_t start = 0;
        for (std::uint32_t run = numbers.next32(); run > 0; --run) {
            const std::uint32_t packets = numbers.next32();
            const std::uint32_t frames = numbers.next32();
            for (std::uint32_t count = 0; count < packets; ++count) {
                M4APacket& packet = content_.packets.at(index++);
                packet.start = start;
                packet.frames = frames;
                start += frames;
            }
        }
        check(index == content_.packets.size(), "durations of fewer packets");
    }

    void readPlaces(std::string_view packetsOfChunks, std::string_view offsets, std::size_t width) {
        Numbers perChunk(packetsOfChunks);
        perChunk.skip(4);
        std::map<std::uint32_t, std::uint32_t> packetsFrom;
        for (std::uint32_t run = perChunk.next32(); run > 0; --run) {
            const std::uint32_t first = perChunk.next32();
            packetsFrom[first] = perChunk.next32();
            check(perChunk.next32() == 1, "an unknown kind of samples");
        }
        Numbers places(offsets);
        places.skip(4);
        const std::uint32_t chunks = places.next32();
        std::size_t index = 0;
        for (std::uint32_t chunk = 1; chunk <= chunks; ++chunk) {
            std::uint64_t offset = places.next(width);
            const std::uint32_t packets = std::prev(packetsFrom.upper_bound(chunk))->second;
            for (std::uint32_t count = 0; count < packets; ++count) {
                M4APacket& packet = content_.packets.at(index++);
                packet.offset = offset;
                offset += packet.bytes;
            }
        }
        check(index == content_.packets.size(), "places of fewer packets");
    }

    void readFragment(std::string_view fragment) {
        constexpr std::uint32_t kOffsetIsFromHere = 0x20000;
        const std::string_view track = child(fragment, "traf");
        Numbers header(child(track, "tfhd"));
        const std::uint32_t flags = header.next32();
        check((flags & kOffsetIsFromHere) != 0, "a fragment that depends on its place");
        header.skip(4);
        M4APacket usual;
        if ((flags & 0x8U) != 0)
            usual.frames = header.next32();
        if ((flags & 0x10U) != 0)
            usual.bytes = header.next32();
        Numbers time(child(track, "tfdt"));
        const std::size_t width = time.next(1) == 1 ? 8 : 4;
        time.skip(3);
        usual.start = static_cast<std::int64_t>(time.next(width));
        usual.offset = offsetOf(fragment) - 8;
        readRun(child(track, "trun"), usual);
    }

    void readRun(std::string_view run, M4APacket next) {
        Numbers numbers(run);
        const std::uint32_t flags = numbers.next32();
        const std::uint32_t count = numbers.next32();
        check((flags & 0x1U) != 0, "a run without its place");
        next.offset += static_cast<std::uint64_t>(numbers.nextSigned(4));
        if ((flags & 0x4U) != 0)
            numbers.skip(4);
        for (std::uint32_t index = 0; index < count; ++index) {
            if ((flags & 0x100U) != 0)
                next.frames = numbers.next32();
            if ((flags & 0x200U) != 0)
                next.bytes = numbers.next32();
            if ((flags & 0x400U) != 0)
                numbers.skip(4);
            // A packet that a kill has cut is none.
            if (next.offset + next.bytes > bytes_.size())
                return;
            content_.packets.push_back(next);
            next.offset += next.bytes;
            next.start += next.frames;
        }
    }

    const std::string bytes_;
    M4AContent content_;
};

} // namespace

std::int64_t M4AContent::framesToHear() const {
    if (packets.empty())
        return 0;
    const std::int64_t end = packets.back().start + packets.back().frames;
    return end - (edits.empty() ? 0 : edits.back().mediaStart);
}

M4AContent readM4A(const std::filesystem::path& path) {
    return Reader(fileContent(path)).read();
}

} // namespace orvanta::test
