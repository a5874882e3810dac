#pragma once

#include "platform/media/Bytes.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace orvanta::media {

/// MPEG-4 files consist of boxes: a size, a type of four letters, and a content, which is made of
/// boxes again or of numbers with the high byte first.
struct MP4Box {
    std::string_view type;
    ByteView content;
};

/// The boxes that stand one behind the other in `bytes`, up to the first one that is not whole.
/// They point into `bytes`.
std::vector<MP4Box> boxesIn(ByteView bytes);

/// Writes boxes into memory.
class MP4BoxWriter {
public:
    /// A box that begins here and ends with this object's life.
    class Open {
    public:
        Open(MP4BoxWriter& writer, std::string_view type);
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;
        ~Open();

    private:
        MP4BoxWriter& writer_;
        std::size_t start_;
    };

    void copy(const MP4Box& box);
    void bytes(ByteView bytes);
    void letters(std::string_view letters);

    void number16(std::uint16_t value) { number(value, 2); }

    void number32(std::uint32_t value) { number(value, 4); }

    void number64(std::uint64_t value) { number(value, 8); }

    [[nodiscard]] const Bytes& written() const noexcept { return bytes_; }

private:
    void number(std::uint64_t value, unsigned bytes);

    Bytes bytes_;
};

} // namespace orvanta::media
