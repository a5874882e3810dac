#pragma once

#include <cstdint>
#include <string_view>

namespace orvanta {

/// Parts of a meter's length, from silence up. They add up to 1.
inline constexpr double kGreenZone = 0.65;
inline constexpr double kYellowZone = 0.20;
inline constexpr double kRedZone = 0.15;

/// What a meter's fill says of a level.
enum class LevelZone : std::uint8_t { green, yellow, red };

/// Zone of a level of 0 to 1.
[[nodiscard]] constexpr LevelZone levelZone(double level) noexcept {
    if (level >= 0.85)
        return LevelZone::red;
    return level > 0.6 ? LevelZone::yellow : LevelZone::green;
}

/// Field of `ThemePalette` that a volume slider's fill wears at a linear volume of 0 to 2.
[[nodiscard]] constexpr std::string_view volumeColor(float volume) noexcept {
    if (volume > 1.5F)
        return "red";
    if (volume > 1.0F)
        return "boostAmber";
    if (volume > 0.8F)
        return "warmOrange";
    return volume > 0.5F ? "accent" : "green";
}

} // namespace orvanta
