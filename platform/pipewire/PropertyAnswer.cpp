#include "platform/pipewire/PropertyAnswer.h"

#include <algorithm>
#include <cstring>

namespace orvanta::pipewire {
namespace {

struct Bytes {
    const void* data = nullptr;
    std::uint32_t size = 0;
    /// What must not be torn apart; 0 means the whole.
    std::uint32_t itemSize = 0;
};

template <class Value>
Bytes bytesOf(const Value& value) {
    return {&value, sizeof(Value), 0};
}

Bytes bytesOf(const std::vector<AudioObjectID>& list) {
    return {list.data(), static_cast<std::uint32_t>(list.size() * sizeof(AudioObjectID)),
            sizeof(AudioObjectID)};
}

Bytes bytesOf(const std::vector<std::byte>& data) {
    return {data.data(), static_cast<std::uint32_t>(data.size()), 0};
}

Bytes bytesOf(const std::string&) {
    return {};
}

Bytes bytesOfAny(const PropertyValue& value) {
    return std::visit([](const auto& alternative) { return bytesOf(alternative); }, value);
}

} // namespace

std::uint32_t sizeOf(const PropertyValue& value) {
    return bytesOfAny(value).size;
}

OSStatus copyValue(const PropertyValue& value, std::uint32_t& ioSize, void* out) {
    if (std::holds_alternative<std::string>(value))
        return kAudioHardwareIllegalOperationError;
    const Bytes bytes = bytesOfAny(value);
    if (bytes.itemSize == 0 && ioSize < bytes.size)
        return kAudioHardwareBadPropertySizeError;
    std::uint32_t filled = std::min(ioSize, bytes.size);
    if (bytes.itemSize != 0)
        filled -= filled % bytes.itemSize;
    if (filled > 0 && out == nullptr)
        return kAudioHardwareBadPropertySizeError;
    if (filled > 0)
        std::memcpy(out, bytes.data, filled);
    ioSize = filled;
    return noErr;
}

} // namespace orvanta::pipewire
