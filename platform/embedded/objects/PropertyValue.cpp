#include "platform/embedded/objects/PropertyValue.h"

namespace orvanta::embedded {

std::uint32_t sizeOf(const PropertyValue& value) {
    if (std::holds_alternative<std::string>(value))
        return sizeof(void*);
    return static_cast<std::uint32_t>(bytesOf(value).size());
}

std::span<const std::byte> bytesOf(const PropertyValue& value) {
    return std::visit(
        [](const auto& held) -> std::span<const std::byte> {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::string>)
                return {};
            else if constexpr (std::is_same_v<Held, std::vector<AudioObjectID>> ||
                               std::is_same_v<Held, std::vector<std::byte>>)
                return std::as_bytes(std::span(held));
            else
                return std::as_bytes(std::span(&held, 1));
        },
        value);
}

} // namespace orvanta::embedded
