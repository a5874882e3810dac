#pragma once

#include <cstdint>

namespace orvanta {

/// What the loops over samples are compiled for.
enum class InstructionSet : std::uint8_t {
    baseline, ///< every processor of the architecture: SSE2 or NEON, four floats at a time
    avx2,     ///< eight floats at a time
};

/// Whether this machine can run it.
[[nodiscard]] bool isSupported(InstructionSet set) noexcept;

} // namespace orvanta
