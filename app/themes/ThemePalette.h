#pragma once

#include "app/themes/ThemeColor.h"

namespace orvanta {

/// Every colour that carries a meaning. Neutral greys are the same in all themes and not among
/// them.
struct ThemePalette {
    // The brand.
    ThemeColor accent;          ///< chosen, or set by the user
    ThemeColor accentSecondary; ///< the same as text
    ThemeColor accentGlow;      ///< the same as a halo, translucent
    ThemeColor boostAmber;      ///< louder than the program plays
    ThemeColor warmOrange;
    ThemeColor gradientStart;
    ThemeColor gradientEnd;

    // States, the same in all themes.
    ThemeColor green;
    ThemeColor yellow;
    ThemeColor red;
    ThemeColor blue;
    ThemeColor purple;

    // The symbols that name a processor or a feature.
    ThemeColor featureVolume;
    ThemeColor featureRouting;
    ThemeColor featureEQ;
    ThemeColor featureCompressor;
    ThemeColor featureRecording;
    ThemeColor featureBalance;
    ThemeColor featureShortcuts;

    [[nodiscard]] static const ThemePalette& classic() noexcept;
    [[nodiscard]] static const ThemePalette& meridane() noexcept;
};

} // namespace orvanta
