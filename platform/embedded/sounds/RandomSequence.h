#pragma once

#include <cstdint>

namespace orvanta::embedded {

/// The same numbers for the same seed on every machine and library, which the standard
/// distributions do not promise. A linear congruential generator whose top bits are used.
class RandomSequence {
public:
    explicit RandomSequence(std::uint32_t seed) noexcept
        : state_(seed * 0x9E3779B97F4A7C15ULL + 0xD1B54A32D192ED03ULL) {}

    std::uint32_t bits() noexcept {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(state_ >> 32U);
    }

    /// From 0 to just below 1.
    float unipolar() noexcept { return static_cast<float>(bits() >> 8U) * (1.0F / 16777216.0F); }

    /// From -1 to just below 1.
    float bipolar() noexcept { return unipolar() * 2.0F - 1.0F; }

    /// From 0 to `count - 1`; `count` is above 0.
    std::uint32_t below(std::uint32_t count) noexcept {
        return static_cast<std::uint32_t>((std::uint64_t{bits()} * count) >> 32U);
    }

private:
    std::uint64_t state_;
};

} // namespace orvanta::embedded
