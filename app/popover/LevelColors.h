#pragma once

#include "app/themes/ThemePalette.h"

namespace orvanta {

/// Parts of a meter's length, from silence up. They add up to 1.
inline constexpr double kGreenZone = 0.65;
inline constexpr double kYellowZone = 0.20;
inline constexpr double kRedZone = 0.15;

/// Colour of a meter's fill at a level of 0 to 1.
[[nodiscard]] constexpr const ThemeColor& levelColor(const ThemePalette& palette,
                                                     double level) noexcept {
    if (level >= 0.85)
        return palette.red;
    return level > 0.6 ? palette.yellow : palette.green;
}

/// Colour of a volume slider's fill at a linear volume of 0 to 2.
[[nodiscard]] constexpr const ThemeColor& volumeColor(const ThemePalette& palette,
                                                      float volume) noexcept {
    if (volume > 1.5F)
        return palette.red;
    if (volume > 1.0F)
        return palette.boostAmber;
    if (volume > 0.8F)
        return palette.warmOrange;
    return volume > 0.5F ? palette.accent : palette.green;
}

} // namespace orvanta
