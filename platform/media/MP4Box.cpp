#include "platform/media/MP4Box.h"

namespace orvanta::media {
namespace {

constexpr std::size_t kHeaderBytes = 8;

std::uint32_t number32At(ByteView bytes) {
    std::uint32_t value = 0;
    for (const std::byte byte : bytes.first(4))
        value = value << 8U | std::to_integer<std::uint32_t>(byte);
    return value;
}

} // namespace

std::vector<MP4Box> boxesIn(ByteView bytes) {
    std::vector<MP4Box> boxes;
    while (bytes.size() >= kHeaderBytes) {
        const std::size_t size = number32At(bytes);
        if (size < kHeaderBytes || size > bytes.size())
            break;
        const auto* type = reinterpret_cast<const char*>(bytes.data()) + 4;
        boxes.push_back({{type, 4}, bytes.first(size).subspan(kHeaderBytes)});
        bytes = bytes.subspan(size);
    }
    return boxes;
}

MP4BoxWriter::Open::Open(MP4BoxWriter& writer, std::string_view type)
    : writer_(writer), start_(writer.bytes_.size()) {
    writer.number32(0);
    writer.letters(type);
}

MP4BoxWriter::Open::~Open() {
    const std::size_t size = writer_.bytes_.size() - start_;
    for (unsigned index = 0; index < 4; ++index)
        writer_.bytes_[start_ + index] = static_cast<std::byte>(size >> (24 - 8 * index));
}

void MP4BoxWriter::copy(const MP4Box& box) {
    const Open open(*this, box.type);
    bytes(box.content);
}

void MP4BoxWriter::bytes(ByteView bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void MP4BoxWriter::letters(std::string_view letters) {
    bytes(std::as_bytes(std::span(letters)));
}

void MP4BoxWriter::number(std::uint64_t value, unsigned bytes) {
    for (unsigned shift = 8 * bytes; shift > 0; shift -= 8)
        bytes_.push_back(static_cast<std::byte>(value >> (shift - 8)));
}

} // namespace orvanta::media
