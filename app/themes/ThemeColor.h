#pragma once

namespace orvanta {

/// A colour in sRGB. Channels and opacity are 0 to 1.
struct ThemeColor {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double opacity = 1.0;

    /// `hue` in degrees, 0 to 360; `saturation` and `lightness` 0 to 1. (CSS Color Module Level 4,
    /// "HSL to RGB", whose second form this is.)
    [[nodiscard]] static constexpr ThemeColor
    fromHSL(double hue, double saturation, double lightness, double opacity = 1.0) noexcept {
        const auto channel = [&](double n) {
            const double reach = (lightness < 0.5 ? lightness : 1.0 - lightness) * saturation;
            double k = n + hue / 30.0;
            while (k >= 12.0)
                k -= 12.0;
            const double rising = k - 3.0;
            const double falling = 9.0 - k;
            double share = rising < falling ? rising : falling;
            share = share < 1.0 ? share : 1.0;
            share = share > -1.0 ? share : -1.0;
            return lightness - reach * share;
        };
        return {
            .red = channel(0.0), .green = channel(8.0), .blue = channel(4.0), .opacity = opacity};
    }

    [[nodiscard]] constexpr ThemeColor withOpacity(double newOpacity) const noexcept {
        return {.red = red, .green = green, .blue = blue, .opacity = newOpacity};
    }

    friend constexpr bool operator==(const ThemeColor&, const ThemeColor&) = default;
};

} // namespace orvanta
