#pragma once

#include "core/platform/AudioObject.h"

#include <cstddef>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace orvanta::embedded {

/// The value of a property in one of the types that properties have.
using PropertyValue =
    std::variant<std::uint32_t, std::int32_t, float, double, std::string,
                 std::vector<AudioObjectID>, std::vector<std::byte>, AudioStreamBasicDescription>;

/// Bytes of the value in plain form; a string counts as the reference that stands for it.
std::uint32_t sizeOf(const PropertyValue& value);

/// The plain form; empty for a string, which has none.
std::span<const std::byte> bytesOf(const PropertyValue& value);

} // namespace orvanta::embedded
