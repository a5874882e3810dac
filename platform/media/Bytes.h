#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace orvanta::media {

using Bytes = std::vector<std::byte>;
using ByteView = std::span<const std::byte>;

} // namespace orvanta::media
